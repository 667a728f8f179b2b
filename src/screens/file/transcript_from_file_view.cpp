#include "screens/file/transcript_from_file_view.h"

#include "core/audio_preparation.h"
#include "export/text_export.h"
#include "history/transcription_history_store.h"
#include "platform/desktop/desktop.h"
#include "platform/desktop/file_panels.h"
#include "platform/error.h"
#include "platform/file_system.h"
#include "platform/file_types.h"
#include "platform/folders.h"
#include "platform/main_queue.h"
#include "platform/paths.h"
#include "platform/unicode_text.h"
#include "platform/worker.h"
#include "screens/media_drop.h"

#include <QPointer>

#include <algorithm>

namespace sorvanta {

namespace {

/// The fields of a screen that a preparation writes. The screen may go while the worker still prepares.
PreparationReport reportTo(const QPointer<TranscriptFromFileView> &screen)
{
    return {
        .status = [screen] { return screen ? screen->run()->status() : QString(); },
        .setStatus =
            [screen](const QString &status) {
                if (screen)
                    screen->run()->setStatus(status);
            },
        .error = [screen] { return screen ? screen->run()->error() : std::nullopt; },
        .setError =
            [screen](const QString &error) {
                if (screen)
                    screen->run()->setError(error);
            },
        .endRun = {},
        .refreshPlaybackState =
            [screen] {
                if (screen)
                    screen->playback().refreshPlaybackState();
            },
    };
}

} // namespace

TranscriptFromFileView::TranscriptFromFileView(const Surroundings &surroundings, QObject *parent)
    : QObject(parent)
    , m_history(surroundings.history)
    , m_panels(surroundings.panels)
    , m_preparer(m_temporaries, surroundings.preparation)
    , m_model(surroundings.models)
    , m_run({surroundings.resourceFolder, true}, {.removeTemporaries = [this] { m_temporaries.removeTemporaries(); },
                                                  .saveToHistory = [this] { saveToHistory(); }})
    , m_exports({.run = m_run,
                 .panels = surroundings.panels,
                 .naming = transcriptionNaming(),
                 .source = [this] { return m_selectedFile; }})
    , m_playback(filePlayback(),
                 {.file = [this] { return m_selectedFile; },
                  .setError = [this](const QString &error) { m_run.setError(error); },
                  .updateActiveSegment = [this](double time) { m_pane.viewer()->updateActiveSegment(time); },
                  .clearActiveSegment = [this] { m_pane.viewer()->model().setActiveSegmentIndex(std::nullopt); }},
                 surroundings.openPlayer)
    , m_pane(m_run, {}, {.controller = &m_playback, .isAvailable = [this] { return hasFile(); }})
{
    connect(&m_run, &TranscriptionRun::isTranscribingChanged, this, &TranscriptFromFileView::startLabelChanged);
    connect(&m_run, &TranscriptionRun::isTranscribingChanged, this, &TranscriptFromFileView::canStartChanged);
    connect(this, &TranscriptFromFileView::selectedFileChanged, this, &TranscriptFromFileView::canStartChanged);
    connect(&m_model, &ModelChoice::changed, this, &TranscriptFromFileView::canStartChanged);
}

TranscriptFromFileView::~TranscriptFromFileView() = default;

QString TranscriptFromFileView::fileLabel() const
{
    return m_selectedFile ? lastPathComponent(*m_selectedFile) : QStringLiteral("No file selected");
}

QString TranscriptFromFileView::startLabel() const
{
    return m_run.isTranscribing() ? QStringLiteral("Transcribing…") : QStringLiteral("Transcribe");
}

bool TranscriptFromFileView::canStart() const
{
    return !m_run.isTranscribing() && m_selectedFile && m_model.modelPath();
}

void TranscriptFromFileView::appear()
{
    m_model.refresh();
    m_pane.syncTranscriptWindow();
}

void TranscriptFromFileView::chooseFile()
{
    const QPointer self(this);
    m_panels.openFile({QStringLiteral("Audio and video"), mediaExtensions()},
                      [self](const std::optional<QString> &path) {
                          if (self && path)
                              self->selectFile(*path);
                      });
}

bool TranscriptFromFileView::acceptsDrop(const QList<QUrl> &files, const QStringList &formats) const
{
    return std::any_of(files.begin(), files.end(), isMediaFile) || !mediaFormat(formats).isEmpty();
}

bool TranscriptFromFileView::dropFiles(const QList<QUrl> &files)
{
    const auto file = std::find_if(files.begin(), files.end(), isMediaFile);
    if (file == files.end())
        return false;
    selectFile(file->toLocalFile());
    return true;
}

QString TranscriptFromFileView::mediaFormat(const QStringList &formats) const
{
    return firstMediaFormat(formats);
}

void TranscriptFromFileView::dropData(const QByteArray &data)
{
    const QString path = newTemporaryPath(QString(), QString());
    try {
        writeFileAtomically(path, data);
    } catch (const Error &error) {
        m_run.setError(error.localizedDescription());
        return;
    }
    m_droppedData.record(path);
    selectFile(path);
}

void TranscriptFromFileView::selectFile(const QString &path)
{
    if (m_selectedFile != path)
        m_playback.stopPlayback();
    m_selectedFile = path;
    m_run.clearTranscript();
    m_run.setStatus(QString());
    m_run.setError(std::nullopt);
    emit selectedFileChanged();
    m_pane.syncTranscriptWindow();
}

void TranscriptFromFileView::start()
{
    if (!m_selectedFile) {
        m_run.setError(QStringLiteral("Please choose an audio file first."));
        return;
    }
    const auto modelPath = m_model.modelPath();
    if (!modelPath) {
        m_run.setError(QStringLiteral("Please select a downloaded model."));
        return;
    }
    m_run.setStatus(QStringLiteral("Preparing file…"));
    prepareAndRun(*m_selectedFile, *modelPath);
}

void TranscriptFromFileView::prepareAndRun(const QString &path, const QString &modelPath)
{
    runOnWorker([self = QPointer(this), report = reportTo(this), preparer = m_preparer, path, modelPath] {
        const auto audioPath = prepareAudio(path, filePreparation(), preparer, report);
        if (!audioPath)
            return;
        postToMain([self, audioPath = *audioPath, modelPath] {
            if (self)
                self->beginTranscription(audioPath, modelPath);
        });
    });
}

void TranscriptFromFileView::beginTranscription(const QString &audioPath, const QString &modelPath)
{
    m_run.setStatus(QStringLiteral("Starting transcription…"));
    m_run.start(audioPath, modelPath, m_language.language());
}

void TranscriptFromFileView::saveToHistory()
{
    const QString text = m_run.displayedTranscript();
    if (trimmedOfWhitespaceAndNewlines(text).isEmpty())
        return;
    const auto segments = parseTimedSegments(m_run.rawOutput(), m_run.stripDashes());
    m_history.addEntry({
        .text = text,
        .srtText = renderExport(ExportFormat::srt, {.text = text, .segments = segments}),
        .sourceLabel = m_selectedFile.value_or(QStringLiteral("Unknown source")),
        .model = m_model.modelName(),
        .language = m_run.runLanguage(),
        .diarization = false,
        .recordingPath = std::nullopt,
        .replaceExisting = false,
    });
}

void TranscriptFromFileView::copyError() const
{
    if (const auto &error = m_run.error())
        copyToPasteboard(*error);
}

} // namespace sorvanta
