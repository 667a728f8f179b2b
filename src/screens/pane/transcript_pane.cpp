#include "screens/pane/transcript_pane.h"

#include "audio/playback_controller.h"
#include "core/transcription_run.h"
#include "platform/desktop/desktop.h"

#include <utility>

namespace sorvanta {

namespace {

TranscriptPane::Content contentOf(TranscriptionRun &run)
{
    return {.lines = *run.lines(),
            .rows = *run.lines(),
            .text = [&run] { return run.displayedTranscript(); },
            .rawOutput = [&run]() -> const QString & { return run.rawOutput(); },
            .stripDashes = [&run] { return run.stripDashes(); },
            .setStripDashes = [&run](bool stripDashes) { run.setStripDashes(stripDashes); },
            .clearOutput = [&run] { run.clearOutput(); },
            .clearError = [&run] { run.setError(std::nullopt); },
            .outputIdentity = [&run] { return run.outputIdentity(); }};
}

} // namespace

TranscriptPane::TranscriptPane(const Content &content, TranscriptPaneSettings settings, const Playback &playback,
                               QObject *parent)
    : QObject(parent)
    , m_content(content)
    , m_settings(std::move(settings))
    , m_playback(playback)
    , m_search(content.lines)
    , m_counter(content.lines)
    , m_log(content.rawOutput)
    , m_viewer(viewerScreen())
{
    connect(&m_search, &TranscriptSearchState::highlightChanged, this, [this] {
        ++m_paintRevision;
        emit paintRevisionChanged();
    });
    followPlayback();
    textChanged(0);
}

TranscriptPane::TranscriptPane(TranscriptionRun &run, TranscriptPaneSettings settings, const Playback &playback,
                               QObject *parent)
    : TranscriptPane(contentOf(run), std::move(settings), playback, parent)
{
    connect(&run, &TranscriptionRun::transcriptChanged, this, &TranscriptPane::textChanged);
    connect(&run, &TranscriptionRun::stripDashesChanged, this, &TranscriptPane::takeStripDashes);
}

TranscriptPane::~TranscriptPane() = default;

void TranscriptPane::textChanged(qsizetype firstLine)
{
    count(firstLine);
    m_search.recomputeMatchesFrom(firstLine);
    m_isShowLogsOffered = !m_content.rawOutput().isEmpty();
    if (m_showLogsSheet) {
        m_log.update();
        emit emptyLogTextChanged();
    }
    m_hasText = m_content.lines.lineCount() > 0;
    m_viewer.textChanged(firstLine);
}

void TranscriptPane::takeStripDashes()
{
    count(0);
    m_search.recomputeMatches();
    emit stripDashesChanged();
    m_viewer.stripDashesChanged();
    m_viewer.textChanged(0);
}

void TranscriptPane::count(qsizetype firstLine)
{
    m_counter.recountFrom(firstLine);
    m_counts = countsText(m_counter.counts());
}

QList<int> TranscriptPane::hitsInRow(int row) const
{
    QList<int> hits;
    if (row < 0 || row >= m_content.lines.lineCount())
        return hits;
    for (const HighlightedRange &hit : m_search.highlightedLine(m_content.lines.line(row), row))
        hits << static_cast<int>(hit.start) << static_cast<int>(hit.length) << (hit.isCurrent ? 1 : 0);
    return hits;
}

QString TranscriptPane::stripDashesHint()
{
    return QStringLiteral("Remove leading dash markers from lines.");
}

void TranscriptPane::copyOutput() const
{
    copyToPasteboard(m_content.text());
}

void TranscriptPane::clearOutput()
{
    m_search.setSearchText(QString());
    setShowLogsSheet(false);
    if (m_settings.clearsError)
        m_content.clearError();
    m_content.clearOutput();
}

void TranscriptPane::setShowLogsSheet(bool isShown)
{
    if (isShown == m_showLogsSheet)
        return;
    if (isShown)
        m_log.reset();
    else
        m_log.clear();
    m_showLogsSheet = isShown;
    emit emptyLogTextChanged();
}

QString TranscriptPane::emptyLogText() const
{
    return m_content.rawOutput().isEmpty() ? QStringLiteral("No logs available.") : QString();
}

void TranscriptPane::copyLog() const
{
    copyToPasteboard(m_content.rawOutput());
}

TranscriptViewer::Screen TranscriptPane::viewerScreen()
{
    PlaybackController *controller = m_playback.controller;
    return {.text = m_content.text,
            .counts = [this] { return m_counts.value(); },
            .rawOutput = [this] { return m_content.rawOutput(); },
            .stripsSegments = m_content.stripDashes,
            .isPlaybackAvailable = m_playback.isAvailable,
            .isPlaying = [controller] { return controller && controller->isRunning(); },
            .currentTime = [controller] { return controller ? controller->playbackTime() : 0.0; },
            .playbackDuration = [controller] { return controller ? controller->playbackDuration() : 0.0; },
            .stripDashes = {.get = m_content.stripDashes, .set = m_content.setStripDashes},
            .togglePlay =
                [controller] {
                    if (controller)
                        controller->togglePlayback();
                },
            .seek =
                [controller](double seconds) {
                    if (controller)
                        controller->seekPlayback(seconds);
                },
            .lines = &m_content.lines,
            .outputIdentity = m_content.outputIdentity};
}

void TranscriptPane::followPlayback()
{
    PlaybackController *controller = m_playback.controller;
    if (!controller)
        return;
    TranscriptWindowModel &model = m_viewer.model();
    connect(controller, &PlaybackController::isRunningChanged, this,
            [controller, &model] { model.setPlaying(controller->isRunning()); });
    connect(controller, &PlaybackController::playbackTimeChanged, this,
            [controller, &model] { model.setCurrentTime(controller->playbackTime()); });
    connect(controller, &PlaybackController::playbackDurationChanged, this,
            [controller, &model] { model.setPlaybackDuration(controller->playbackDuration()); });
}

} // namespace sorvanta
