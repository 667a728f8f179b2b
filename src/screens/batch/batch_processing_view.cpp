#include "screens/batch/batch_processing_view.h"

#include "export/run_exports.h"
#include "export/text_export.h"
#include "history/transcription_history_store.h"
#include "platform/desktop/file_panels.h"
#include "platform/error.h"
#include "platform/file_system.h"
#include "platform/file_types.h"
#include "platform/folders.h"
#include "platform/unicode_text.h"
#include "screens/media_drop.h"

#include <QPointer>

#include <algorithm>

namespace sorvanta {

namespace {

TranscriptPaneSettings paneSettings()
{
    return {.offersClear = false,
            .staysWithoutText = true,
            .showLogsLabel = QStringLiteral("Show Full Logs"),
            .logsTitle = QStringLiteral("Full Logs")};
}

} // namespace

BatchProcessingView::BatchProcessingView(const ScreenSurroundings &surroundings, QObject *parent)
    : QObject(parent)
    , m_history(surroundings.history)
    , m_panels(surroundings.panels)
    , m_model(surroundings.models)
    , m_run({.engine = {surroundings.resourceFolder, true}, .preparation = surroundings.preparation}, m_results,
            [this](const FileResult &result) { saveToHistory(result); })
    , m_exports({.results = m_results,
                 .panels = surroundings.panels,
                 .stripDashes = [this] { return stripDashes(); },
                 .selectedFileCount = [this] { return m_files.count(); },
                 .messages = messagesOf(m_run)})
    , m_pane(paneContent(), paneSettings(), {})
{
    connect(&m_run, &BatchRun::isTranscribingChanged, this, &BatchProcessingView::canChangeChanged);
    connect(&m_run, &BatchRun::isTranscribingChanged, this, &BatchProcessingView::canStartChanged);
    connect(&m_run, &BatchRun::isTranscribingChanged, this, &BatchProcessingView::canStopChanged);
    connect(&m_run, &BatchRun::isStoppingChanged, this, &BatchProcessingView::canStopChanged);
    connect(&m_files, &SelectedFiles::filesChanged, this, &BatchProcessingView::canStartChanged);
    connect(&m_model, &ModelChoice::changed, this, &BatchProcessingView::canStartChanged);
    connect(&m_run, &BatchRun::outputAppended, this, &BatchProcessingView::takeOutput);
    connect(&m_results, &FileResults::countChanged, this, &BatchProcessingView::areResultsShownChanged);
    connect(&m_results, &FileResults::selectionChanged, this, &BatchProcessingView::showSelected);
    connect(&m_results, &FileResults::selectionChanged, this, &BatchProcessingView::selectedChanged);
    connect(&m_results, &FileResults::selectedResultChanged, this, &BatchProcessingView::selectedChanged);
}

BatchProcessingView::~BatchProcessingView() = default;

TranscriptPane::Content BatchProcessingView::paneContent()
{
    return {.lines = m_lines,
            .rows = m_lines,
            .text = [this] { return displayedTranscript({}, m_shownOutput.transcript(), stripDashes()); },
            .rawOutput = [this]() -> const QString & { return m_shownOutput.rawOutput(); },
            .stripDashes = [this] { return stripDashes(); },
            .setStripDashes = [this](bool stripDashes) { setStripDashes(stripDashes); },
            // The pane of this screen offers no clearing.
            .clearOutput = [] {},
            .clearError = [] {},
            .outputIdentity = [this] { return m_shownIdentity; }};
}

void BatchProcessingView::appear()
{
    m_model.refresh();
    m_pane.syncTranscriptWindow();
}

QString BatchProcessingView::startLabel() const
{
    return m_run.isTranscribing() ? QStringLiteral("Transcribing…") : QStringLiteral("Transcribe Files");
}

bool BatchProcessingView::canStart() const
{
    return !m_run.isTranscribing() && !m_files.isEmpty() && m_model.modelPath();
}

void BatchProcessingView::chooseFiles()
{
    m_panels.openFiles({QStringLiteral("Audio and video"), mediaExtensions()},
                       [self = QPointer(this)](const QStringList &paths) {
                           if (!self || paths.isEmpty())
                               return;
                           QList<QUrl> urls;
                           for (const QString &path : paths)
                               urls << QUrl::fromLocalFile(path);
                           self->addFiles(urls);
                       });
}

bool BatchProcessingView::acceptsDrop(const QList<QUrl> &files, const QStringList &formats) const
{
    return canChange() && (std::any_of(files.begin(), files.end(), isMediaFile) || !mediaFormat(formats).isEmpty());
}

bool BatchProcessingView::dropFiles(const QList<QUrl> &files)
{
    if (!canChange())
        return false;
    bool hasTaken = false;
    for (const QUrl &file : files) {
        if (!isMediaFile(file))
            continue;
        addFiles({file});
        hasTaken = true;
    }
    return hasTaken;
}

QString BatchProcessingView::mediaFormat(const QStringList &formats) const
{
    return firstMediaFormat(formats);
}

void BatchProcessingView::dropData(const QByteArray &data)
{
    if (!canChange() || data.isEmpty())
        return;
    const QString path = newTemporaryPath(QString(), QString());
    try {
        writeFileAtomically(path, data);
    } catch (const Error &) {
        return;
    }
    m_droppedData.record(path);
    addFiles({QUrl::fromLocalFile(path)});
}

void BatchProcessingView::addFiles(const QList<QUrl> &urls)
{
    if (m_files.add(urls))
        m_run.setTotalFilesCount(m_files.count());
    resetForNewFiles();
}

void BatchProcessingView::resetForNewFiles()
{
    if (m_run.isTranscribing())
        return;
    resetOutputs();
    m_results.clear();
}

void BatchProcessingView::resetOutputs()
{
    m_pane.search()->setSearchText(QString());
    m_pane.setShowLogsSheet(false);
    m_run.resetOutputs(m_files.count());
}

void BatchProcessingView::start()
{
    if (m_run.isTranscribing())
        return;
    if (m_files.isEmpty()) {
        m_run.setError(QStringLiteral("Please choose at least one audio file first."));
        return;
    }
    const auto modelPath = m_model.modelPath();
    if (!modelPath) {
        m_run.setError(QStringLiteral("Please select a downloaded model."));
        return;
    }
    m_results.begin(m_files.urls());
    resetOutputs();
    m_run.removeTemporaries();
    m_run.start(*modelPath, m_language.language());
}

void BatchProcessingView::clearAll()
{
    if (m_run.isTranscribing())
        return;
    resetOutputs();
    m_run.removeTemporaries();
    m_results.clear();
}

void BatchProcessingView::clearFiles()
{
    if (m_run.isTranscribing())
        return;
    clearAll();
    m_files.clear();
    m_run.setTotalFilesCount(0);
    m_droppedData.removeTemporaries();
}

void BatchProcessingView::showSelected()
{
    ++m_shownIdentity;
    m_shownOutput.clear();
    if (const FileResult *const result = m_results.selected())
        m_shownOutput.append(result->rawOutput());
    m_lines.reset();
    if (m_pane.showLogsSheet())
        m_pane.log()->reset();
    m_pane.textChanged(0);
    m_exports.updateMenus();
}

void BatchProcessingView::takeOutput(qsizetype row, const QString &piece)
{
    if (row == m_results.selectedRow()) {
        const LiveTranscript::Change change = m_shownOutput.append(piece);
        m_lines.apply(change);
        m_pane.textChanged(change.first);
    }
    m_exports.updateMenus();
}

void BatchProcessingView::setStripDashes(bool stripDashes)
{
    if (stripDashes == m_lines.stripDashes())
        return;
    m_lines.setStripDashes(stripDashes);
    m_pane.takeStripDashes();
    m_exports.updateMenus();
}

void BatchProcessingView::saveToHistory(const FileResult &result)
{
    const QString text = result.exportText(stripDashes());
    m_history.addEntry({
        .text = trimmedOfWhitespaceAndNewlines(text).toString(),
        .srtText = renderExport(ExportFormat::srt, {.text = text, .segments = result.segments(stripDashes())}),
        .sourceLabel = result.url.toLocalFile(),
        .model = m_model.modelName(),
        .language = m_run.runLanguage(),
        .diarization = false,
        .recordingPath = std::nullopt,
        .replaceExisting = false,
    });
}

QString BatchProcessingView::selectedName() const
{
    const FileResult *const result = m_results.selected();
    return result ? oneLineFileName(result->url) : QString();
}

QString BatchProcessingView::selectedStatusWord() const
{
    const FileResult *const result = m_results.selected();
    return result ? lookOf(result->status).word : QString();
}

FileTone::Tone BatchProcessingView::selectedStatusTone() const
{
    const FileResult *const result = m_results.selected();
    return result ? lookOf(result->status).tone : FileTone::Secondary;
}

QString BatchProcessingView::selectedError() const
{
    const FileResult *const result = m_results.selected();
    return result ? shownErrorText(result->error.value_or(QString())) : QString();
}

} // namespace sorvanta
