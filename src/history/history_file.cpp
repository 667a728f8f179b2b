#include "history/history_file.h"

#include "history/history_json.h"
#include "platform/error.h"
#include "platform/file_system.h"
#include "platform/paths.h"
#include "platform/unique_names.h"
#include "platform/worker.h"

#include <QDateTime>

#include <chrono>
#include <memory>
#include <utility>

#include <fcntl.h>
#include <unistd.h>

namespace sorvanta {

namespace {

// The times of files go on in steps; on the coarsest file systems, of two seconds.
constexpr std::chrono::seconds coarsestFileTime{3};

std::chrono::system_clock::time_point timeOf(const FileStamp &stamp)
{
    return std::chrono::system_clock::time_point(std::chrono::nanoseconds(stamp.modified));
}

/// Whether these are the next bytes of an open file.
bool comeNext(int file, QByteArrayView bytes)
{
    QByteArray there(bytes.size(), Qt::Uninitialized);
    qsizetype length = 0;
    while (length < there.size()) {
        const ssize_t count = ::read(file, there.data() + length, static_cast<size_t>(there.size() - length));
        if (count <= 0)
            return false;
        length += count;
    }
    return there == bytes;
}

} // namespace

HistoryFile::HistoryFile(QString path, std::function<double()> secondsSince1970)
    : m_path(std::move(path))
    , m_secondsSince1970(std::move(secondsSince1970))
{
}

QList<TranscriptionHistoryEntry> HistoryFile::read()
{
    const std::optional<FileStamp> stamp = settledStamp();
    if (stamp && m_read && m_read->stamp == *stamp)
        return m_read->entries;
    takeWritten();
    try {
        QList<TranscriptionHistoryEntry> entries;
        if (!itemIsMissing(m_path))
            entries = decodedHistory(readFile(m_path));
        m_copyPath.reset();
        if (stamp)
            m_read = {*stamp, entries};
        return entries;
    } catch (const Error &error) {
        if (!m_copyPath)
            m_copyPath = freeCopyPath();
        throw Error(error.domain(), error.code(),
                    u"%1 The file will be kept as “%2” when the history is next saved."_qs.arg(
                        error.localizedDescription(), lastPathComponent(*m_copyPath)));
    }
}

void HistoryFile::compare(const QList<TranscriptionHistoryEntry> &entries)
{
    if (m_comparison.valid())
        return;
    auto result = std::make_shared<std::promise<std::optional<Written>>>();
    m_comparison = result->get_future();
    runOnWorker([result, path = m_path, entries] { result->set_value(comparedWithFile(path, entries)); });
}

/// @return none if the file holds anything else, or cannot be read
std::optional<HistoryFile::Written> HistoryFile::comparedWithFile(const QString &path,
                                                                  const QList<TranscriptionHistoryEntry> &entries)
{
    const FileDescriptor file = opened(encodedPath(path), O_RDONLY | O_NONBLOCK);
    const std::optional<FileStamp> stamp = file.isOpen() ? stampOf(file.number()) : std::nullopt;
    if (!stamp)
        return std::nullopt;
    bool isSame = true;
    off_t length = 0;
    encodeHistory(entries, [&](QByteArrayView piece) {
        isSame = isSame && comeNext(file.number(), piece);
        length += piece.size();
    });
    if (!isSame || length != stamp->size || stampOf(file.number()) != stamp)
        return std::nullopt;
    return Written{*stamp, entries.size()};
}

bool HistoryFile::isKnownToBeAsWritten() const
{
    return m_comparison.valid() && m_comparison.wait_for(std::chrono::seconds(0)) == std::future_status::ready
           && m_comparison.get();
}

/// What is known of the file before it is replaced or decoded. Nothing is known of it then.
std::optional<HistoryFile::Written> HistoryFile::takeWritten()
{
    const auto compared = isKnownToBeAsWritten() ? m_comparison.get() : std::nullopt;
    m_comparison = {};
    m_read.reset();
    const auto written = std::exchange(m_written, std::nullopt);
    return written ? written : compared;
}

void HistoryFile::write(const QList<TranscriptionHistoryEntry> &entries)
{
    takeWritten();
    if (m_copyPath)
        copyAside();
    AtomicFile file(m_path);
    encodeHistory(entries, [&file](QByteArrayView bytes) { file.write(bytes); });
    commit(file, entries.size());
}

void HistoryFile::writeWithNewEntry(const QList<TranscriptionHistoryEntry> &entries)
{
    const std::optional<Written> others = takeWritten();
    const bool isTheNewOneAllThatDiffers = others && others->entryCount > 0 && others->entryCount + 1 == entries.size();
    if (!isTheNewOneAllThatDiffers || !putBeforeOthers(entries.first(), *others))
        write(entries);
}

/// The stamp of the file, if it was last written so long ago that a write to come will give it another one.
std::optional<FileStamp> HistoryFile::settledStamp() const
{
    const FileDescriptor file = opened(encodedPath(m_path), O_RDONLY | O_NONBLOCK);
    const std::optional<FileStamp> stamp = file.isOpen() ? stampOf(file.number()) : std::nullopt;
    const bool isSettled = stamp && std::chrono::system_clock::now() - timeOf(*stamp) > coarsestFileTime;
    return isSettled ? stamp : std::nullopt;
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
