#include "history/transcription_history_store.h"

#include "history/history_json.h"
#include "platform/atomic_file.h"
#include "platform/file_system.h"
#include "platform/folders.h"
#include "platform/iso8601.h"
#include "platform/paths.h"
#include "platform/unicode_text.h"

#include <QSet>

#include <algorithm>
#include <chrono>

namespace sorvanta {

namespace {

void removeIfThere(const QString &path)
{
    if (!itemExists(path))
        return;
    try {
        removeItem(path);
    } catch (const Error &) {
        // What cannot be removed stays; the entry goes all the same.
    }
}

} // namespace

HistorySurroundings HistorySurroundings::ofThisUser()
{
    const auto clock = [] {
        return std::chrono::duration<double>(std::chrono::system_clock::now().time_since_epoch()).count();
    };
    return {historyBaseFolder(applicationSupportFolder()), clock, sorvanta::newUuidText};
}

QString historyBaseFolder(const std::optional<QString> &applicationSupportFolder)
{
    return applicationSupportFolder.value_or(temporaryFolder()) + u"/sorvanta"_qs;
}

TranscriptionHistoryStore &TranscriptionHistoryStore::shared()
{
    static auto *const store = new TranscriptionHistoryStore(HistorySurroundings::ofThisUser());
    return *store;
}

TranscriptionHistoryStore::TranscriptionHistoryStore(HistorySurroundings surroundings, QObject *parent)
    : QObject(parent)
    , m_surroundings(std::move(surroundings))
    , m_transcriptsDirectory(m_surroundings.baseFolder + u"/transcripts"_qs)
    , m_recordingsDirectory(m_surroundings.baseFolder + u"/recordings"_qs)
    , m_file(m_surroundings.baseFolder + u"/transcription-history.json"_qs, m_surroundings.secondsSince1970)
{
    ensureDirectories();
    for (const QString &folder : {m_surroundings.baseFolder, m_transcriptsDirectory})
        removeUnfinishedFiles(folder);
    reload();
}

void TranscriptionHistoryStore::addEntry(const HistoryAddition &addition)
{
    const QString trimmedText = trimmedOfWhitespaceAndNewlines(addition.text).toString();
    if (trimmedText.isEmpty() && !addition.recordingPath)
        return;
    ensureDirectories();
    QStringList copiedFiles;
    if (addition.replaceExisting)
        copiedFiles = removeEntries(addition.sourceLabel, addition.recordingPath);
    try {
        m_list.insertFirst(storedEntry(addition, trimmedText));
        m_file.writeWithNewEntry(entries());
        m_errorMessage = std::nullopt;
        std::ranges::for_each(copiedFiles, removeIfThere);
    } catch (const Error &error) {
        fail(u"Unable to save history: "_qs, error);
    }
}

void TranscriptionHistoryStore::reload()
{
    try {
        QList<TranscriptionHistoryEntry> entries = m_file.read();
        sortNewestFirst(entries);
        m_file.compare(entries);
        m_list.replaceAll(std::move(entries));
        m_errorMessage = std::nullopt;
    } catch (const Error &error) {
        fail(u"Unable to read history: "_qs, error);
    }
}

void TranscriptionHistoryStore::deleteEntry(const QString &id)
{
    const auto found = std::ranges::find(entries(), id, &TranscriptionHistoryEntry::id);
    if (found == entries().end())
        return;
    std::ranges::for_each(storedFiles(m_list.takeAt(found - entries().begin())), removeIfThere);
    try {
        m_file.write(entries());
        m_errorMessage = std::nullopt;
    } catch (const Error &error) {
        fail(u"Unable to update history: "_qs, error);
    }
}

void TranscriptionHistoryStore::ensureDirectories()
{
    for (const QString &folder : {parentFolder(historyPath()), m_transcriptsDirectory, m_recordingsDirectory}) {
        if (itemExists(folder))
            continue;
        try {
            makeFolder(folder);
        } catch (const Error &) {
            // The write that needs the folder tells what is wrong.
        }
    }
}

QStringList TranscriptionHistoryStore::removeEntries(const QString &sourceLabel,
                                                     const std::optional<QString> &recordingPath)
{
    const bool hasRecording = recordingPath && !recordingPath->isEmpty();
    QStringList copiedFiles;
    QSet<QString> pickedIds;
    for (const TranscriptionHistoryEntry &entry : entries()) {
        if (entry.sourceLabel != sourceLabel && !(hasRecording && entry.recordingPath == recordingPath))
            continue;
        for (const QString &file : storedFiles(entry)) {
            if (hasRecording && isSameItem(file, *recordingPath))
                copiedFiles.append(file);
            else
                removeIfThere(file);
        }
        pickedIds.insert(entry.id);
    }
    for (qsizetype row = entries().size(); row-- > 0 && !pickedIds.isEmpty();) {
        if (pickedIds.contains(entries()[row].id))
            m_list.takeAt(row);
    }
    return copiedFiles;
}

QStringList TranscriptionHistoryStore::storedFiles(const TranscriptionHistoryEntry &entry) const
{
    QStringList files{entry.txtPath};
    if (entry.srtPath)
        files.append(*entry.srtPath);
    if (entry.recordingPath && parentFolder(*entry.recordingPath) == m_recordingsDirectory)
        files.append(*entry.recordingPath);
    return files;
}

TranscriptionHistoryEntry TranscriptionHistoryStore::storedEntry(const HistoryAddition &addition,
                                                                 const QString &trimmedText)
{
    TranscriptionHistoryEntry entry;
    entry.id = makeId();
    const QString baseName = makeBaseName();
    entry.txtPath = m_transcriptsDirectory + u'/' + baseName + u".txt"_qs;
    writeFileAtomically(entry.txtPath, trimmedText.toUtf8());
    entry.srtPath = storedSubtitles(addition.srtText, baseName);
    entry.recordingPath = storedRecording(addition.recordingPath, baseName);
    entry.createdAt = iso8601Text(m_surroundings.secondsSince1970());
    entry.text = trimmedText;
    entry.sourceLabel = addition.sourceLabel;
    entry.model = addition.model;
    entry.language = addition.language;
    entry.diarization = addition.diarization;
    return entry;
}

std::optional<QString> TranscriptionHistoryStore::storedSubtitles(const std::optional<QString> &srtText,
                                                                  const QString &baseName)
{
    if (!srtText || trimmedOfWhitespaceAndNewlines(*srtText).isEmpty())
        return std::nullopt;
    const QString path = m_transcriptsDirectory + u'/' + baseName + u".srt"_qs;
    writeFileAtomically(path, srtText->toUtf8());
    return path;
}

std::optional<QString> TranscriptionHistoryStore::storedRecording(const std::optional<QString> &recordingPath,
                                                                  const QString &baseName)
{
    if (!recordingPath || recordingPath->isEmpty() || !itemExists(*recordingPath))
        return std::nullopt;
    const QString extension = pathExtension(*recordingPath);
    const QString path = m_recordingsDirectory + u'/' + baseName + u'.' + (extension.isEmpty() ? u"wav"_qs : extension);
    if (itemExists(path))
        removeItem(path);
    copyFile(*recordingPath, path);
    return path;
}

QString TranscriptionHistoryStore::makeId() const
{
    const auto milliseconds = static_cast<qint64>(m_surroundings.secondsSince1970() * 1000);
    return QString::number(milliseconds) + u'-' + m_surroundings.newUuidText().first(6).toLower();
}

/// Like an id, but with a clock reading and a UUID of its own: neither can be told from the other.
QString TranscriptionHistoryStore::makeBaseName() const
{
    return u"whisper-"_qs + makeId();
}

void TranscriptionHistoryStore::fail(const QString &prefix, const Error &error)
{
    m_errorMessage = prefix + error.localizedDescription();
}

} // namespace sorvanta
