#pragma once

#include "core/audio_preparer.h"
#include "core/live_transcript.h"
#include "core/run_state.h"
#include "core/segment_watch.h"
#include "core/temporary_files.h"
#include "core/whisper_runner.h"
#include "screens/batch/file_results.h"

#include <QStringList>

#include <functional>
#include <future>
#include <memory>
#include <optional>

namespace sorvanta {

class BatchJob;

/// The run of a batch, one at a time, with all that the screen shows of it. It keeps the results up to date and speaks
/// of the whole batch in its progress, of the running file in its remaining time. Main thread only; the work itself is
/// done on a worker.
class BatchRun : public sorvanta::RunState { // the whole name, by which QML finds the base
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("held by a screen")
    Q_PROPERTY(QString fileLine READ fileLine NOTIFY fileLineChanged)

public:
    struct Settings {
        WhisperRunner::Settings engine;
        AudioPreparer::Settings preparation = {};
    };

    /// @param results outlives the run
    /// @param saveToHistory is given each result that ended while the batch was not stopping
    BatchRun(const Settings &settings, FileResults &results, std::function<void(const FileResult &)> saveToHistory,
             QObject *parent = nullptr);

    /// Ends a child that still runs and waits for the worker.
    ~BatchRun() override;

    /// Transcribes the files of all results. Does nothing while a batch runs.
    /// @param language the code as chosen; the engine is handed effectiveLanguage() of it
    void start(const QString &modelPath, const QString &language);

    /// Empties all fields; not for a run that goes on.
    /// @param selectedFileCount the number of files selected, which is that of the next run
    void resetOutputs(qsizetype selectedFileCount);
    /// Removes the converted files.
    void removeTemporaries() { m_temporaries.removeTemporaries(); }

    /// The output of the file that runs or ran last.
    const QString &rawOutput() const { return m_output.rawOutput(); }
    /// The cleaned text of that output.
    QString transcript() const { return m_output.transcript(); }
    /// The language code that the last batch handed to the engine.
    const QString &runLanguage() const { return m_runLanguage; }
    QStringList tempConvertedURLs() const { return m_temporaries.tempConvertedURLs(); }

    /// Of the running file, from zero.
    qsizetype currentFileIndex() const { return m_currentFileIndex; }
    qsizetype totalFilesCount() const { return m_totalFilesCount; }
    void setTotalFilesCount(qsizetype count);
    /// "File 2 of 5: talk.mp3"; empty if there are no files.
    QString fileLine() const;

Q_SIGNALS:
    void fileLineChanged();
    /// The result of a row was given the next piece of its output, or there is a reason to look at it again.
    void outputAppended(qsizetype row, const QString &piece);

private:
    void fileBegan(qsizetype index);
    void takeOutput(qsizetype index, const QString &piece);
    void endFile(qsizetype index, const QString &rest);
    void failFile(qsizetype index, const std::exception_ptr &failure);
    void endBatch();
    /// What each end of a run does.
    void endRun();
    void setCurrentFileIndex(qsizetype index);
    void forgetOutput();
    std::shared_ptr<BatchJob> newJob(const QString &modelPath);

    const Settings m_settings;
    FileResults &m_results;
    const std::function<void(const FileResult &)> m_saveToHistory;
    TemporaryFiles m_temporaries;
    AudioPreparer m_preparer;
    QString m_runLanguage;
    int m_fileCount = 0; // of the batch that runs
    qsizetype m_currentFileIndex = 0;
    qsizetype m_totalFilesCount = 0;

    std::optional<qsizetype> m_outputIndex; // whose output this is
    LiveTranscript m_output;
    SegmentWatch m_segmentWatch;
    ProgressScanner m_scanner;

    std::shared_ptr<BatchJob> m_job;
    std::future<void> m_jobEnded;
};

} // namespace sorvanta
