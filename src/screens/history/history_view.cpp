#include "screens/history/history_view.h"

#include "export/export_names.h"
#include "export/stored_export.h"
#include "history/transcription_history_store.h"
#include "platform/paths.h"

#include <algorithm>

namespace sorvanta {

HistoryView::HistoryView(const Surroundings &surroundings, QObject *parent)
    : QObject(parent)
    , m_history(surroundings.history)
    , m_filteredEntries(*surroundings.history.list())
    , m_delivery(
          {.form = historyDelivery,
           .panels = surroundings.panels,
           .defaultName =
               [this](const QString &extension) {
                   return defaultExportName(historyNaming(), extension, selectedEntry()->sourceLabel);
               },
           .messages = {.setMessage = [this](const std::optional<QString> &message) { m_exportMessage = message; },
                        .setError = [this](const std::optional<QString> &error) { m_exportError = error; }},
           .downloadsFolder = surroundings.downloadsFolder})
    , m_export([this] { return selectedEntry(); }, m_delivery)
    , m_exportMenu(newHistoryExportMenu(m_export, this))
    , m_playback(historyPlayback(),
                 {.file = [this] { return selectedEntry() ? selectedEntry()->recordingPath : std::nullopt; },
                  .setError = [this](const QString &error) { m_exportError = error; }},
                 surroundings.openPlayer)
    , m_viewer(viewerScreen())
{
    followEntries();
    followPlayback();
    connect(&m_history, &TranscriptionHistoryStore::errorMessageChanged, this, &HistoryView::storeErrorChanged);
}

HistoryView::~HistoryView() = default;

void HistoryView::appear()
{
    reload();
    m_viewer.syncTranscriptWindow();
}

void HistoryView::reload()
{
    m_history.reload();
    entriesChanged();
    refreshFiles();
}

void HistoryView::setSearchText(const QString &searchText)
{
    if (searchText == m_searchText)
        return;
    m_searchText = searchText;
    m_filteredEntries.setSearchText(searchText);
    emit searchTextChanged();
    rowsChanged();
    ensureValidSelection();
    scrollToSelection();
}

void HistoryView::selectRow(int row)
{
    if (!m_filteredEntries.isEmpty())
        select(m_filteredEntries.entry(std::clamp(row, 0, m_filteredEntries.count() - 1)).id);
}

void HistoryView::exportAudio()
{
    refreshFiles();
    if (!m_detail.hasRecording())
        return;
    const QString path = *selectedEntry()->recordingPath;
    const QString ending = pathExtension(path);
    const QString extension = ending.isEmpty() ? QStringLiteral("wav") : ending;
    m_delivery.saveWithPanel({.sourcePath = path}, extension, {extension}, QString());
}

QString HistoryView::storeError() const
{
    return m_history.errorText();
}

void HistoryView::togglePlayback()
{
    m_playback.togglePlayback();
    refreshFiles();
}

QString HistoryView::playLabel() const
{
    return m_playback.isPlaying() ? QStringLiteral("Pause Audio") : QStringLiteral("Play Audio");
}

QString HistoryView::playSymbol() const
{
    return m_playback.isPlaying() ? QStringLiteral("pause.circle") : QStringLiteral("play.circle");
}

QString HistoryView::positionText() const
{
    return formatClock(m_playback.playbackTime());
}

QString HistoryView::durationText() const
{
    return formatClock(m_playback.playbackDuration());
}

void HistoryView::askForDeletion()
{
    if (!selectedEntry())
        return;
    m_deletionID = m_selectedID;
    m_showDeleteConfirmation = true;
}

void HistoryView::confirmDeletion()
{
    if (!m_showDeleteConfirmation)
        return;
    m_playback.stopPlayback();
    m_history.deleteEntry(*m_deletionID);
    entriesChanged(); // before the dialog closes and hands the focus back
    m_showDeleteConfirmation = false;
}

TranscriptViewer::Screen HistoryView::viewerScreen()
{
    const auto text = [this] { return selectedEntry() ? selectedEntry()->text : QString(); };
    return {.text = text,
            .counts = [this] { return selectedEntry() ? TranscriptCounts(selectedEntry()->text) : QString(); },
            .segments = [this] { return m_detail.windowSegments(); },
            .isPlaybackAvailable = [this] { return m_detail.hasRecording(); },
            .isPlaying = [this] { return m_playback.isPlaying(); },
            .currentTime = [this] { return m_playback.playbackTime(); },
            .playbackDuration = [this] { return m_playback.playbackDuration(); },
            // This screen has no such option, so that of the window goes back.
            .stripDashes = {.get = [] { return false; }, .set = [this](bool) { m_viewer.stripDashesChanged(); }},
            .togglePlay = [this] { togglePlayback(); },
            .seek = [this](double seconds) { m_playback.seekPlayback(seconds); }};
}

/// An addition may first remove what it replaces. The selection follows once all of it has been done, so that it comes
/// to the new entry and not to one beside it.
void HistoryView::followEntries()
{
    const auto follow = [this] {
        rowsChanged();
        if (m_isEntriesChangePending)
            return;
        m_isEntriesChangePending = true;
        QMetaObject::invokeMethod(this, &HistoryView::entriesChanged, Qt::QueuedConnection);
    };
    connect(m_history.list(), &QAbstractItemModel::rowsInserted, this, follow);
    connect(m_history.list(), &QAbstractItemModel::rowsRemoved, this, follow);
    connect(m_history.list(), &QAbstractItemModel::modelReset, this, [this, follow] {
        follow();
        scrollToSelection();
    });
}

void HistoryView::followPlayback()
{
    TranscriptWindowModel &model = m_viewer.model();
    connect(&m_playback, &PlaybackController::isPlayingChanged, this, [this, &model] {
        model.setPlaying(m_playback.isPlaying());
        emit isPlayingAudioChanged();
    });
    connect(&m_playback, &PlaybackController::playbackTimeChanged, this, [this, &model] {
        model.setCurrentTime(m_playback.playbackTime());
        emit positionTextChanged();
    });
    connect(&m_playback, &PlaybackController::playbackDurationChanged, this, [this, &model] {
        model.setPlaybackDuration(m_playback.playbackDuration());
        emit durationTextChanged();
    });
}

/// The row of the selected entry may be another one.
void HistoryView::rowsChanged()
{
    m_selectedRow = m_selectedID ? m_filteredEntries.rowOf(*m_selectedID) : -1;
    emit selectionChanged();
}

void HistoryView::scrollToSelection()
{
    if (m_selectedRow >= 0)
        emit scrollToRow(m_selectedRow);
}

void HistoryView::entriesChanged()
{
    m_isEntriesChangePending = false;
    ensureValidSelection();
    const auto &entries = m_history.entries();
    const auto selected = std::ranges::find(entries, m_selectedID, &TranscriptionHistoryEntry::id);
    const bool isSame = selected == entries.end() ? !selectedEntry() : *selected == selectedEntry();
    if (!isSame)
        syncSelection();
}

void HistoryView::ensureValidSelection()
{
    if (selectedRow() >= 0)
        return;
    if (m_filteredEntries.isEmpty())
        select(std::nullopt);
    else
        selectRow(0);
}

void HistoryView::select(const std::optional<QString> &id)
{
    if (id == m_selectedID)
        return;
    m_selectedID = id;
    m_playback.stopPlayback();
    syncSelection();
    rowsChanged();
    scrollToSelection();
}

/// Shows the selected entry everywhere. A closed viewer window is brought up to date when it opens.
void HistoryView::syncSelection()
{
    const auto &entries = m_history.entries();
    const auto selected = std::ranges::find(entries, m_selectedID, &TranscriptionHistoryEntry::id);
    m_detail.show(selected == entries.end() ? std::nullopt : std::optional(*selected));
    refreshFiles();
    if (m_viewer.transcriptWindow())
        m_viewer.syncTranscriptWindow();
}

/// Looks at the files of the selected entry: what can be played and exported depends on them.
void HistoryView::refreshFiles()
{
    m_detail.refresh();
    m_viewer.model().setPlaybackAvailable(m_detail.hasRecording());
    const auto &entry = selectedEntry();
    m_exportMenu->setState({.hasContent = entry && canExport(*entry), .hasSegments = entry && hasTimestamps(*entry)});
}

} // namespace sorvanta
