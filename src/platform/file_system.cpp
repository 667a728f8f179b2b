#include "platform/file_system.h"

#include "platform/atomic_file.h"
#include "platform/file_descriptor.h"
#include "platform/file_errors.h"
#include "platform/paths.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>

#include <fcntl.h>
#include <sys/sendfile.h>
#include <sys/stat.h>

namespace sorvanta {

namespace {

constexpr mode_t folderMode = 0700;
constexpr mode_t fileMode = 0600;

bool isFolder(const QString &path)
{
    struct stat status;
    return ::stat(encodedPath(path).constData(), &status) == 0 && S_ISDIR(status.st_mode);
}

/// Opens a file for reading. Anything but a plain file is refused, so that a pipe, say, cannot block.
FileDescriptor openedForReading(const QString &path, struct stat &status)
{
    FileDescriptor file = opened(encodedPath(path), O_RDONLY | O_NONBLOCK);
    if (!file.isOpen() || ::fstat(file.number(), &status) != 0)
        throw readingError(path, errno);
    if (!S_ISREG(status.st_mode))
        throw readingError(path, EINVAL);
    return file;
}

bool copyAll(int source, int destination)
{
    constexpr size_t most = 1 << 30;
    for (;;) {
        const ssize_t count = ::sendfile(destination, source, nullptr, most);
        if (count == 0)
            return true;
        if (count < 0 && errno != EINTR)
            return false;
    }
}

} // namespace

bool itemExists(const QString &path)
{
    struct stat status;
    return ::stat(encodedPath(path).constData(), &status) == 0;
}

QByteArray readFile(const QString &path)
{
    struct stat status;
    const FileDescriptor file = openedForReading(path, status);
    // The size is a guess: the file may grow or shrink, and some tell none. One byte more shows the end.
    QByteArray bytes(static_cast<qsizetype>(status.st_size) + 1, Qt::Uninitialized);
    qsizetype length = 0;
    for (;;) {
        const ssize_t count = ::read(file.number(), bytes.data() + length, static_cast<size_t>(bytes.size() - length));
        if (count < 0 && errno != EINTR)
            throw readingError(path, errno);
        if (count == 0)
            break;
        length += std::max<ssize_t>(count, 0);
        if (length == bytes.size())
            bytes.resize(bytes.size() * 2);
    }
    bytes.resize(length);
    return bytes;
}

void writeFileAtomically(const QString &path, QByteArrayView bytes)
{
    AtomicFile file(path);
    file.write(bytes);
    file.commit();
}

void copyFile(const QString &source, const QString &destination)
{
    struct stat status;
    if (!itemExists(source))
        throw copyingError(source, destination, ENOENT);
    const FileDescriptor input = openedForReading(source, status);
    const QByteArray target = encodedPath(destination);
    FileDescriptor output = opened(target, O_WRONLY | O_CREAT | O_EXCL, fileMode);
    if (!output.isOpen())
        throw copyingError(source, destination, errno);
    UnfinishedFile unfinished(target);
    const FileDescriptor folder = opened(folderOf(target), O_RDONLY | O_DIRECTORY);
    if (!folder.isOpen() || !copyAll(input.number(), output.number()) || ::fsync(output.number()) != 0
        || !output.close() || !flushFolder(folder.number()))
        throw copyingError(source, destination, errno);
    unfinished.keep();
}

void makeFolder(const QString &path)
{
    if (isFolder(path))
        return;
    const QString parent = parentFolder(path);
    if (!parent.isEmpty() && parent != path)
        makeFolder(parent);
    const QByteArray encoded = encodedPath(path);
    if (::mkdir(encoded.constData(), folderMode) != 0 && !(errno == EEXIST && isFolder(path)))
        throw writingError(path, errno);
    const FileDescriptor folder = opened(folderOf(encoded), O_RDONLY | O_DIRECTORY);
    if (folder.isOpen())
        flushFolder(folder.number());
}

void removeItem(const QString &path)
{
    if (::remove(encodedPath(path).constData()) != 0)
        throw removingError(path, errno);
}

} // namespace sorvanta
