#include "screens/transcription_screen.h"

#include "core/languages.h"
#include "core/transcript_text.h"
#include "export/text_export.h"
#include "history/transcription_history_store.h"
#include "platform/desktop/file_panels.h"
#include "platform/error.h"
#include "platform/file_system.h"
#include "platform/main_queue.h"
#include "platform/paths.h"
#include "platform/unicode_text.h"
#include "platform/worker.h"

#include <QPointer>

#include <utility>

namespace sorvanta {

namespace {

/// The fields of a screen that a preparation writes. The screen may go while the worker still prepares.
PreparationReport reportTo(const QPointer<TranscriptionRun> &run, const std::function<void()> &refreshPlaybackState)
{
    return {
        .status = [run] { return run ? run->status() : QString(); },
        .setStatus =
            [run](const QString &status) {
                if (run)
                    run->setStatus(status);
            },
        .error = [run] { return run ? run->error() : std::nullopt; },
        .setError =
            [run](const QString &error) {
                if (run)
                    run->setError(error);
            },
        .endRun =
            [run] {
                if (run)
                    run->endPreparation();
            },
        .refreshPlaybackState =
            [run, refreshPlaybackState] {
                if (run && refreshPlaybackState)
                    refreshPlaybackState();
            },
    };
}

} // namespace

TranscriptionScreen::TranscriptionScreen(const ScreenSurroundings &surroundings, Settings settings, QObject *parent)
    : QObject(parent)
    , m_history(surroundings.history)
    , m_panels(surroundings.panels)
    , m_settings(std::move(settings))
    , m_preparer(m_temporaries, surroundings.preparation)
    , m_model(surroundings.models)
    , m_run({surroundings.resourceFolder, m_settings.printsCommand},
            {.removeTemporaries = [this] { m_temporaries.removeTemporaries(); },
             .saveToHistory = [this] { saveToHistory(); }})
    , m_exports({.run = m_run, .panels = surroundings.panels, .naming = m_settings.naming, .source = m_settings.source})
{
    connect(&m_run, &TranscriptionRun::isTranscribingChanged, this, &TranscriptionScreen::startLabelChanged);
    connect(&m_run, &TranscriptionRun::isTranscribingChanged, this, &TranscriptionScreen::canStartChanged);
    connect(&m_model, &ModelChoice::changed, this, &TranscriptionScreen::canStartChanged);
}

TranscriptionScreen::~TranscriptionScreen() = default;

QString TranscriptionScreen::startLabel() const
{
    return m_run.isTranscribing() ? QStringLiteral("Transcribing…") : QStringLiteral("Transcribe");
}

bool TranscriptionScreen::canStart() const
{
    return !m_run.isTranscribing() && m_settings.source() && m_model.modelPath();
}

void TranscriptionScreen::appear()
{
    m_model.refresh();
    pane()->syncTranscriptWindow();
}

std::optional<QString> TranscriptionScreen::modelPathForStart()
{
    if (!m_settings.source()) {
        m_run.setError(m_settings.missingSourceError);
        return std::nullopt;
    }
    auto modelPath = m_model.modelPath();
    if (!modelPath)
        m_run.setError(QStringLiteral("Please select a downloaded model."));
    return modelPath;
}

void TranscriptionScreen::prepare(const QString &path, const std::function<void(const QString &)> &next)
{
    runOnWorker([self = QPointer(this), report = reportTo(&m_run, m_settings.refreshPlaybackState),
                 preparer = m_preparer, settings = m_settings.preparation, path, next] {
        const auto audioPath = prepareAudio(path, settings, preparer, report);
        if (!audioPath)
            return;
        postToMain([self, audioPath = *audioPath, next] {
            if (self)
                next(audioPath);
        });
    });
}

void TranscriptionScreen::enterRecording()
{
    const auto path = m_settings.source();
    if (!path || !itemExists(*path) || path == m_lastHistoryRecordingPath)
        return;
    m_lastHistoryRecordingPath = path;
    m_history.addEntry({
        .text = {},
        .srtText = std::nullopt,
        .sourceLabel = *path,
        .model = m_model.modelName(),
        .language = effectiveLanguage(m_language.language()),
        .diarization = false,
        .recordingPath = path,
        .replaceExisting = true,
    });
}

void TranscriptionScreen::saveToHistory()
{
    const QString text = m_run.displayedTranscript();
    if (trimmedOfWhitespaceAndNewlines(text).isEmpty())
        return;
    const auto segments = parseTimedSegments(m_run.rawOutput(), m_run.stripDashes());
    const auto path = m_settings.transcribed ? m_settings.transcribed() : m_settings.source();
    m_history.addEntry({
        .text = text,
        .srtText = renderExport(ExportFormat::srt, {.text = text, .segments = segments}),
        .sourceLabel = path.value_or(m_settings.unknownSource),
        .model = m_model.modelName(),
        .language = m_run.runLanguage(),
        .diarization = false,
        .recordingPath = m_settings.keepsRecording ? path : std::nullopt,
        .replaceExisting = m_settings.keepsRecording,
    });
}

void TranscriptionScreen::saveSource(const QString &extension, const std::function<void(const QString &)> &setStatus)
{
    const auto path = m_settings.source();
    if (!path)
        return;
    m_panels.saveFile({lastPathComponent(*path), {extension}},
                      [self = QPointer(this), setStatus](const std::optional<QString> &destination) {
                          if (self && destination)
                              self->copySource(*destination, setStatus);
                      });
}

void TranscriptionScreen::copySource(const QString &destination, const std::function<void(const QString &)> &setStatus)
{
    const auto path = m_settings.source();
    if (!path)
        return;
    try {
        // Its own place may be that of a recording that goes on.
        if (!isSameItem(*path, destination))
            replaceByCopy(*path, destination, FileAccess::Usual);
        setStatus(QStringLiteral("Saved recording to ") + lastPathComponent(destination));
    } catch (const Error &failure) {
        m_run.setError(QStringLiteral("Could not save recording: ") + failure.localizedDescription());
    }
}

} // namespace sorvanta
