#pragma once

#include "core/live_transcript.h"
#include "core/run_state.h"
#include "core/segment_watch.h"
#include "core/transcript_lines_model.h"
#include "core/transcription_progress.h"
#include "core/whisper_runner.h"

#include <QObjectBindableProperty>
#include <QString>

#include <functional>
#include <future>
#include <memory>
#include <vector>

namespace sorvanta {

/// One run of the engine at a time, with all that a screen shows of it: the fields and the protocol that the four
/// transcription screens share. Main thread only; the work itself is done on a worker.
class TranscriptionRun : public sorvanta::RunState { // the whole name, by which QML finds the base
    Q_OBJECT
    Q_PROPERTY(sorvanta::TranscriptLinesModel *lines READ lines CONSTANT)
    Q_PROPERTY(bool hasShownText READ hasShownText NOTIFY hasShownTextChanged)
    Q_PROPERTY(bool hasSegments READ hasSegments NOTIFY hasSegmentsChanged)
    Q_PROPERTY(bool stripDashes READ stripDashes WRITE setStripDashes NOTIFY stripDashesChanged)

public:
    /// What the screen does at the end of a run.
    struct Hooks {
        std::function<void()> removeTemporaries; ///< at the end of a run, however it ended
        std::function<void()> saveToHistory; ///< behind that, of a run that went well
    };

    /// @param settings where the engine lies and whether its command line is printed
    TranscriptionRun(WhisperRunner::Settings settings, Hooks hooks, QObject *parent = nullptr);

    /// Ends a child that still runs and waits for the worker.
    ~TranscriptionRun() override;

    /// Resets the fields and starts the engine on a worker; the fields follow its output, and the run ends with
    /// `status` "Done" or "Cancelled", or with an `error`. A run that still goes on is ended and heard of no more.
    /// @param language the code as chosen; the engine is handed effectiveLanguage() of it
    void start(const QString &audioPath, const QString &modelPath, const QString &language);

    /// Resets the fields for a run that begins now.
    void beginRun();

    /// Starts the engine as start() does, for a run that beginRun() has begun: what became of the fields since then
    /// stays, also the wish to stop.
    void startBegun(const QString &audioPath, const QString &modelPath, const QString &language);

    /// Where the run is said to go on already while its audio is prepared: it does from now on, with this status. All
    /// that an earlier run has left stays until start().
    void beginPreparation(const QString &status);
    /// The preparation gave nothing to start with: the run is over.
    void endPreparation();
    /// The user wished to stop while the audio was prepared: the run is over, and what was prepared is removed.
    void cancelPreparation();

    /// The whole output of the run so far; empty after clearOutput() until the next output or the end.
    const QString &rawOutput() const { return m_output.rawOutput(); }
    /// A number that is another whenever rawOutput() became another text otherwise than by growing.
    int outputIdentity() const { return m_outputIdentity; }
    /// The cleaned text as it came; empty after clearTranscript() until the next output or the end.
    QString transcript() const;
    /// What is shown, searched, copied and saved.
    QString displayedTranscript() const;
    /// Whether anything of displayedTranscript() is there to show.
    bool hasShownText() const { return m_hasShownText; }
    /// Whether parseTimedSegments() of the output finds any.
    bool hasSegments() const { return m_hasSegments; }
    /// The rows of displayedTranscript().
    TranscriptLinesModel *lines() { return &m_lines; }
    /// Empties transcript(); the output, and what is displayed of it, stays.
    void clearTranscript();

    /// Empties the output, the status and all that is known of the progress, and removes the temporary files; the error
    /// stays. A run that goes on is not ended, but stopRun() reaches its child no more, and its next output, or its
    /// end, brings the whole output back.
    void clearOutput();

    bool stripDashes() const { return m_lines.stripDashes(); }
    void setStripDashes(bool stripDashes);

    /// The language code that the last run handed to the engine.
    const QString &runLanguage() const { return m_runLanguage; }

Q_SIGNALS:
    void hasShownTextChanged();
    void hasSegmentsChanged();
    void stripDashesChanged();
    /// The output or its transcript changed. The displayed lines before `firstLine` are as they were.
    void transcriptChanged(qsizetype firstLine);

private:
    void takeOutput(const QString &newPiece);
    void finishRun(const Utf8Stream &output);
    void failRun(const std::exception_ptr &failure);
    void endRun(const std::function<void()> &lastStep);
    void announceText(qsizetype firstLine);
    void forgetOutput();
    void forgetEndedAttempts();
    WhisperRunner::Hooks workerHooks();
    /// A test, for the main thread, whether the run that begins now is still this object's.
    std::function<bool()> currencyTest();

    WhisperRunner::Settings m_settings;
    Hooks m_hooks;
    LiveTranscript m_output;
    int m_outputIdentity = 0;
    QString m_clearedOutput; // of the run that goes on, and that brings it back
    ProgressScanner m_scanner;
    SegmentWatch m_segmentWatch;
    TranscriptLinesModel m_lines{m_output};
    bool m_isTranscriptCleared = false;
    QString m_runLanguage;
    std::shared_ptr<ChildProcess> m_process; // of the run that began last, also before it is the active one

    /// A run's child and the end of its worker.
    struct Attempt {
        std::shared_ptr<ChildProcess> process;
        std::future<void> ended;
    };
    std::vector<Attempt> m_attempts; // as a rule one; more when a run was started while another went on

    Q_OBJECT_BINDABLE_PROPERTY(TranscriptionRun, bool, m_hasShownText, &TranscriptionRun::hasShownTextChanged)
    Q_OBJECT_BINDABLE_PROPERTY(TranscriptionRun, bool, m_hasSegments, &TranscriptionRun::hasSegmentsChanged)
};

} // namespace sorvanta
