#pragma once

#include "app/viewer/transcript_viewer.h"
#include "audio/playback_controller.h"
#include "export/export_delivery.h"
#include "export/export_menu.h"
#include "export/history_export.h"
#include "screens/history/filtered_entries.h"
#include "screens/history/history_detail.h"

#include <QObject>
#include <QObjectBindableProperty>
#include <QString>
#include <QtQml/qqml.h>

#include <optional>

namespace sorvanta {

class FilePanels;
class TranscriptionHistoryStore;

/// The screen for what the history holds: a list that can be searched, and the selected entry with its text, its
/// exports, its viewer window and the playback of its recording. Main thread only.
class HistoryView : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the application")
    Q_PROPERTY(sorvanta::FilteredEntries *rows READ rows CONSTANT)
    Q_PROPERTY(QString searchText READ searchText WRITE setSearchText NOTIFY searchTextChanged)
    Q_PROPERTY(int selectedRow READ selectedRow NOTIFY selectionChanged)
    Q_PROPERTY(sorvanta::HistoryDetail *detail READ detail CONSTANT)
    Q_PROPERTY(sorvanta::ExportMenu *exportMenu READ exportMenu CONSTANT)
    Q_PROPERTY(sorvanta::PlaybackController *playback READ playback CONSTANT)
    Q_PROPERTY(QString playLabel READ playLabel NOTIFY isPlayingAudioChanged)
    Q_PROPERTY(QString playSymbol READ playSymbol NOTIFY isPlayingAudioChanged)
    Q_PROPERTY(QString positionText READ positionText NOTIFY positionTextChanged)
    Q_PROPERTY(QString durationText READ durationText NOTIFY durationTextChanged)
    Q_PROPERTY(QString exportMessage READ exportMessageText NOTIFY exportMessageChanged)
    Q_PROPERTY(QString exportError READ exportErrorText NOTIFY exportErrorChanged)
    Q_PROPERTY(QString storeError READ storeError NOTIFY storeErrorChanged)
    Q_PROPERTY(bool showDeleteConfirmation READ showDeleteConfirmation NOTIFY showDeleteConfirmationChanged)
    Q_PROPERTY(sorvanta::TranscriptViewer *viewer READ viewer CONSTANT)

public:
    /// What the screen works with; all of it outlives the screen.
    struct Surroundings {
        TranscriptionHistoryStore &history;
        FilePanels &panels;
        PlaybackController::OpenPlayer openPlayer = openAudioPlayer;
        std::function<std::optional<QString>()> downloadsFolder = sorvanta::downloadsFolder;
    };

    explicit HistoryView(const Surroundings &surroundings, QObject *parent = nullptr);
    ~HistoryView() override;

    /// What the screen does when it comes on show.
    void appear();
    /// Reads the history from the disk.
    Q_INVOKABLE void reload();

    /// What the list is searched for; kept as it was typed.
    QString searchText() const { return m_searchText; }
    void setSearchText(const QString &searchText);

    /// The entries that the search finds: all of them if the search is blank.
    FilteredEntries *rows() { return &m_filteredEntries; }

    /// The id of the selected entry, or none.
    const std::optional<QString> &selectedID() const { return m_selectedID; }
    /// The entry with that id, or none.
    const std::optional<TranscriptionHistoryEntry> &selectedEntry() const { return m_detail.entry(); }
    /// The row of the list that is selected, or -1.
    int selectedRow() const { return m_selectedRow; }
    /// Selects that row, or the first or last one if there are not so many.
    Q_INVOKABLE void selectRow(int row);

    HistoryDetail *detail() { return &m_detail; }
    TranscriptViewer *viewer() { return &m_viewer; }
    Q_INVOKABLE void openTranscriptWindow() { m_viewer.openTranscriptWindow(); }

    /// What the entry can be exported as.
    ExportMenu *exportMenu() { return m_exportMenu; }
    /// Asks where to, and copies the entry's recording there.
    Q_INVOKABLE void exportAudio();

    /// What the last export did, or none.
    const std::optional<QString> &exportMessage() const { return m_exportMessage.value(); }
    QString exportMessageText() const { return exportMessage().value_or(QString()); }
    /// What failed in the last export or in playback, or none.
    const std::optional<QString> &exportError() const { return m_exportError.value(); }
    QString exportErrorText() const { return exportError().value_or(QString()); }
    /// What failed in the history itself; empty for nothing.
    QString storeError() const;

    PlaybackController *playback() { return &m_playback; }
    Q_INVOKABLE void togglePlayback();
    QString playLabel() const;
    QString playSymbol() const;
    QString positionText() const;
    QString durationText() const;

    bool showDeleteConfirmation() const { return m_showDeleteConfirmation; }
    /// Asks whether the selected entry is to be deleted.
    Q_INVOKABLE void askForDeletion();
    /// Deletes the entry that was asked about.
    Q_INVOKABLE void confirmDeletion();
    Q_INVOKABLE void cancelDeletion() { m_showDeleteConfirmation = false; }

Q_SIGNALS:
    void searchTextChanged();
    void selectionChanged();
    void isPlayingAudioChanged();
    void positionTextChanged();
    void durationTextChanged();
    void exportMessageChanged();
    void exportErrorChanged();
    void storeErrorChanged();
    void showDeleteConfirmationChanged();
    /// The row is to be brought into sight: it was selected, or the rows are others. One that comes or goes beside it
    /// moves nothing that is being looked at.
    void scrollToRow(int row);

private:
    TranscriptViewer::Screen viewerScreen();
    void followEntries();
    void followPlayback();
    void rowsChanged();
    void scrollToSelection();
    void entriesChanged();
    void ensureValidSelection();
    void select(const std::optional<QString> &id);
    void syncSelection();
    void refreshFiles();

    TranscriptionHistoryStore &m_history;
    FilteredEntries m_filteredEntries;
    HistoryDetail m_detail;
    QString m_searchText;
    std::optional<QString> m_selectedID;
    int m_selectedRow = -1;
    std::optional<QString> m_deletionID; // of the entry that was asked about
    bool m_isEntriesChangePending = false;
    ExportDelivery m_delivery;
    HistoryExport m_export;
    ExportMenu *m_exportMenu;
    PlaybackController m_playback;
    TranscriptViewer m_viewer;

    Q_OBJECT_BINDABLE_PROPERTY(HistoryView, std::optional<QString>, m_exportMessage, &HistoryView::exportMessageChanged)
    Q_OBJECT_BINDABLE_PROPERTY(HistoryView, std::optional<QString>, m_exportError, &HistoryView::exportErrorChanged)
    Q_OBJECT_BINDABLE_PROPERTY(HistoryView, bool, m_showDeleteConfirmation, &HistoryView::showDeleteConfirmationChanged)
};

} // namespace sorvanta
