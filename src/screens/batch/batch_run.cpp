#include "screens/batch/batch_run.h"

#include "core/languages.h"
#include "platform/worker.h"
#include "screens/batch/batch_job.h"

#include <QPointer>

#include <algorithm>
#include <chrono>
#include <utility>

namespace sorvanta {

using Clock = TranscriptionProgress::Clock;

BatchRun::BatchRun(const Settings &settings, FileResults &results,
                   std::function<void(const FileResult &)> saveToHistory, QObject *parent)
    : RunState(parent)
    , m_settings(settings)
    , m_results(results)
    , m_saveToHistory(std::move(saveToHistory))
    , m_preparer(m_temporaries, settings.preparation)
{
}

BatchRun::~BatchRun()
{
    using namespace std::chrono_literals;
    constexpr auto patience = 2s;
    if (!m_job)
        return;
    m_job->abandon();
    if (m_jobEnded.wait_for(patience) == std::future_status::ready)
        return;
    m_job->kill();
    m_jobEnded.wait_for(patience);
}

void BatchRun::start(const QString &modelPath, const QString &language)
{
    if (isTranscribing())
        return;
    m_runLanguage = effectiveLanguage(language);
    m_fileCount = m_results.count();
    forgetOutput();
    beginState();
    setTotalFilesCount(m_fileCount);
    setCurrentFileIndex(0);
    m_job = newJob(modelPath);
    m_jobEnded = runOnWorker([job = m_job] { job->run(); });
}

void BatchRun::resetOutputs(qsizetype selectedFileCount)
{
    forgetOutput();
    changeProgress([](TranscriptionProgress &progress) { progress = {}; });
    setStopping(false);
    setActiveProcess(nullptr);
    setStatus(QString());
    setError(std::nullopt);
    setCurrentFileIndex(0);
    setTotalFilesCount(selectedFileCount);
}

void BatchRun::forgetOutput()
{
    m_outputIndex.reset();
    m_output.clear();
    m_segmentWatch = {};
    m_scanner = {};
}

void BatchRun::setCurrentFileIndex(qsizetype index)
{
    m_currentFileIndex = index;
    emit fileLineChanged();
}

void BatchRun::setTotalFilesCount(qsizetype count)
{
    m_totalFilesCount = count;
    emit fileLineChanged();
}

QString BatchRun::fileLine() const
{
    if (m_totalFilesCount < 1)
        return {};
    const qsizetype number = std::min(m_currentFileIndex + 1, m_totalFilesCount);
    const QString line = u"File %1 of %2"_qs.arg(number).arg(m_totalFilesCount);
    if (m_currentFileIndex >= m_results.count())
        return line;
    return line + u": "_qs + oneLineFileName(m_results.list()[m_currentFileIndex].url);
}

void BatchRun::fileBegan(qsizetype index)
{
    setCurrentFileIndex(index);
    changeProgress([this, index](TranscriptionProgress &progress) {
        progress.beginFile(static_cast<int>(index), m_fileCount, Clock::now());
    });
    const FileResult &result = m_results.list()[index];
    setStatus(u"Transcribing "_qs + fileName(result.url) + u" (%1/%2)"_qs.arg(index + 1).arg(m_fileCount));
    m_results.setStatus(index, FileStatus::running);
    m_results.setError(index, std::nullopt);
    if (!m_results.selectedResultID())
        m_results.setSelectedResultID(result.id);
    emit outputAppended(index, QString());
}

void BatchRun::takeOutput(qsizetype index, const QString &piece)
{
    if (m_outputIndex != index) {
        forgetOutput();
        m_outputIndex = index;
    }
    const qsizetype from = rawOutput().size();
    const qsizetype lineStart = m_output.unfinishedLineStart();
    m_output.append(piece);
    m_segmentWatch.take(rawOutput(), from, lineStart);
    m_results.appendOutput(index, piece, m_output.lineCount() > 0, m_segmentWatch.hasSegments(false),
                           m_segmentWatch.hasSegments(true));
    const ProgressMarks &marks = m_scanner.scan(rawOutput(), from, lineStart);
    changeProgress([this, index, &marks](TranscriptionProgress &progress) {
        progress.update(marks, Clock::now(), static_cast<int>(index), m_fileCount);
    });
    emit outputAppended(index, piece);
}

void BatchRun::endFile(qsizetype index, const QString &rest)
{
    m_results.setStatus(index, isStopping() ? FileStatus::cancelled : FileStatus::done);
    takeOutput(index, rest);
    if (!isStopping())
        m_saveToHistory(m_results.list()[index]);
    changeProgress([this, index](TranscriptionProgress &progress) {
        progress.progress = static_cast<double>(index + 1) / m_fileCount;
        progress.etaText = u"Done"_qs;
    });
}

void BatchRun::failFile(qsizetype index, const std::exception_ptr &failure)
{
    m_results.setStatus(index, isStopping() ? FileStatus::cancelled : FileStatus::failed);
    m_results.setError(index, takeFailure(failure));
    changeProgress([](TranscriptionProgress &progress) {
        progress.progress.reset();
        progress.etaText.clear();
    });
    removeTemporaries();
    endRun();
}

void BatchRun::endBatch()
{
    if (isStopping()) {
        setStatus(u"Cancelled"_qs);
        for (qsizetype row = 0; row < m_results.count(); ++row) {
            const FileStatus status = m_results.list()[row].status;
            if (status == FileStatus::pending || status == FileStatus::running)
                m_results.setStatus(row, FileStatus::cancelled);
        }
    } else if (!hasError()) {
        setStatus(u"Done"_qs);
    }
    changeProgress([](TranscriptionProgress &progress) { progress.finish(); });
    removeTemporaries();
    endRun();
}

/// Tells that the run is over last of all: whoever hears it may start the next one at once.
void BatchRun::endRun()
{
    setStopping(false);
    setActiveProcess(nullptr);
    setTranscribing(false);
}

std::shared_ptr<BatchJob> BatchRun::newJob(const QString &modelPath)
{
    QList<QUrl> files;
    for (const FileResult &result : m_results.list())
        files << result.url;

    // The run may go while the worker is still at its files.
    const auto told = [self = QPointer(this)](auto operation) {
        return [self, operation](auto... arguments) {
            if (self)
                (self.data()->*operation)(arguments...);
        };
    };
    const PreparationReport preparation{
        .status = [self = QPointer(this)] { return self ? self->status() : QString(); },
        .setStatus = told(&BatchRun::setStatus),
        .error = [self = QPointer(this)] { return self ? self->error() : std::nullopt; },
        .setError = told(&BatchRun::setError),
        .endRun = told(&BatchRun::endRun),
        .refreshPlaybackState = {},
    };
    return std::make_shared<BatchJob>(BatchJob::Order{std::move(files), modelPath, m_runLanguage, m_settings.engine},
                                      m_preparer,
                                      BatchJob::Report{
                                          .isStopping = [flag = stopFlag()] { return flag->load(); },
                                          .preparation = preparation,
                                          .fileBegan = told(&BatchRun::fileBegan),
                                          .processCreated = told(&BatchRun::setActiveProcess),
                                          .outputCame = told(&BatchRun::takeOutput),
                                          .fileEnded = told(&BatchRun::endFile),
                                          .fileFailed = told(&BatchRun::failFile),
                                          .batchEnded = told(&BatchRun::endBatch),
                                      });
}

} // namespace sorvanta
