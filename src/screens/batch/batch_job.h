#pragma once

#include "core/audio_preparation.h"
#include "core/whisper_runner.h"

#include <QList>
#include <QString>
#include <QUrl>

#include <atomic>
#include <exception>
#include <functional>
#include <memory>

namespace sorvanta {

/// The work of a batch: its files strictly one after the other, each prepared and handed to the engine. Everything that
/// happens is posted to the main thread, and no post is waited for.
class BatchJob {
public:
    /// What is to be done.
    struct Order {
        QList<QUrl> files;
        QString modelPath;
        QString language; ///< as the engine is given it
        WhisperRunner::Settings engine;
    };

    /// What is told of it. All but `isStopping` are called on the main thread, in the order of the events.
    struct Report {
        std::function<bool()> isStopping; ///< called on the worker
        PreparationReport preparation; ///< a preparation that fails ends the job with its own last post
        std::function<void(qsizetype index)> fileBegan;
        std::function<void(const std::shared_ptr<ChildProcess> &process)> processCreated;
        std::function<void(qsizetype index, const QString &piece)> outputCame;
        /// @param rest what no piece has brought
        std::function<void(qsizetype index, const QString &rest)> fileEnded;
        /// The last post of a job in which the engine failed or was stopped.
        std::function<void(qsizetype index, const std::exception_ptr &failure)> fileFailed;
        /// The last post of a job that came to the end of its files, or was stopped between two of them.
        std::function<void()> batchEnded;
    };

    BatchJob(Order order, AudioPreparer preparer, Report report);

    /// Blocks the calling worker until the job is done.
    void run();

    // For another thread, when nobody is there any more to hear of the job.

    /// Ends the running child, and lets no other begin.
    void abandon();
    /// Ends it although it will not.
    void kill();

private:
    bool isToEnd() const { return m_isAbandoned || m_report.isStopping(); }
    bool runFile(qsizetype index, const QString &audioPath);
    WhisperRunner::Hooks hooks(qsizetype index);

    const Order m_order;
    const AudioPreparer m_preparer;
    const Report m_report;
    std::atomic<bool> m_isAbandoned = false;
    std::atomic<std::shared_ptr<ChildProcess>> m_process; // of the file that runs
};

} // namespace sorvanta
