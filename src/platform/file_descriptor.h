#pragma once

#include <QByteArray>
#include <QString>

#include <optional>
#include <utility>

#include <sys/types.h>
#include <unistd.h>

namespace sorvanta {

// What the work with files is made of; errors stay in errno.

/// An open file of the system, closed with this object.
class FileDescriptor {
public:
    explicit FileDescriptor(int number)
        : m_number(number)
    {
    }
    ~FileDescriptor()
    {
        if (isOpen())
            ::close(m_number);
    }
    FileDescriptor(FileDescriptor &&other) noexcept
        : m_number(std::exchange(other.m_number, -1))
    {
    }
    FileDescriptor(const FileDescriptor &) = delete;
    FileDescriptor &operator=(const FileDescriptor &) = delete;

    bool isOpen() const { return m_number >= 0; }
    int number() const { return m_number; }

    /// Closes the file at once. @return whether the system saw no failure
    bool close() { return ::close(std::exchange(m_number, -1)) == 0; }

private:
    int m_number;
};

/// A file that vanishes with this object unless it has been given its final name.
class UnfinishedFile {
public:
    explicit UnfinishedFile(QByteArray path)
        : m_path(std::move(path))
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

/// What tells whether a file is still as it was left: another one at its path, or a write to it, makes a difference.
struct FileStamp {
    dev_t device;
    ino_t number;
    off_t size;
    qint64 modified; ///< nanoseconds since 1970

    bool operator==(const FileStamp &) const = default;
};

/// The stamp of an open file, or none if the system does not tell it.
std::optional<FileStamp> stampOf(int file);

constexpr mode_t privateFileMode = 0600;
constexpr mode_t usualFileMode = 0666; // of which the system takes away the umask

/// A path as the system takes it; empty, which names nothing, if it holds U+0000.
QByteArray encodedPath(const QString &path);

/// The folder in which an encoded path stands.
QByteArray folderOf(const QByteArray &path);

/// Opens as the system does. A file that is lent out, to a file server for example, is waited for also where `flags`
/// say O_NONBLOCK: the system asks it back.
FileDescriptor opened(const QByteArray &path, int flags, mode_t mode = 0);

/// @return whether all bytes were written
bool writeAll(int file, QByteArrayView bytes);

/// Makes sure that names given or taken in a folder outlast a loss of power.
bool flushFolder(int folder);

} // namespace sorvanta
