#pragma once

#include "platform/error.h"
#include "platform/file_access.h"
#include "platform/file_descriptor.h"

#include <QByteArray>
#include <QString>

namespace sorvanta {

/// Writes a file piece by piece without anyone ever seeing a part of it; see writeFileAtomically(), which does it at
/// one go. Until commit() the file that may stand at the path is untouched, and without it nothing stays behind.
/// Failures are thrown as an Error of writingError().
class AtomicFile {
public:
    explicit AtomicFile(const QString &path, FileAccess access = FileAccess::Private);

    void write(QByteArrayView bytes);
    /// Appends an open file from `offset` to its end without taking the bytes into memory.
    /// @return false if the system cannot do that here; the file is then of no use any more
    bool appendRestOf(int source, off_t offset);
    /// Flushes the file and puts it in its place. Nothing may be called after it.
    /// @return the stamp of the file that now stands there, if the system tells it
    std::optional<FileStamp> commit();

private:
    void startToFlush();
    Error failure(int systemError) const;

    QByteArray m_target;
    FileDescriptor m_folder;
    QByteArray m_temporary;
    FileDescriptor m_file;
    UnfinishedFile m_unfinished;
    off_t m_size = 0;
    off_t m_sizeOnItsWay = 0; // to the disk
};

/// Removes what processes that were killed in the midst of writing left in `folder`: unfinished files that nobody has
/// written to for a minute. What cannot be removed stays, without a word.
void removeUnfinishedFiles(const QString &folder);

} // namespace sorvanta
