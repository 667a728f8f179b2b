#include "platform/file_system.h"

#include "platform/atomic_file.h"
#include "platform/file_descriptor.h"
#include "platform/file_errors.h"
#include "platform/paths.h"

#include <cerrno>
#include <cstdio>
#include <functional>
#include <new>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace sorvanta {

namespace {

constexpr mode_t folderMode = 0700;

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

/// @return what read() gives; an interruption is none
ssize_t readSome(int file, char *room, qsizetype size)
{
    for (;;) {
        const ssize_t count = ::read(file, room, static_cast<size_t>(size));
        if (count >= 0 || errno != EINTR)
            return count;
    }
}

/// Lets the system copy as much as it can, which may share blocks instead of copying them. Where it stops it does not
/// tell which of the two files is to blame.
void copyWithinTheSystem(int source, int destination)
{
    constexpr size_t most = 1 << 30;
    while (::copy_file_range(source, nullptr, destination, nullptr, most, 0) > 0) { }
}

/// Hands on what is left of the source, piece by piece. @return whether `take` took all of it
bool readTheRest(const QString &path, int source, const std::function<bool(QByteArrayView)> &take)
{
    QByteArray piece(1 << 18, Qt::Uninitialized);
    for (;;) {
        const ssize_t count = readSome(source, piece.data(), piece.size());
        if (count < 0)
            throw readingError(path, errno);
        if (count == 0)
            return true;
        if (!take(QByteArrayView(piece).first(count)))
            return false;
    }
}

/// Opens the source of a copy.
FileDescriptor openedForCopying(const QString &source, const QString &destination)
{
    struct stat status;
    if (itemIsMissing(source))
        throw copyingError(source, destination, ENOENT);
    return openedForReading(source, status);
}

/// All bytes of an open file. The size is a guess: the file may grow or shrink, and some tell none.
QByteArray readAll(const QString &path, int file, qint64 size)
{
    // One byte more shows the end.
    QByteArray bytes(size + 1, Qt::Uninitialized);
    qsizetype length = 0;
    for (;;) {
        const ssize_t count = readSome(file, bytes.data() + length, bytes.size() - length);
        if (count < 0)
            throw readingError(path, errno);
        if (count == 0)
            break;
        length += count;
        if (length == bytes.size())
            bytes.resize(bytes.size() * 2);
    }
    bytes.resize(length);
    return bytes;
}

} // namespace

bool itemExists(const QString &path)
{
    struct stat status;
    return ::stat(encodedPath(path).constData(), &status) == 0;
}

bool itemIsMissing(const QString &path)
{
    struct stat status;
    return ::stat(encodedPath(path).constData(), &status) != 0 && (errno == ENOENT || errno == ENOTDIR);
}

bool isSameItem(const QString &path, const QString &other)
{
    struct stat status;
    struct stat otherStatus;
    return ::stat(encodedPath(path).constData(), &status) == 0
           && ::stat(encodedPath(other).constData(), &otherStatus) == 0 && status.st_dev == otherStatus.st_dev
           && status.st_ino == otherStatus.st_ino;
}

QByteArray readFile(const QString &path)
{
    struct stat status;
    const FileDescriptor file = openedForReading(path, status);
    try {
        return readAll(path, file.number(), status.st_size);
    } catch (const std::bad_alloc &) {
        throw readingError(path, EFBIG);
    }
}

void writeFileAtomically(const QString &path, QByteArrayView bytes, FileAccess access)
{
    AtomicFile file(path, access);
    file.write(bytes);
    file.commit();
}

void copyFile(const QString &source, const QString &destination, FileAccess access)
{
    const FileDescriptor input = openedForCopying(source, destination);
    const QByteArray target = encodedPath(destination);
    FileDescriptor output =
        opened(target, O_WRONLY | O_CREAT | O_EXCL, access == FileAccess::Usual ? usualFileMode : privateFileMode);
    if (!output.isOpen())
        throw copyingError(source, destination, errno);
    UnfinishedFile unfinished(target);
    const FileDescriptor folder = opened(folderOf(target), O_RDONLY | O_DIRECTORY);
    copyWithinTheSystem(input.number(), output.number());
    const auto take = [&output](QByteArrayView piece) { return writeAll(output.number(), piece); };
    if (!folder.isOpen() || !readTheRest(source, input.number(), take) || ::fsync(output.number()) != 0
        || !output.close() || !flushFolder(folder.number()))
        throw copyingError(source, destination, errno);
    unfinished.keep();
}

void replaceByCopy(const QString &source, const QString &destination, FileAccess access)
{
    const FileDescriptor input = openedForCopying(source, destination);
    AtomicFile output(destination, access);
    readTheRest(source, input.number(), [&output](QByteArrayView piece) {
        output.write(piece);
        return true;
    });
    output.commit();
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

void moveItem(const QString &source, const QString &destination)
{
    const QByteArray target = encodedPath(destination);
    if (::rename(encodedPath(source).constData(), target.constData()) != 0)
        throw movingError(source, destination, errno);
    const FileDescriptor folder = opened(folderOf(target), O_RDONLY | O_DIRECTORY);
    if (folder.isOpen())
        flushFolder(folder.number());
}

void removeItem(const QString &path)
{
    if (::remove(encodedPath(path).constData()) != 0)
        throw removingError(path, errno);
}

} // namespace sorvanta
