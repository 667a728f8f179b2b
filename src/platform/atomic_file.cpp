#include "platform/atomic_file.h"

#include "platform/file_errors.h"
#include "platform/folders.h"

#include <QDir>
#include <QFile>

#include <cerrno>
#include <climits>
#include <cstdio>

#include <fcntl.h>
#include <sys/stat.h>

namespace sorvanta {

namespace {

/// So much of a file is handed on to the disk while the rest is still to come.
constexpr off_t pieceForTheDisk = 4 << 20;

/// As many as the system follows itself.
constexpr int mostLinks = 40;

/// Where a file is written that is to be found at `path`: what a symbolic link leads to, whether it is there or not.
QByteArray targetOf(const QString &path)
{
    QByteArray target = encodedPath(path);
    for (int links = 0; links <= mostLinks; ++links) {
        QByteArray next(PATH_MAX, Qt::Uninitialized);
        const ssize_t length = ::readlink(target.constData(), next.data(), static_cast<size_t>(next.size()));
        if (length < 0)
            return target;
        next.truncate(length);
        target = next.startsWith('/') ? next : folderOf(target) + '/' + next;
    }
    throw writingError(path, ELOOP);
}

constexpr char unfinishedPrefix[] = ".sorvanta-";

/// The permissions of the file at `target`, or none if there is no file.
std::optional<mode_t> permissionsOf(const QByteArray &target)
{
    struct stat status;
    if (::stat(target.constData(), &status) != 0 || !S_ISREG(status.st_mode))
        return std::nullopt;
    return status.st_mode & (S_IRWXU | S_IRWXG | S_IRWXO);
}

/// Makes an empty file beside `target`, whose name goes into `path`.
FileDescriptor newUnfinishedFile(QByteArray &path, const QByteArray &target, FileAccess access)
{
    const auto permissions = access == FileAccess::Usual ? permissionsOf(target) : std::nullopt;
    const mode_t mode = access == FileAccess::Usual && !permissions ? usualFileMode : privateFileMode;
    for (;;) {
        path = folderOf(target) + '/' + unfinishedPrefix + newUuidText().first(6).toLatin1();
        FileDescriptor file = opened(path, O_WRONLY | O_CREAT | O_EXCL, mode);
        if (!file.isOpen() && errno == EEXIST)
            continue;
        // A file system without permissions refuses, and has none to keep.
        if (file.isOpen() && permissions)
            ::fchmod(file.number(), *permissions);
        return file;
    }
}

} // namespace

AtomicFile::AtomicFile(const QString &path, FileAccess access)
    : m_target(targetOf(path))
    , m_folder(opened(folderOf(m_target), O_RDONLY | O_DIRECTORY))
    , m_file(m_folder.isOpen() ? newUnfinishedFile(m_temporary, m_target, access) : FileDescriptor(-1))
    , m_unfinished(m_file.isOpen() ? m_temporary : QByteArray())
{
    if (!m_file.isOpen())
        throw failure(errno);
}

void AtomicFile::write(QByteArrayView bytes)
{
    if (!writeAll(m_file.number(), bytes))
        throw failure(errno);
    m_size += bytes.size();
    startToFlush();
}

bool AtomicFile::appendRestOf(int source, off_t offset)
{
    for (;;) {
        const ssize_t count = ::copy_file_range(source, &offset, m_file.number(), nullptr, pieceForTheDisk, 0);
        if (count <= 0)
            return count == 0;
        m_size += count;
        startToFlush();
    }
}

void AtomicFile::startToFlush()
{
    if (m_size - m_sizeOnItsWay < pieceForTheDisk)
        return;
    // Only a start: what goes wrong here is told by the flush at the end.
    ::sync_file_range(m_file.number(), m_sizeOnItsWay, m_size - m_sizeOnItsWay, SYNC_FILE_RANGE_WRITE);
    m_sizeOnItsWay = m_size;
}

std::optional<FileStamp> AtomicFile::commit()
{
    if (::fsync(m_file.number()) != 0)
        throw failure(errno);
    const std::optional<FileStamp> stamp = stampOf(m_file.number());
    if (!m_file.close() || ::rename(m_temporary.constData(), m_target.constData()) != 0)
        throw failure(errno);
    m_unfinished.keep();
    if (!flushFolder(m_folder.number()))
        throw failure(errno);
    return stamp;
}

Error AtomicFile::failure(int systemError) const
{
    return writingError(QFile::decodeName(m_target), systemError);
}

void removeUnfinishedFiles(const QString &folder)
{
    const QDateTime recent = QDateTime::currentDateTime().addSecs(-60);
    const QDir files(folder, QLatin1String(unfinishedPrefix) + u"??????"_qs, QDir::NoSort, QDir::Files | QDir::Hidden);
    for (const QFileInfo &file : files.entryInfoList()) {
        if (!file.isSymLink() && file.lastModified() < recent)
            QFile::remove(file.filePath());
    }
}

} // namespace sorvanta
