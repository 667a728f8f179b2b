#pragma once

#include "history/history_file.h"
#include "history/history_list_model.h"
#include "platform/error.h"

#include <QObject>
#include <QProperty>

#include <functional>
#include <optional>

namespace sorvanta {

/// What a finished transcription, or a recording that was just stopped, hands to the history.
struct HistoryAddition {
    QString text = {};
    /// The subtitles; none, or only white space, if there are none.
    std::optional<QString> srtText = {};
    QString sourceLabel = {};
    /// The name of the model as it is shown.
    QString model = {};
    QString language = {};
    bool diarization = false;
    /// The recording, of which the history keeps a copy; a path where nothing lies counts as no recording.
    std::optional<QString> recordingPath = {};
    /// Whether earlier entries with this source label or this recording give way to the new one.
    bool replaceExisting = false;
};

/// Where a history lies, and the clock and the ids that it uses.
struct HistorySurroundings {
    QString baseFolder;
    std::function<double()> secondsSince1970;
    /// Gives a new UUID of 36 characters.
    std::function<QString()> newUuidText;

    /// Those of this user.
    static HistorySurroundings ofThisUser();
};

/// The folder of the history within the folder for the data of applications, or within the temporary folder if there
/// is none.
QString historyBaseFolder(const std::optional<QString> &applicationSupportFolder);

/// The one record on disk of what has been transcribed: a list of entries, a file that holds it, and folders with the
/// texts, subtitles and recordings of the entries. Main thread only. All operations do their work with files before
/// they return, and none throws: what fails becomes the error message.
class TranscriptionHistoryStore : public QObject {
    Q_OBJECT

public:
    /// The store of this user, made on first use and never released.
    static TranscriptionHistoryStore &shared();

    /// Makes the folders that are missing and reads the file. A test makes its own; the application uses shared().
    explicit TranscriptionHistoryStore(HistorySurroundings surroundings, QObject *parent = nullptr);

    /// In display order: as the file was sorted when it was read, later additions before that.
    const QList<TranscriptionHistoryEntry> &entries() const { return m_list.entries(); }
    /// The same list for views; owned by the store.
    HistoryListModel *list() { return &m_list; }

    /// What failed last; none after a success.
    std::optional<QString> errorMessage() const { return m_errorMessage; }
    /// The same for views: empty if there is none.
    QString errorText() const { return errorMessage().value_or(QString()); }
    Q_SIGNAL void errorMessageChanged();

    /// `transcription-history.json` in the base folder.
    const QString &historyPath() const { return m_file.path(); }
    /// `transcripts` in the base folder: the texts and subtitles.
    const QString &transcriptsDirectory() const { return m_transcriptsDirectory; }
    /// `recordings` in the base folder: the copies of recordings.
    const QString &recordingsDirectory() const { return m_recordingsDirectory; }

    /// Writes the files of a new entry, puts it before all others and saves the list. Without text and without a
    /// recording path there is nothing to add, and nothing happens. If a file of the entry cannot be written there is
    /// no new entry; if only the list cannot be saved there is one.
    void addEntry(const HistoryAddition &addition);

    /// Reads the list from the file, the newest entry first. Never writes. After a failure the list stays as it was;
    /// the message then names the file to which the unreadable one will be copied before it is replaced.
    void reload();

    /// Removes the first entry with that id and its files, and saves the list. A recording outside of the store's own
    /// folder stays. Without such an entry nothing happens.
    void deleteEntry(const QString &id);

    /// Makes the base folder and the two folders in it where they are missing; says nothing if that fails.
    void ensureDirectories();

private:
    /// Removes the entries with their files. @return those files that the recording path still names: they go once
    /// their copy is in the saved list
    QStringList removeEntries(const QString &sourceLabel, const std::optional<QString> &recordingPath);
    /// The files that go with an entry.
    QStringList storedFiles(const TranscriptionHistoryEntry &entry) const;
    /// Writes the files of a new entry. @throws Error
    TranscriptionHistoryEntry storedEntry(const HistoryAddition &addition, const QString &trimmedText);
    std::optional<QString> storedSubtitles(const std::optional<QString> &srtText, const QString &baseName);
    std::optional<QString> storedRecording(const std::optional<QString> &recordingPath, const QString &baseName);
    QString makeId() const;
    QString makeBaseName() const;
    void fail(const QString &prefix, const Error &error);

    HistoryListModel m_list;
    Q_OBJECT_BINDABLE_PROPERTY(TranscriptionHistoryStore, std::optional<QString>, m_errorMessage,
                               &TranscriptionHistoryStore::errorMessageChanged)
    HistorySurroundings m_surroundings;
    QString m_transcriptsDirectory;
    QString m_recordingsDirectory;
    HistoryFile m_file;
};

} // namespace sorvanta
