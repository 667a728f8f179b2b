#pragma once

#include "audio/playback_controller.h"
#include "screens/transcription_screen.h"

#include <QStringList>
#include <QUrl>
#include <QtQml/qqml.h>

#include <optional>

namespace sorvanta {

/// The screen that turns one audio or video file into a transcript. Main thread only.
class TranscriptFromFileView : public sorvanta::TranscriptionScreen { // the whole name, by which QML finds the base
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the application")
    Q_PROPERTY(QString fileLabel READ fileLabel NOTIFY selectedFileChanged)
    Q_PROPERTY(bool hasFile READ hasFile NOTIFY selectedFileChanged)

public:
    /// What the screen works with; all of it outlives the screen.
    struct Surroundings {
        ScreenSurroundings shared;
        PlaybackController::OpenPlayer openPlayer = openAudioPlayer;
    };

    explicit TranscriptFromFileView(const Surroundings &surroundings, QObject *parent = nullptr);
    ~TranscriptFromFileView() override;

    TranscriptPane *pane() override { return &m_pane; }
    PlaybackController &playback() { return m_playback; }

    /// The path of the file to transcribe, or none.
    const std::optional<QString> &selectedFile() const { return m_selectedFile; }
    bool hasFile() const { return m_selectedFile.has_value(); }
    /// The chosen file's last path component, or that there is none.
    QString fileLabel() const;

    /// Shows a panel for one audio or movie file.
    Q_INVOKABLE void chooseFile();

    /// Whether a drop of these files and of data in these formats (media types) holds something for this screen.
    Q_INVOKABLE bool acceptsDrop(const QList<QUrl> &files, const QStringList &formats) const;

    /// Takes the first audio or movie file of a drop. @return whether there was one
    Q_INVOKABLE bool dropFiles(const QList<QUrl> &files);

    /// The first of these formats whose data is audio or a movie; empty if none is.
    Q_INVOKABLE QString mediaFormat(const QStringList &formats) const;

    /// Takes audio or a movie that was dropped as data: it is put into a temporary file of the screen. Nothing happens
    /// without data, which is what a drop that fails gives.
    Q_INVOKABLE void dropData(const QByteArray &data);

    /// Prepares the chosen file and transcribes it with the chosen model.
    Q_INVOKABLE void start();

    /// Puts the error on the pasteboard.
    Q_INVOKABLE void copyError() const;

    Q_SIGNAL void selectedFileChanged();

private:
    void selectFile(const QString &path);

    TemporaryFiles m_droppedData;
    std::optional<QString> m_selectedFile;
    PlaybackController m_playback;
    TranscriptPane m_pane;
};

} // namespace sorvanta
