#include "history/history_file.h"

#include "history/history_json.h"
#include "platform/error.h"
#include "platform/file_system.h"
#include "platform/paths.h"
#include "platform/unique_names.h"

#include <QDateTime>

#include <utility>

#include <fcntl.h>

namespace sorvanta {

HistoryFile::HistoryFile(QString path, std::function<double()> secondsSince1970)
    : m_path(std::move(path))
    , m_secondsSince1970(std::move(secondsSince1970))
{
}

QList<TranscriptionHistoryEntry> HistoryFile::read()
{
    m_written.reset();
    try {
        QList<TranscriptionHistoryEntry> entries;
        if (!itemIsMissing(m_path))
            entries = decodedHistory(readFile(m_path));
        m_copyPath.reset();
        return entries;
    } catch (const Error &error) {
        if (!m_copyPath)
            m_copyPath = freeCopyPath();
        throw Error(error.domain(), error.code(),
                    u"%1 The file will be kept as “%2” when the history is next saved."_qs.arg(
                        error.localizedDescription(), lastPathComponent(*m_copyPath)));
    }
}

void HistoryFile::write(const QList<TranscriptionHistoryEntry> &entries)
{
    m_written.reset();
    if (m_copyPath)
        copyAside();
    AtomicFile file(m_path);
    encodeHistory(entries, [&file](QByteArrayView bytes) { file.write(bytes); });
    commit(file, entries.size());
}

void HistoryFile::writeWithNewEntry(const QList<TranscriptionHistoryEntry> &entries)
{
    const std::optional<Written> others = std::exchange(m_written, std::nullopt);
    const bool isTheNewOneAllThatDiffers = others && others->entryCount > 0 && others->entryCount + 1 == entries.size();
    if (!isTheNewOneAllThatDiffers || !putBeforeOthers(entries.first(), *others))
        write(entries);
}

/// @return false if that cannot be done; nothing has changed then
bool HistoryFile::putBeforeOthers(const TranscriptionHistoryEntry &entry, const Written &others)
{
    const FileDescriptor previous = opened(encodedPath(m_path), O_RDONLY | O_NONBLOCK);
    if (!previous.isOpen() || stampOf(previous.number()) != others.stamp)
        return false;
    AtomicFile file(m_path);
    file.write(encodedBeforeOthers(entry));
    if (!file.appendRestOf(previous.number(), firstEntryOffset))
        return false;
    commit(file, others.entryCount + 1);
    return true;
}

void HistoryFile::commit(AtomicFile &file, qsizetype entryCount)
{
    if (const std::optional<FileStamp> stamp = file.commit())
        m_written = {*stamp, entryCount};
}

QString HistoryFile::freeCopyPath() const
{
    const QDateTime now = QDateTime::fromMSecsSinceEpoch(static_cast<qint64>(m_secondsSince1970() * 1000));
    const QString date = now.toString(u"yyyy-MM-dd_HH-mm-ss");
    return freePath(parentFolder(m_path), lastPathComponent(m_path) + u".unreadable-"_qs + date, QString());
}

void HistoryFile::copyAside()
{
    if (!itemIsMissing(m_path))
        copyFile(m_path, isNameTaken(*m_copyPath) ? freeCopyPath() : *m_copyPath);
    m_copyPath.reset();
}

} // namespace sorvanta
