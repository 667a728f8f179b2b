#pragma once

#include "audio/playback_controller.h"
#include "core/audio_preparer.h"
#include "core/language_choice.h"
#include "core/temporary_files.h"
#include "core/transcription_run.h"
#include "export/run_exports.h"
#include "models/model_choice.h"
#include "screens/pane/transcript_pane.h"

#include <QObject>
#include <QStringList>
#include <QUrl>
#include <QtQml/qqml.h>

#include <optional>

namespace sorvanta {

class FilePanels;
class ModelsSettingsViewModel;
class TranscriptionHistoryStore;

/// The screen that turns one audio or video file into a transcript. Main thread only.
class TranscriptFromFileView : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the application")
    Q_PROPERTY(sorvanta::TranscriptionRun *run READ run CONSTANT)
    Q_PROPERTY(sorvanta::ModelChoice *model READ model CONSTANT)
    Q_PROPERTY(sorvanta::LanguageChoice *language READ language CONSTANT)
    Q_PROPERTY(sorvanta::TranscriptPane *pane READ pane CONSTANT)
    Q_PROPERTY(sorvanta::ExportMenu *exportMenu READ exportMenu CONSTANT)
    Q_PROPERTY(QString fileLabel READ fileLabel NOTIFY selectedFileChanged)
    Q_PROPERTY(bool hasFile READ hasFile NOTIFY selectedFileChanged)
    Q_PROPERTY(QString startLabel READ startLabel NOTIFY startLabelChanged)
    Q_PROPERTY(bool canStart READ canStart NOTIFY canStartChanged)

public:
    /// What the screen works with; all of it outlives the screen.
    struct Surroundings {
        ModelsSettingsViewModel &models;
        TranscriptionHistoryStore &history;
        FilePanels &panels;
        QString resourceFolder; ///< where the engine lies
        AudioPreparer::Settings preparation = {};
        PlaybackController::OpenPlayer openPlayer = openAudioPlayer;
    };

    explicit TranscriptFromFileView(const Surroundings &surroundings, QObject *parent = nullptr);
    ~TranscriptFromFileView() override;

    TranscriptionRun *run() { return &m_run; }
    ModelChoice *model() { return &m_model; }
    LanguageChoice *language() { return &m_language; }

    TranscriptPane *pane() { return &m_pane; }
    PlaybackController &playback() { return m_playback; }

    /// What the transcript can be exported as.
    ExportMenu *exportMenu() { return m_exports.menu(); }

    /// The path of the file to transcribe, or none.
    const std::optional<QString> &selectedFile() const { return m_selectedFile; }
    bool hasFile() const { return m_selectedFile.has_value(); }
    /// The chosen file's last path component, or that there is none.
    QString fileLabel() const;

    QString startLabel() const;
    bool canStart() const;

    /// What the screen does when it comes on show.
    void appear();

    /// Shows a panel for one audio or movie file.
    Q_INVOKABLE void chooseFile();

    /// Whether a drop of these files and of data in these formats (media types) holds something for this screen.
    Q_INVOKABLE bool acceptsDrop(const QList<QUrl> &files, const QStringList &formats) const;

    /// Takes the first audio or movie file of a drop. @return whether there was one
    Q_INVOKABLE bool dropFiles(const QList<QUrl> &files);

    /// The first of these formats whose data is audio or a movie; empty if none is.
    Q_INVOKABLE QString mediaFormat(const QStringList &formats) const;

    /// Takes audio or a movie that was dropped as data: it is put into a temporary file of the screen.
    Q_INVOKABLE void dropData(const QByteArray &data);

    /// Prepares the chosen file and transcribes it with the chosen model.
    Q_INVOKABLE void start();

    /// Puts the error on the pasteboard.
    Q_INVOKABLE void copyError() const;

    Q_SIGNAL void selectedFileChanged();
    Q_SIGNAL void startLabelChanged();
    Q_SIGNAL void canStartChanged();

private:
    void selectFile(const QString &path);
    void prepareAndRun(const QString &path, const QString &modelPath);
    void beginTranscription(const QString &audioPath, const QString &modelPath);
    void saveToHistory();

    TranscriptionHistoryStore &m_history;
    FilePanels &m_panels;
    TemporaryFiles m_temporaries;
    TemporaryFiles m_droppedData;
    AudioPreparer m_preparer;
    ModelChoice m_model;
    LanguageChoice m_language;
    TranscriptionRun m_run;
    std::optional<QString> m_selectedFile;
    RunExports m_exports;
    PlaybackController m_playback;
    TranscriptPane m_pane;
};

} // namespace sorvanta
