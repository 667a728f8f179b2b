#include "platform/console.h"

#include <algorithm>
#include <cerrno>
#include <climits>
#include <mutex>

#include <poll.h>
#include <unistd.h>

namespace sorvanta {

namespace {

constexpr int patience = 1000; // milliseconds

/// Whether there is room for a piece that the system takes whole.
bool hasRoom()
{
    pollfd output{.fd = STDOUT_FILENO, .events = POLLOUT, .revents = 0};
    int count = 0;
    do {
        count = poll(&output, 1, patience);
    } while (count < 0 && errno == EINTR);
    return count == 1 && (output.revents & POLLOUT) != 0;
}

} // namespace

void printOnConsole(QByteArrayView bytes)
{
    // The room that one thread has seen is not to be taken by another.
    static std::mutex mutex;
    const std::scoped_lock lock(mutex);
    while (!bytes.isEmpty() && hasRoom()) {
        const auto piece = bytes.first(std::min<qsizetype>(bytes.size(), PIPE_BUF));
        const ssize_t written = write(STDOUT_FILENO, piece.data(), static_cast<std::size_t>(piece.size()));
        if (written < 0 && errno != EINTR)
            return;
        bytes = bytes.sliced(std::max<ssize_t>(written, 0));
    }
}

} // namespace sorvanta
