#pragma once

#include "core/audio_preparation.h"
#include "core/language_choice.h"
#include "core/temporary_files.h"
#include "core/transcription_run.h"
#include "export/run_exports.h"
#include "models/model_choice.h"
#include "screens/pane/transcript_pane.h"
#include "screens/screen_surroundings.h"

#include <QObject>
#include <QtQml/qqml.h>

#include <functional>
#include <optional>

namespace sorvanta {

/// What the screens that transcribe one file or one recording share: the choice of model and language, the preparation
/// of the audio, the run with its exports, and what of it goes into the history. Main thread only.
class TranscriptionScreen : public QObject {
    Q_OBJECT
    QML_ANONYMOUS
    Q_PROPERTY(sorvanta::TranscriptionRun *run READ run CONSTANT)
    Q_PROPERTY(sorvanta::ModelChoice *model READ model CONSTANT)
    Q_PROPERTY(sorvanta::LanguageChoice *language READ language CONSTANT)
    Q_PROPERTY(sorvanta::TranscriptPane *pane READ pane CONSTANT)
    Q_PROPERTY(sorvanta::ExportMenu *exportMenu READ exportMenu CONSTANT)
    Q_PROPERTY(QString startLabel READ startLabel NOTIFY startLabelChanged)
    Q_PROPERTY(bool canStart READ canStart NOTIFY canStartChanged)

public:
    TranscriptionRun *run() { return &m_run; }
    const TranscriptionRun *run() const { return &m_run; }
    ModelChoice *model() { return &m_model; }
    LanguageChoice *language() { return &m_language; }
    virtual TranscriptPane *pane() = 0;
    /// What the transcript can be exported as.
    ExportMenu *exportMenu() { return m_exports.menu(); }

    QString startLabel() const;
    /// Whether there is something to transcribe, a model for it, and no run that goes on.
    bool canStart() const;

    /// What the screen does when it comes on show.
    void appear();

    Q_SIGNAL void startLabelChanged();
    Q_SIGNAL void canStartChanged();

protected:
    /// What a screen does differently from the others.
    struct Settings {
        PreparationSettings preparation;
        bool printsCommand; ///< the engine's command line, on the console
        ExportNaming naming;
        std::function<std::optional<QString>()> source; ///< the path of what is transcribed, or none
        QString missingSourceError; ///< for a start without a source
        QString unknownSource; ///< what the history says where the source is gone
        bool keepsRecording; ///< the entry of a transcript keeps its source, and takes the place of the source's own
                             ///< entry
        std::function<void()> refreshPlaybackState = {}; ///< where a preparation does that
        /// The path that a transcript is entered under, where another source may have come by the end of its run.
        std::function<std::optional<QString>()> transcribed = {};
    };

    TranscriptionScreen(const ScreenSurroundings &surroundings, Settings settings, QObject *parent);
    ~TranscriptionScreen() override;

    FilePanels &panels() { return m_panels; }

    /// The chosen model's path, if there is a source too; else the error says what is missing.
    std::optional<QString> modelPathForStart();

    /// Prepares the file at `path` on a worker, then hands the audio to `next` on the main thread. Nothing is handed on
    /// after a failure, which the run tells, nor when the screen is gone.
    void prepare(const QString &path, const std::function<void(const QString &audioPath)> &next);

    /// Enters the source in the history as a recording without a text: once, and if the file is there.
    void enterRecording();
    /// The next source is another recording, whatever its path.
    void expectNewRecording() { m_lastHistoryRecordingPath.reset(); }

    /// Asks for a place with this extension, and copies the source there. `setStatus` is told of success; a failure
    /// becomes the error.
    void saveSource(const QString &extension, const std::function<void(const QString &status)> &setStatus);

private:
    void saveToHistory();
    void copySource(const QString &destination, const std::function<void(const QString &status)> &setStatus);

    TranscriptionHistoryStore &m_history;
    FilePanels &m_panels;
    const Settings m_settings;
    TemporaryFiles m_temporaries;
    AudioPreparer m_preparer;
    ModelChoice m_model;
    LanguageChoice m_language;
    TranscriptionRun m_run;
    RunExports m_exports;
    std::optional<QString> m_lastHistoryRecordingPath;
};

} // namespace sorvanta
