#include "platform/https_transfer.h"

#include "platform/awaited_thread.h"
#include "platform/main_queue.h"
#include "platform/url_errors.h"

#include <QString>

#include <algorithm>
#include <cerrno>
#include <utility>

#include <curl/curl.h>
#include <ifaddrs.h>
#include <net/if.h>
#include <sys/socket.h>

namespace sorvanta {

namespace {

using Clock = std::chrono::steady_clock;

/// How late a cancel, a quit or a limit may be noticed while nothing arrives.
constexpr std::chrono::milliseconds longestWait(100);

/// Bytes of all heads of a transfer together. One that sends more sends no end of them.
constexpr std::size_t longestHeads = 256 * 1024;

struct EasyDeleter {
    void operator()(CURL *easy) const { curl_easy_cleanup(easy); }
};
struct MultiDeleter {
    void operator()(CURLM *multi) const { curl_multi_cleanup(multi); }
};

bool initializeCurl()
{
    static const bool isReady = curl_global_init(CURL_GLOBAL_DEFAULT) == CURLE_OK;
    return isReady;
}

/// Whether there is any way out of this machine.
bool hasNetwork()
{
    ifaddrs *interfaces = nullptr;
    if (getifaddrs(&interfaces) != 0)
        return true;
    bool isFound = false;
    for (const ifaddrs *one = interfaces; one && !isFound; one = one->ifa_next) {
        const bool isInternet =
            one->ifa_addr && (one->ifa_addr->sa_family == AF_INET || one->ifa_addr->sa_family == AF_INET6);
        isFound = isInternet && (one->ifa_flags & IFF_UP) && !(one->ifa_flags & IFF_LOOPBACK);
    }
    freeifaddrs(interfaces);
    return isFound;
}

/// A transfer as its thread runs it.
class RunningTransfer {
public:
    RunningTransfer(const QUrl &url, const HttpsTransferLimits &limits, const std::atomic<bool> &isCancelled,
                    HttpsTransferDelegate &delegate)
        : m_url(url)
        , m_limits(limits)
        , m_isCancelled(isCancelled)
        , m_delegate(delegate)
    {
    }
    RunningTransfer(const RunningTransfer &) = delete;
    RunningTransfer &operator=(const RunningTransfer &) = delete;
    ~RunningTransfer()
    {
        if (m_multi && m_easy)
            curl_multi_remove_handle(m_multi.get(), m_easy.get());
    }

    /// Returns when the delegate knows of the end, or when the application quits.
    void run()
    {
        if (initializeCurl()) {
            m_easy.reset(curl_easy_init());
            m_multi.reset(curl_multi_init());
        }
        const bool isReady = m_easy && m_multi && prepare();
        const CURLcode result = isReady ? perform() : CURLE_FAILED_INIT;
        if (!isQuitting())
            m_delegate.didComplete(error(result));
    }

private:
    template<typename Value>
    void set(CURLoption option, Value value)
    {
        m_isPrepared = curl_easy_setopt(m_easy.get(), option, value) == CURLE_OK && m_isPrepared;
    }

    bool prepare()
    {
        set(CURLOPT_URL, m_url.toEncoded().constData());
        set(CURLOPT_PROTOCOLS_STR, "https");
        set(CURLOPT_REDIR_PROTOCOLS_STR, "https");
        set(CURLOPT_FOLLOWLOCATION, 1L);
        set(CURLOPT_MAXREDIRS, static_cast<long>(m_limits.redirects));
        // A connection carries one transfer, so that streams within it would gain nothing.
        set(CURLOPT_HTTP_VERSION, static_cast<long>(CURL_HTTP_VERSION_1_1));
        set(CURLOPT_ACCEPT_ENCODING, ""); // all that can be decoded
        set(CURLOPT_SUPPRESS_CONNECT_HEADERS, 1L);
        set(CURLOPT_NOSIGNAL, 1L);
        // Does not wait for the system to find a host whom nobody asks for any more.
        set(CURLOPT_QUICK_EXIT, 1L);
        set(CURLOPT_BUFFERSIZE, 128L * 1024);
        set(CURLOPT_OPENSOCKETFUNCTION, &RunningTransfer::openSocket);
        // The library knows where the system's certificates lie; of the environment only its own program takes notice.
        setIfNamed(CURLOPT_CAINFO, qgetenv("SSL_CERT_FILE"));
        setIfNamed(CURLOPT_CAPATH, qgetenv("SSL_CERT_DIR"));
        set(CURLOPT_HEADERFUNCTION, &RunningTransfer::takeHeader);
        set(CURLOPT_HEADERDATA, this);
        set(CURLOPT_WRITEFUNCTION, &RunningTransfer::takeData);
        set(CURLOPT_WRITEDATA, this);
        return m_isPrepared && curl_multi_add_handle(m_multi.get(), m_easy.get()) == CURLM_OK;
    }

    void setIfNamed(CURLoption option, const QByteArray &path)
    {
        if (!path.isEmpty())
            set(option, path.constData());
    }

    /// Programs that are started meanwhile do not inherit it, and cannot keep the connection open.
    static curl_socket_t openSocket(void * /*object*/, curlsocktype /*purpose*/, const curl_sockaddr *address)
    {
        return ::socket(address->family, address->socktype | SOCK_CLOEXEC, address->protocol);
    }

    CURLcode perform()
    {
        const Clock::time_point end = Clock::now() + m_limits.overall;
        m_lastPiece = Clock::now();
        for (;;) {
            int running = 0;
            if (curl_multi_perform(m_multi.get(), &running) != CURLM_OK)
                return CURLE_FAILED_INIT;
            int left = 0;
            if (const CURLMsg *message = curl_multi_info_read(m_multi.get(), &left))
                return message->data.result;
            if (isStopped())
                return CURLE_ABORTED_BY_CALLBACK;
            const Clock::time_point limit = std::min(end, m_lastPiece + m_limits.idle);
            const auto wait = std::chrono::ceil<std::chrono::milliseconds>(limit - Clock::now());
            if (wait.count() <= 0)
                return CURLE_OPERATION_TIMEDOUT;
            curl_multi_poll(m_multi.get(), nullptr, 0, static_cast<int>(std::min(wait, longestWait).count()), nullptr);
        }
    }

    bool isCancelled() const { return m_isCancelled || m_isRefused; }
    bool isStopped() const { return isCancelled() || isQuitting(); }

    static size_t takeHeader(const char *bytes, size_t, size_t size, void *object)
    {
        auto *self = static_cast<RunningTransfer *>(object);
        self->m_lastPiece = Clock::now();
        const QByteArrayView line(bytes, static_cast<qsizetype>(size));
        self->m_headSize += size;
        if (self->m_headSize > longestHeads)
            return CURL_WRITEFUNC_ERROR;
        if ((line == "\r\n" || line == "\n") && self->isHeadOfTheLastResponse()) {
            if (self->isSizeImpossible())
                return CURL_WRITEFUNC_ERROR;
            self->tellResponse();
        }
        return self->isStopped() ? CURL_WRITEFUNC_ERROR : size;
    }

    static size_t takeData(const char *bytes, size_t, size_t size, void *object)
    {
        auto *self = static_cast<RunningTransfer *>(object);
        if (!self->isStopped())
            self->m_delegate.didReceiveData(QByteArrayView(bytes, static_cast<qsizetype>(size)));
        self->m_lastPiece = Clock::now(); // behind the delegate, whose time is not the server's
        return self->isStopped() ? CURL_WRITEFUNC_ERROR : size;
    }

    template<typename Value>
    Value info(CURLINFO what, Value value) const
    {
        curl_easy_getinfo(m_easy.get(), what, &value);
        return value;
    }

    /// The value of a header of the response at hand; empty if there is none.
    QByteArrayView headerValue(const char *name) const
    {
        curl_header *header = nullptr;
        const CURLHcode code = curl_easy_header(m_easy.get(), name, 0, CURLH_HEADER, -1, &header);
        return code == CURLHE_OK ? QByteArrayView(header->value) : QByteArrayView();
    }

    /// Whether the head that has just ended is neither an interim one nor one that leads elsewhere.
    bool isHeadOfTheLastResponse() const
    {
        const long status = info(CURLINFO_RESPONSE_CODE, 0L);
        return status >= 200 && !(status >= 300 && status < 400 && !headerValue("Location").isEmpty());
    }

    /// Whether the size that is announced is too large for a number, so that the body cannot be whole.
    bool isSizeImpossible() const
    {
        return !headerValue("Content-Length").isEmpty() && headerValue("Transfer-Encoding").isEmpty()
               && info(CURLINFO_CONTENT_LENGTH_DOWNLOAD_T, curl_off_t(-1)) < 0;
    }

    void tellResponse()
    {
        if (std::exchange(m_isResponseTold, true))
            return;
        const bool isEncoded = !headerValue("Content-Encoding").isEmpty();
        const HttpsResponse response{
            .statusCode = static_cast<int>(info(CURLINFO_RESPONSE_CODE, 0L)),
            .expectedContentLength = isEncoded ? -1 : info(CURLINFO_CONTENT_LENGTH_DOWNLOAD_T, curl_off_t(-1)),
        };
        m_delegate.didReceiveResponse(response, [this](HttpsTransferDelegate::Disposition disposition) {
            m_isRefused = disposition == HttpsTransferDelegate::Disposition::Cancel;
        });
    }

    std::optional<Error> error(CURLcode result) const
    {
        const QUrl url = m_easy ? QUrl(QString::fromUtf8(info<const char *>(CURLINFO_EFFECTIVE_URL, nullptr))) : m_url;
        if (isCancelled())
            return urlError(UrlFailure::Cancelled, url.host());
        if (result == CURLE_OK)
            return std::nullopt;
        return urlError(failure(result, url), url.host());
    }

    UrlFailure failure(CURLcode result, const QUrl &url) const
    {
        switch (result) {
        case CURLE_URL_MALFORMAT:
            return UrlFailure::BadUrl;
        case CURLE_UNSUPPORTED_PROTOCOL:
            if (url.scheme() == u"http")
                return UrlFailure::NotSecure;
            // Something that is no HTTP at all is told in the same way.
            return url.scheme() == u"https" ? UrlFailure::BadResponse : UrlFailure::UnsupportedUrl;
        case CURLE_COULDNT_RESOLVE_HOST:
            return hasNetwork() ? UrlFailure::HostNotFound : UrlFailure::Offline;
        case CURLE_COULDNT_CONNECT:
        case CURLE_COULDNT_RESOLVE_PROXY:
        case CURLE_PROXY:
            return hasNetwork() ? UrlFailure::NoConnection : UrlFailure::Offline;
        case CURLE_OPERATION_TIMEDOUT:
            return UrlFailure::TimedOut;
        case CURLE_PARTIAL_FILE:
        case CURLE_GOT_NOTHING:
        case CURLE_SEND_ERROR:
        case CURLE_RECV_ERROR:
            return isRefusedByProxy() ? UrlFailure::NoConnection : UrlFailure::ConnectionLost;
        case CURLE_TOO_MANY_REDIRECTS:
            return UrlFailure::TooManyRedirects;
        case CURLE_WEIRD_SERVER_REPLY:
        case CURLE_BAD_CONTENT_ENCODING:
        case CURLE_WRITE_ERROR: // of the decoder, or at a head that is refused
        case CURLE_OUT_OF_MEMORY: // at a single header without end
            return UrlFailure::BadResponse;
        case CURLE_PEER_FAILED_VERIFICATION:
            return UrlFailure::BadCertificate;
        case CURLE_SSL_CONNECT_ERROR:
        case CURLE_SSL_CERTPROBLEM:
        case CURLE_SSL_CIPHER:
        case CURLE_SSL_CACERT_BADFILE:
            return UrlFailure::TlsFailed;
        default:
            return UrlFailure::Unknown;
        }
    }

    bool isRefusedByProxy() const
    {
        const long status = info(CURLINFO_HTTP_CONNECTCODE, 0L);
        return status != 0 && status / 100 != 2;
    }

    const QUrl m_url;
    const HttpsTransferLimits m_limits;
    const std::atomic<bool> &m_isCancelled;
    HttpsTransferDelegate &m_delegate;
    std::unique_ptr<CURL, EasyDeleter> m_easy;
    std::unique_ptr<CURLM, MultiDeleter> m_multi;
    bool m_isPrepared = true;
    bool m_isResponseTold = false;
    bool m_isRefused = false;
    std::size_t m_headSize = 0;
    Clock::time_point m_lastPiece;
};

} // namespace

HttpsTransfer::HttpsTransfer(const QUrl &url, const HttpsTransferLimits &limits)
    : m_url(url)
    , m_limits(limits)
{
}

void HttpsTransfer::resume(std::shared_ptr<HttpsTransferDelegate> delegate)
{
    const auto transfer = [url = m_url, limits = m_limits, isCancelled = m_isCancelled,
                           delegate = std::move(delegate)] {
        RunningTransfer(url, limits, *isCancelled, *delegate).run();
    };
    runOnAwaitedThread(u"sv.download"_qs, transfer);
}

void HttpsTransfer::cancel()
{
    *m_isCancelled = true;
}

} // namespace sorvanta
