#include "screens/file/transcript_from_file_view.h"

#include "platform/desktop/desktop.h"
#include "platform/desktop/file_panels.h"
#include "platform/error.h"
#include "platform/file_system.h"
#include "platform/file_types.h"
#include "platform/folders.h"
#include "platform/paths.h"
#include "screens/media_drop.h"

#include <QPointer>

#include <algorithm>

namespace sorvanta {

TranscriptFromFileView::TranscriptFromFileView(const Surroundings &surroundings, QObject *parent)
    : TranscriptionScreen(surroundings.shared,
                          {.preparation = filePreparation(),
                           .printsCommand = true,
                           .naming = transcriptionNaming(),
                           .source = [this] { return m_selectedFile; },
                           .missingSourceError = QStringLiteral("Please choose an audio file first."),
                           .unknownSource = QStringLiteral("Unknown source"),
                           .keepsRecording = false,
                           .refreshPlaybackState = [this] { m_playback.refreshPlaybackState(); }},
                          parent)
    , m_playback(filePlayback(),
                 {.file = [this] { return m_selectedFile; },
                  .setError = [this](const QString &error) { run()->setError(error); },
                  .updateActiveSegment = [this](double time) { m_pane.viewer()->updateActiveSegment(time); },
                  .clearActiveSegment = [this] { m_pane.viewer()->model().setActiveSegmentIndex(std::nullopt); }},
                 surroundings.openPlayer)
    , m_pane(*run(), {}, {.controller = &m_playback, .isAvailable = [this] { return hasFile(); }})
{
    connect(this, &TranscriptFromFileView::selectedFileChanged, this, &TranscriptFromFileView::canStartChanged);
}

TranscriptFromFileView::~TranscriptFromFileView() = default;

QString TranscriptFromFileView::fileLabel() const
{
    return m_selectedFile ? lastPathComponent(*m_selectedFile) : QStringLiteral("No file selected");
}

void TranscriptFromFileView::chooseFile()
{
    const QPointer self(this);
    panels().openFile({QStringLiteral("Audio and video"), mediaExtensions()},
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
    if (data.isEmpty())
        return;
    const QString path = newTemporaryPath(QString(), QString());
    try {
        writeFileAtomically(path, data);
    } catch (const Error &error) {
        run()->setError(error.localizedDescription());
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
    m_playback.refreshPlaybackState(); // the viewer shows how long the file is
    run()->clearTranscript();
    run()->setStatus(QString());
    run()->setError(std::nullopt);
    emit selectedFileChanged();
    m_pane.syncTranscriptWindow();
}

void TranscriptFromFileView::start()
{
    const auto modelPath = modelPathForStart();
    if (!modelPath)
        return;
    run()->setStatus(QStringLiteral("Preparing file…"));
    prepare(*m_selectedFile, [this, modelPath = *modelPath](const QString &audioPath) {
        run()->setStatus(QStringLiteral("Starting transcription…"));
        run()->start(audioPath, modelPath, language()->language());
    });
}

void TranscriptFromFileView::copyError() const
{
    if (const auto &error = run()->error())
        copyToPasteboard(*error);
}

} // namespace sorvanta
