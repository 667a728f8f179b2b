#include "models/download_tracker.h"

#include "platform/file_errors.h"
#include "platform/file_system.h"
#include "platform/paths.h"

#include <cerrno>
#include <chrono>
#include <limits>
#include <utility>

#include <fcntl.h>

namespace sorvanta {

namespace {

constexpr double shortestReportInterval = 0.4; // seconds
constexpr mode_t fileMode = 0600;

} // namespace

DownloadTracker::DownloadTracker(ModelInfo model, const QString &finalDestination, ProgressHandler progressHandler,
                                 Completion completion, const HttpsTransferLimits &limits, Clock clock)
    : m_model(std::move(model))
    , m_finalDestination(finalDestination)
    , m_partialDestination(finalDestination + u".part"_qs)
    , m_progressHandler(std::move(progressHandler))
    , m_completion(std::move(completion))
    , m_limits(limits)
    , m_clock(std::move(clock))
    , m_startDate(m_clock())
    , m_lastProgressReport(-std::numeric_limits<double>::infinity())
{
}

double DownloadTracker::steadySeconds()
{
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

void DownloadTracker::start()
{
    try {
        openPartialFile();
        m_startDate = m_clock();
        m_task.emplace(m_model.downloadURL, m_limits);
        m_task->resume(shared_from_this());
    } catch (const Error &error) {
        m_completion(error);
    }
}

void DownloadTracker::cancel()
{
    if (m_task)
        m_task->cancel();
}

void DownloadTracker::openPartialFile()
{
    if (itemExists(m_partialDestination))
        removeItem(m_partialDestination);
    makeFolder(parentFolder(m_partialDestination));
    FileDescriptor file = opened(encodedPath(m_partialDestination), O_WRONLY | O_CREAT | O_EXCL, fileMode);
    if (!file.isOpen())
        throw writingError(m_partialDestination, errno);
    m_fileHandle.emplace(std::move(file));
    m_hasPartialFile = true;
}

void DownloadTracker::didReceiveResponse(const HttpsResponse &response, const Answer &answer)
{
    if (response.statusCode < 200 || response.statusCode > 299) {
        answer(Disposition::Cancel);
        cleanUp();
        finish(Error(u"ModelDownload"_qs, response.statusCode,
                     u"Server responded with "_qs + QString::number(response.statusCode)));
        return;
    }
    m_expectedBytes = response.expectedContentLength;
    answer(Disposition::Allow);
}

void DownloadTracker::didReceiveData(QByteArrayView bytes)
{
    if (m_fileHandle && !writeAll(m_fileHandle->number(), bytes)) {
        const Error error = writingError(m_partialDestination, errno);
        cancel();
        cleanUp();
        // Not by finish(): the cancelled transfer still completes, and what it says is shown last.
        m_completion(error);
        return;
    }
    m_writtenBytes += bytes.size();
    reportProgress(m_writtenBytes, m_expectedBytes);
}

void DownloadTracker::reportProgress(qint64 bytes, qint64 expected)
{
    const double now = m_clock();
    if (now - m_lastProgressReport < shortestReportInterval && bytes != expected)
        return;
    m_lastProgressReport = now;
    std::optional<double> estimate;
    if (const double elapsed = now - m_startDate; elapsed > 0) {
        const double speed = static_cast<double>(bytes) / elapsed;
        if (speed > 0)
            estimate = static_cast<double>(expected - bytes) / speed;
    }
    m_progressHandler({bytes, expected, estimate});
}

void DownloadTracker::didComplete(const std::optional<Error> &error)
{
    if (error) {
        cleanUp();
        finish(*error);
        return;
    }
    try {
        moveIntoPlace();
        finish(m_finalDestination);
    } catch (const Error &failure) {
        cleanUp();
        finish(failure);
    }
}

void DownloadTracker::moveIntoPlace()
{
    // A file of the final name counts as whole, so it must be so after a loss of power, too.
    if (m_fileHandle && (::fsync(m_fileHandle->number()) != 0 || !m_fileHandle->close()))
        throw writingError(m_partialDestination, errno);
    m_fileHandle.reset();
    if (itemExists(m_finalDestination))
        removeItem(m_finalDestination);
    moveItem(m_partialDestination, m_finalDestination);
}

void DownloadTracker::cleanUp()
{
    m_fileHandle.reset();
    // A second cleaning up comes late: the file may be that of the next try by then.
    if (!std::exchange(m_hasPartialFile, false))
        return;
    try {
        removeItem(m_partialDestination);
    } catch (const Error &) { // there may be none
    }
}

void DownloadTracker::finish(const DownloadResult &result)
{
    if (!std::exchange(m_hasCompleted, true))
        m_completion(result);
}

} // namespace sorvanta
