#include "platform/file_system.h"

#include "platform/file_descriptor.h"
#include "platform/file_errors.h"
#include "platform/paths.h"

#include <QFile>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <memory>

#include <fcntl.h>
#include <sys/sendfile.h>
#include <sys/stat.h>

namespace sorvanta {

namespace {

constexpr mode_t folderMode = 0700;
constexpr mode_t fileMode = 0600;

QByteArray encodedPath(const QString &path)
{
    return path.contains(QChar(u'\0')) ? QByteArray() : QFile::encodeName(path);
}

FileDescriptor opened(const QByteArray &path, int flags, mode_t mode = 0)
{
    return FileDescriptor(::open(path.constData(), flags | O_CLOEXEC, mode));
}

bool isFolder(const QString &path)
{
    struct stat status;
    return ::stat(encodedPath(path).constData(), &status) == 0 && S_ISDIR(status.st_mode);
}

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

/// Makes sure that names given or taken in a folder outlast a loss of power. Some file systems keep no folders that
/// could be flushed; they say EINVAL, and there is nothing to do.
bool flushFolder(int folder)
{
    return ::fsync(folder) == 0 || errno == EINVAL;
}

QByteArray folderOf(const QByteArray &path)
{
    const qsizetype slash = path.lastIndexOf('/');
    if (slash < 0)
        return ".";
    return slash == 0 ? "/" : path.first(slash);
}

/// A file that vanishes with this object unless it has been given its final name.
class UnfinishedFile {
public:
    explicit UnfinishedFile(const QByteArray &path)
        : m_path(path)
    {
    }
    ~UnfinishedFile()
    {
        if (!m_path.isEmpty())
            ::unlink(m_path.constData());
    }
    UnfinishedFile(const UnfinishedFile &) = delete;
    UnfinishedFile &operator=(const UnfinishedFile &) = delete;

    void keep() { m_path.clear(); }

private:
    QByteArray m_path;
};

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
    const QByteArray target = targetOf(path);
    const QByteArray folderPath = folderOf(target);
    const FileDescriptor folder = opened(folderPath, O_RDONLY | O_DIRECTORY);
    if (!folder.isOpen())
        throw writingError(path, errno);

    QByteArray temporary = folderPath + "/.sorvanta-XXXXXX";
    FileDescriptor file(::mkostemp(temporary.data(), O_CLOEXEC));
    if (!file.isOpen())
        throw writingError(path, errno);
    UnfinishedFile unfinished(temporary);
    if (!writeAll(file.number(), bytes) || ::fsync(file.number()) != 0 || !file.close()
        || ::rename(temporary.constData(), target.constData()) != 0)
        throw writingError(path, errno);
    unfinished.keep();
    if (!flushFolder(folder.number()))
        throw writingError(path, errno);
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
