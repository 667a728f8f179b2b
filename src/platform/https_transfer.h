#pragma once

#include "platform/error.h"

#include <QByteArrayView>
#include <QUrl>

#include <atomic>
#include <chrono>
#include <functional>
#include <memory>
#include <optional>

namespace sorvanta {

/// What a server says ahead of the body.
struct HttpsResponse {
    int statusCode = 0;
    /// The size of the body in bytes; -1 if the server named none, or if the body is encoded and comes out longer.
    qint64 expectedContentLength = -1;
};

/// When a transfer is given up.
struct HttpsTransferLimits {
    std::chrono::milliseconds idle = std::chrono::seconds(60); ///< without any piece of data
    std::chrono::milliseconds overall = std::chrono::hours(7 * 24);
    int redirects = 16; ///< that are followed
};

/// Who is told of a transfer, on the transfer's own thread, one call at a time.
class HttpsTransferDelegate {
public:
    enum class Disposition { Allow, Cancel };
    using Answer = std::function<void(Disposition)>;

    HttpsTransferDelegate() = default;
    HttpsTransferDelegate(const HttpsTransferDelegate &) = delete;
    HttpsTransferDelegate &operator=(const HttpsTransferDelegate &) = delete;
    virtual ~HttpsTransferDelegate() = default;

    /// The head of the response has come, the one behind all redirects. `answer` is called before this returns.
    virtual void didReceiveResponse(const HttpsResponse &response, const Answer &answer) = 0;
    /// A piece of the body, decoded. The bytes are valid during the call.
    virtual void didReceiveData(QByteArrayView bytes) = 0;
    /// The end; nothing follows. Without an error the body is whole. Errors are of the domain "NSURLErrorDomain".
    virtual void didComplete(const std::optional<Error> &error) = 0;
};

/// One GET over HTTPS. No header of the application's own is sent, no user agent and no cookie.
///
/// HTTPS is the only way, also behind a redirect. Certificates are checked against those of the system; the environment
/// may name others (SSL_CERT_FILE, SSL_CERT_DIR) and a proxy (https_proxy, all_proxy, no_proxy). A body that is shorter
/// than announced is a failure, and what follows a whole body is ignored. Nothing is held in memory but the piece at
/// hand.
///
/// When the application quits, a transfer ends at once, and the delegate hears no more of it.
class HttpsTransfer {
public:
    explicit HttpsTransfer(const QUrl &url, const HttpsTransferLimits &limits = {});

    /// Starts the transfer, once, on a thread of its own, which shares the delegate until its end. The transfer goes
    /// on when this object is gone. Main thread only.
    /// @throws Error if the system has no thread to give
    void resume(std::shared_ptr<HttpsTransferDelegate> delegate);

    /// Ends the transfer: the delegate is told of no more data, but of its completion with error -999, unless it has
    /// ended already. May be called from any thread, also by the delegate.
    void cancel();

private:
    QUrl m_url;
    HttpsTransferLimits m_limits;
    std::shared_ptr<std::atomic<bool>> m_isCancelled = std::make_shared<std::atomic<bool>>(false);
};

} // namespace sorvanta
