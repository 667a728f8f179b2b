#pragma once

#include "models/model_info.h"
#include "models/model_status.h"
#include "platform/error.h"
#include "platform/file_descriptor.h"
#include "platform/https_transfer.h"

#include <functional>
#include <memory>
#include <optional>
#include <variant>

namespace sorvanta {

/// The path of the finished file, or why there is none.
using DownloadResult = std::variant<QString, Error>;

/// Fetches one model file into a partial file beside its final place, and moves it there when the transfer has ended
/// well. Nothing is ever resumed.
///
/// start() belongs to the main thread; everything behind it runs on the thread of the transfer, which
/// shares the tracker until its end. Both handlers are called on either thread.
class DownloadTracker : public HttpsTransferDelegate, public std::enable_shared_from_this<DownloadTracker> {
public:
    using ProgressHandler = std::function<void(const DownloadState &)>;
    using Completion = std::function<void(const DownloadResult &)>;
    /// Seconds that only ever grow.
    using Clock = std::function<double()>;

    /// @param finalDestination absolute path of the model file; ".part" added, it is that of the partial file
    /// @param progressHandler called at most every 0.4 seconds, and for the last piece of a known size
    /// @param completion called once; but a failure to write comes first, and the cancellation that it causes second.
    /// From the first call on, the tracker leaves the places of both files alone.
    DownloadTracker(ModelInfo model, const QString &finalDestination, ProgressHandler progressHandler,
                    Completion completion, const HttpsTransferLimits &limits = {}, Clock clock = steadySeconds);

    /// Makes the partial file anew and starts the transfer. A failure goes to the completion.
    void start();

    /// Ends a download that has started; the completion is called as ever.
    void cancel();

    /// A status outside 200 to 299 ends the download with an error of the domain "ModelDownload".
    void didReceiveResponse(const HttpsResponse &response, const Answer &answer) override;
    void didReceiveData(QByteArrayView bytes) override;
    void didComplete(const std::optional<Error> &error) override;

    /// Hands on the figures with an estimate, which takes the average speed since the start.
    /// @param expected -1 if the size is not known
    void reportProgress(qint64 bytes, qint64 expected);

    static double steadySeconds();

private:
    void openPartialFile();
    void moveIntoPlace();
    void cleanUp();
    void finish(const DownloadResult &result);

    const ModelInfo m_model;
    const QString m_finalDestination;
    const QString m_partialDestination;
    const ProgressHandler m_progressHandler;
    const Completion m_completion;
    const HttpsTransferLimits m_limits;
    const Clock m_clock;
    std::optional<HttpsTransfer> m_task;
    double m_startDate;
    double m_lastProgressReport; // minus infinity before the first
    qint64 m_expectedBytes = 0;
    qint64 m_writtenBytes = 0;
    std::optional<FileDescriptor> m_fileHandle; // of the partial file
    bool m_hasPartialFile = false;
    bool m_hasCompleted = false;
};

} // namespace sorvanta
