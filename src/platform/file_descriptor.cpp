#include "platform/file_descriptor.h"

#include <QFile>

#include <algorithm>
#include <cerrno>

#include <fcntl.h>
#include <sys/stat.h>

namespace sorvanta {

std::optional<FileStamp> stampOf(int file)
{
    struct stat status;
    if (::fstat(file, &status) != 0)
        return std::nullopt;
    constexpr qint64 nanosecondsPerSecond = 1'000'000'000;
    return FileStamp{status.st_dev, status.st_ino, status.st_size,
                     status.st_mtim.tv_sec * nanosecondsPerSecond + status.st_mtim.tv_nsec};
}

QByteArray encodedPath(const QString &path)
{
    return path.contains(QChar(u'\0')) ? QByteArray() : QFile::encodeName(path);
}

QByteArray folderOf(const QByteArray &path)
{
    const qsizetype slash = path.lastIndexOf('/');
    if (slash < 0)
        return ".";
    return slash == 0 ? "/" : path.first(slash);
}

FileDescriptor opened(const QByteArray &path, int flags, mode_t mode)
{
    const int file = ::open(path.constData(), flags | O_CLOEXEC, mode);
    const bool isLentOut = file < 0 && errno == EWOULDBLOCK;
    return FileDescriptor(isLentOut ? ::open(path.constData(), (flags & ~O_NONBLOCK) | O_CLOEXEC, mode) : file);
}

bool writeAll(int file, QByteArrayView bytes)
{
    while (!bytes.isEmpty()) {
        const ssize_t count = ::write(file, bytes.data(), static_cast<size_t>(bytes.size()));
        if (count < 0 && errno != EINTR)
            return false;
        bytes = bytes.sliced(std::max<ssize_t>(count, 0));
    }
    return true;
}

bool flushFolder(int folder)
{
    // Some file systems keep no folders that could be flushed; they say EINVAL, and there is nothing to do.
    return ::fsync(folder) == 0 || errno == EINVAL;
}

} // namespace sorvanta
