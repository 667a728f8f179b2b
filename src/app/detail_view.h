#pragma once

#include "screens/batch/batch_processing_view.h"
#include "screens/file/transcript_from_file_view.h"
#include "screens/history/history_view.h"
#include "screens/meeting/meeting_recorder_view.h"
#include "screens/microphone/record_audio_view.h"
#include "screens/models/models_settings_view.h"

#include <QObject>
#include <QtQml/qqml.h>

namespace sorvanta {

class FilePanels;

/// Holds all screens, side by side: they are made together, once the policies have been accepted, and live as long as
/// the window, shown or hidden. Main thread only.
class DetailView : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the application")
    Q_PROPERTY(sorvanta::TranscriptFromFileView *fileScreen READ fileScreen CONSTANT)
    Q_PROPERTY(sorvanta::MeetingRecorderView *meetingScreen READ meetingScreen CONSTANT)
    Q_PROPERTY(sorvanta::RecordAudioView *microphoneScreen READ microphoneScreen CONSTANT)
    Q_PROPERTY(sorvanta::BatchProcessingView *batchScreen READ batchScreen CONSTANT)
    Q_PROPERTY(sorvanta::HistoryView *historyScreen READ historyScreen CONSTANT)
    Q_PROPERTY(sorvanta::ModelsSettingsView *modelsScreen READ modelsScreen CONSTANT)

public:
    /// @param panels must outlive the view
    /// @param resourceFolder where the engine lies
    DetailView(FilePanels &panels, const QString &resourceFolder, QObject *parent = nullptr);

    TranscriptFromFileView *fileScreen() { return &m_fileScreen; }
    MeetingRecorderView *meetingScreen() { return &m_meetingScreen; }
    RecordAudioView *microphoneScreen() { return &m_microphoneScreen; }
    BatchProcessingView *batchScreen() { return &m_batchScreen; }
    HistoryView *historyScreen() { return &m_historyScreen; }
    ModelsSettingsView *modelsScreen() { return &m_modelsScreen; }

private:
    TranscriptFromFileView m_fileScreen;
    RecordAudioView m_microphoneScreen;
    MeetingRecorderView m_meetingScreen;
    BatchProcessingView m_batchScreen;
    HistoryView m_historyScreen;
    ModelsSettingsView m_modelsScreen;
};

} // namespace sorvanta
