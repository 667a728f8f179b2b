#pragma once

#include "history/transcription_history_entry.h"
#include "platform/atomic_file.h"
#include "platform/file_descriptor.h"

#include <QList>

#include <functional>
#include <future>
#include <optional>

namespace sorvanta {

/// The file that holds the whole history. A file that could not be read is never lost: before it is replaced, it is
/// copied to a name beside it. Failures are thrown as Error.
class HistoryFile {
public:
    /// @param secondsSince1970 the clock whose local time names the copy of an unreadable file
    HistoryFile(QString path, std::function<double()> secondsSince1970);

    const QString &path() const { return m_path; }

    /// The entries as they stand in the file; none if there is certainly no file. A file that is certainly as it was at
    /// the last read is not decoded again: the list shares its data with the one that was given then. The description
    /// of a failure tells under which name the file will be kept.
    QList<TranscriptionHistoryEntry> read();

    /// Finds out on a worker whether the file holds just this list, which is what read() gave or an order of it, in
    /// just the form that write() would give it. Once that is known the file counts as left by this object.
    /// Does nothing if it was called since the file was last decoded.
    void compare(const QList<TranscriptionHistoryEntry> &entries);

    /// Whether compare() was called, is done, and found that.
    bool isKnownToBeAsWritten() const;

    /// Replaces the file, at once and as a whole. If the last read failed and the file cannot be copied aside, nothing
    /// is written.
    void write(const QList<TranscriptionHistoryEntry> &entries);

    /// Does what write() does, for a list that differs from the one that was last given to this object, if at all, by
    /// entries that were taken out and by one new entry before the others. Takes the others out of the file itself
    /// where nothing was taken out and the file is still as it was written; that spares the work of encoding them.
    void writeWithNewEntry(const QList<TranscriptionHistoryEntry> &entries);

private:
    /// The file as it was last read.
    struct Read {
        FileStamp stamp;
        QList<TranscriptionHistoryEntry> entries;
    };
    /// The file as this object left it.
    struct Written {
        FileStamp stamp;
        qsizetype entryCount;
    };

    static std::optional<Written> comparedWithFile(const QString &path,
                                                   const QList<TranscriptionHistoryEntry> &entries);
    std::optional<Written> takeWritten();
    std::optional<FileStamp> settledStamp() const;
    bool putBeforeOthers(const TranscriptionHistoryEntry &entry, const Written &others);
    void commit(AtomicFile &file, qsizetype entryCount);
    QString freeCopyPath() const;
    void copyAside();

    QString m_path;
    std::function<double()> m_secondsSince1970;
    std::optional<QString> m_copyPath; // while the file stands unread
    std::optional<Read> m_read; // while nothing was given to be written
    std::optional<Written> m_written; // while the file is known to hold the list that was last given
    std::shared_future<std::optional<Written>> m_comparison; // of the list that was read, until the next write
};

} // namespace sorvanta
