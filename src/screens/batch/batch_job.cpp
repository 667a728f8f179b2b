#include "screens/batch/batch_job.h"

#include "platform/console.h"
#include "platform/main_queue.h"

#include <optional>
#include <utility>

namespace sorvanta {

BatchJob::BatchJob(Order order, AudioPreparer preparer, Report report)
    : m_order(std::move(order))
    , m_preparer(std::move(preparer))
    , m_report(std::move(report))
{
}

void BatchJob::run()
{
    for (qsizetype index = 0; index < m_order.files.size(); ++index) {
        if (isToEnd())
            break;
        const std::optional<QString> audioPath =
            prepareAudio(m_order.files[index].toLocalFile(), batchPreparation(), m_preparer, m_report.preparation);
        if (!audioPath)
            return;
        // A stop during the preparation counts as one between two files: it finds no child that it could end.
        if (isToEnd())
            break;
        postToMain([fileBegan = m_report.fileBegan, index] { fileBegan(index); });
        if (!runFile(index, *audioPath))
            return;
    }
    postToMain(m_report.batchEnded);
}

/// @return whether the engine came to a good end
bool BatchJob::runFile(qsizetype index, const QString &audioPath)
{
    const auto process = std::make_shared<ChildProcess>();
    m_process.store(process);
    // Whoever abandons the job sets the flag first and looks for the process then.
    if (m_isAbandoned)
        process->terminate();
    WhisperRunner runner(m_order.engine, hooks(index), process);
    bool hasSucceeded = false;
    try {
        const Utf8Stream output = runner.run(audioPath, m_order.modelPath, m_order.language);
        postToMain([fileEnded = m_report.fileEnded, index, rest = output.repairedRest()] { fileEnded(index, rest); });
        hasSucceeded = true;
    } catch (...) {
        postToMain([fileFailed = m_report.fileFailed, index, failure = std::current_exception()] {
            fileFailed(index, failure);
        });
    }
    m_process.store({});
    return hasSucceeded;
}

WhisperRunner::Hooks BatchJob::hooks(qsizetype index)
{
    return {
        .processCreated =
            [this](const std::shared_ptr<ChildProcess> &process) {
                // Held weakly: a main thread that lags behind many short runs would keep their handles open.
                postToMain([processCreated = m_report.processCreated, weak = std::weak_ptr(process)] {
                    processCreated(weak.lock());
                });
            },
        .onOutput =
            [this, index](const QString &piece) {
                postToMain([outputCame = m_report.outputCame, index, piece] { outputCame(index, piece); });
            },
        .isStopping = m_report.isStopping,
        .print = printOnConsole,
    };
}

void BatchJob::abandon()
{
    m_isAbandoned = true;
    if (const auto process = m_process.load())
        process->terminate();
}

void BatchJob::kill()
{
    if (const auto process = m_process.load())
        process->kill();
}

} // namespace sorvanta
