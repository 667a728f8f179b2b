#include "platform/atomic_file.h"

#include "platform/file_errors.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <memory>

#include <fcntl.h>
#include <sys/stat.h>

namespace sorvanta {

namespace {

/// So much of a file is handed on to the disk while the rest is still to come.
constexpr off_t pieceForTheDisk = 4 << 20;

/// Where a file is written that is to be found at `path`: what a symbolic link leads to.
QByteArray targetOf(const QString &path)
{
    const QByteArray encoded = encodedPath(path);
    struct stat status;
    if (::lstat(encoded.constData(), &status) != 0 || !S_ISLNK(status.st_mode))
        return encoded;
    const std::unique_ptr<char, decltype(&std::free)> resolved(::realpath(encoded.constData(), nullptr), std::free);
    return resolved ? QByteArray(resolved.get()) : encoded;
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

} // namespace

AtomicFile::AtomicFile(QString path)
    : m_path(std::move(path))
    , m_target(targetOf(m_path))
    , m_folder(opened(folderOf(m_target), O_RDONLY | O_DIRECTORY))
    , m_temporary(folderOf(m_target) + "/.sorvanta-XXXXXX")
    , m_file(m_folder.isOpen() ? ::mkostemp(m_temporary.data(), O_CLOEXEC) : -1)
    , m_unfinished(m_file.isOpen() ? m_temporary : QByteArray())
{
    if (!m_file.isOpen())
        throw writingError(m_path, errno);
}

void AtomicFile::write(QByteArrayView bytes)
{
    if (!writeAll(m_file.number(), bytes))
        throw writingError(m_path, errno);
    m_size += bytes.size();
    if (m_size - m_sizeOnItsWay < pieceForTheDisk)
        return;
    // Only a start: what goes wrong here is told by the flush at the end.
    ::sync_file_range(m_file.number(), m_sizeOnItsWay, m_size - m_sizeOnItsWay, SYNC_FILE_RANGE_WRITE);
    m_sizeOnItsWay = m_size;
}

void AtomicFile::commit()
{
    if (::fsync(m_file.number()) != 0 || !m_file.close()
        || ::rename(m_temporary.constData(), m_target.constData()) != 0)
        throw writingError(m_path, errno);
    m_unfinished.keep();
    if (!flushFolder(m_folder.number()))
        throw writingError(m_path, errno);
}

} // namespace sorvanta
