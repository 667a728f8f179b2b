#include "platform/https_transfer.h"

#include "support/model_server.h"
#include "support/printing.h"

#include <gtest/gtest.h>

#include <QElapsedTimer>
#include <QRegularExpression>
#include <QThread>

#include <algorithm>
#include <cstdlib>
#include <functional>
#include <future>
#include <vector>

#include <fcntl.h>
#include <sys/socket.h>

using namespace sorvanta;

namespace {

constexpr int defaultSize = 1'000'000;

/// Keeps what a transfer says. Fields may be read once it has completed.
class Recorder : public HttpsTransferDelegate {
public:
    void didReceiveResponse(const HttpsResponse &response, const Answer &answer) override
    {
        noteThread();
        responses.push_back(response);
        answer(disposition);
    }
    void didReceiveData(QByteArrayView bytes) override
    {
        noteThread();
        ++pieces;
        body.append(bytes.data(), bytes.size());
        if (onData)
            onData();
    }
    void didComplete(const std::optional<Error> &failure) override
    {
        noteThread();
        error = failure;
        ++completions;
        m_isDone.set_value();
    }

    bool waitForEnd() { return m_end.wait_for(std::chrono::seconds(30)) == std::future_status::ready; }

    Disposition disposition = Disposition::Allow;
    std::function<void()> onData;
    std::vector<HttpsResponse> responses;
    QByteArray body;
    int pieces = 0;
    int completions = 0;
    std::optional<Error> error;
    QList<QThread *> threads;

private:
    void noteThread()
    {
        if (!threads.contains(QThread::currentThread()))
            threads.append(QThread::currentThread());
    }

    std::promise<void> m_isDone;
    std::future<void> m_end = m_isDone.get_future();
};

class HttpsTransferTest : public testing::Test {
protected:
    static void SetUpTestSuite() { server = new ModelServer; }
    static void TearDownTestSuite()
    {
        delete server;
        server = nullptr;
    }

    void SetUp() override { ASSERT_TRUE(server->isRunning()); }
    void TearDown() override
    {
        qunsetenv("https_proxy");
        qunsetenv("SSL_CERT_DIR");
        server->trustAuthority();
    }

    static std::shared_ptr<Recorder> get(const QUrl &url, const HttpsTransferLimits &limits = {},
                                         std::shared_ptr<Recorder> recorder = std::make_shared<Recorder>())
    {
        HttpsTransfer(url, limits).resume(recorder);
        EXPECT_TRUE(recorder->waitForEnd()) << "the transfer does not end";
        EXPECT_EQ(recorder->completions, 1);
        return recorder;
    }
    static std::shared_ptr<Recorder> get(const QString &path) { return get(server->url(path)); }

    static int code(const std::shared_ptr<Recorder> &recorder) { return recorder->error ? recorder->error->code() : 0; }

    static inline ModelServer *server = nullptr;
};

TEST_F(HttpsTransferTest, tellsTheResponseThenTheBodyThenTheEndOnAThreadOfItsOwn)
{
    const auto told = get(u"/whole"_qs);
    EXPECT_EQ(told->error, std::nullopt) << told->error->what();
    ASSERT_EQ(told->responses.size(), 1u);
    EXPECT_EQ(told->responses[0].statusCode, 200);
    EXPECT_EQ(told->responses[0].expectedContentLength, defaultSize);
    EXPECT_TRUE(told->body == ModelServer::body(defaultSize));
    EXPECT_GT(told->pieces, 10) << "the body comes in pieces";
    ASSERT_EQ(told->threads.size(), 1);
    EXPECT_NE(told->threads.first(), QThread::currentThread());
}

TEST_F(HttpsTransferTest, keepsItsConnectionFromProgramsThatAreStartedMeanwhile)
{
    const auto recorder = std::make_shared<Recorder>();
    int connections = 0;
    int handedOn = 0;
    recorder->onData = [&connections, &handedOn] {
        for (int file = 0; file < 1024; ++file) {
            sockaddr_storage peer = {};
            socklen_t size = sizeof peer;
            if (getpeername(file, reinterpret_cast<sockaddr *>(&peer), &size) != 0 || peer.ss_family == AF_UNIX)
                continue;
            ++connections;
            handedOn += (fcntl(file, F_GETFD) & FD_CLOEXEC) == 0 ? 1 : 0;
        }
    };
    get(server->url(u"/whole"_qs), {}, recorder);
    EXPECT_GT(connections, 0);
    EXPECT_EQ(handedOn, 0);
}

TEST_F(HttpsTransferTest, tellsTheResponseOfAnEmptyBody)
{
    const auto told = get(u"/whole?size=0"_qs);
    EXPECT_FALSE(told->error);
    ASSERT_EQ(told->responses.size(), 1u);
    EXPECT_EQ(told->responses[0].expectedContentLength, 0);
    EXPECT_EQ(told->body, QByteArray());
}

TEST_F(HttpsTransferTest, sendsAPlainGetAndNothingOfItsOwn)
{
    get(u"/whole?download=true"_qs);
    const QString head = server->requests().last().head;
    QStringList lines = head.split(u"\r\n"_qs, Qt::SkipEmptyParts);
    EXPECT_EQ(lines.takeFirst(), u"GET /whole?download=true HTTP/1.1"_qs);
    QStringList names;
    for (const QString &line : lines)
        names << line.section(u':', 0, 0);
    names.sort();
    EXPECT_EQ(names, (QStringList{u"Accept"_qs, u"Accept-Encoding"_qs, u"Host"_qs})) << head.toStdString();
    EXPECT_TRUE(lines.contains(u"Accept: */*"_qs));
    const QRegularExpression encodings(u"\nAccept-Encoding: [^\r]*\\bgzip\\b"_qs);
    EXPECT_TRUE(encodings.match(head).hasMatch()) << head.toStdString();
}

TEST_F(HttpsTransferTest, doesNotKnowASizeThatTheServerDoesNotName)
{
    for (const QString &path : {u"/unknown-size"_qs, u"/chunked"_qs}) {
        const auto told = get(path);
        EXPECT_FALSE(told->error) << path.toStdString();
        ASSERT_EQ(told->responses.size(), 1u);
        EXPECT_EQ(told->responses[0].expectedContentLength, -1) << path.toStdString();
        EXPECT_TRUE(told->body == ModelServer::body(defaultSize)) << path.toStdString();
    }
}

TEST_F(HttpsTransferTest, unpacksACompressedBodyWhoseSizeIsThenUnknown)
{
    const auto told = get(u"/gzip"_qs);
    EXPECT_FALSE(told->error);
    ASSERT_EQ(told->responses.size(), 1u);
    EXPECT_EQ(told->responses[0].expectedContentLength, -1);
    EXPECT_TRUE(told->body == ModelServer::body(defaultSize));
}

TEST_F(HttpsTransferTest, followsRedirectsAndTellsTheLastResponseOnly)
{
    for (const int count : {1, 15, 16}) {
        const auto told = get(u"/redirect/%1?size=5000"_qs.arg(count));
        EXPECT_EQ(code(told), 0) << count;
        ASSERT_EQ(told->responses.size(), 1u);
        EXPECT_EQ(told->responses[0].statusCode, 200);
        EXPECT_EQ(told->body, ModelServer::body(5000));
    }
}

TEST_F(HttpsTransferTest, failsAtTheSeventeenthRedirectAndInALoop)
{
    for (const QString &path : {u"/redirect/17"_qs, u"/loop"_qs}) {
        const auto told = get(path);
        EXPECT_EQ(code(told), -1007) << path.toStdString();
        EXPECT_TRUE(told->responses.empty());
        EXPECT_EQ(told->body, QByteArray());
    }
}

TEST_F(HttpsTransferTest, followsARedirectToAnotherHost)
{
    const auto told = get(u"/elsewhere?size=5000"_qs);
    EXPECT_EQ(code(told), 0);
    EXPECT_EQ(told->body, ModelServer::body(5000));
    EXPECT_TRUE(server->requests().last().head.contains(u"Host: 127.0.0.1:"_qs));
}

TEST_F(HttpsTransferTest, neverSpeaksPlainHttp)
{
    const auto redirected = get(u"/insecure"_qs);
    EXPECT_EQ(code(redirected), -1022);
    EXPECT_TRUE(redirected->responses.empty());
    QUrl plain = server->url(u"/whole"_qs, u"plain"_qs);
    plain.setScheme(u"http"_qs);
    EXPECT_EQ(code(get(plain)), -1022);
    for (const ModelServer::Request &request : server->requests())
        EXPECT_NE(request.to, u"plain"_qs) << "somebody asked in the clear";
}

TEST_F(HttpsTransferTest, refusesOtherSchemesAndAddressesThatAreNone)
{
    EXPECT_EQ(code(get(u"/foreign"_qs)), -1002);
    const auto toAFile = get(u"/to-a-file"_qs);
    EXPECT_EQ(code(toAFile), -1002);
    EXPECT_TRUE(toAFile->body.isEmpty());
    EXPECT_EQ(code(get(QUrl(u"ftp://localhost/whole"_qs))), -1002);
    EXPECT_EQ(code(get(QUrl(u"file:///etc/hostname"_qs))), -1002);
    EXPECT_EQ(code(get(QUrl())), -1000);
}

TEST_F(HttpsTransferTest, handsOnAnyStatusAndLeavesItsMeaningToTheDelegate)
{
    for (const int status : {201, 304, 404, 500}) {
        const auto told = get(u"/status/%1"_qs.arg(status));
        ASSERT_EQ(told->responses.size(), 1u) << status;
        EXPECT_EQ(told->responses[0].statusCode, status);
        EXPECT_EQ(code(told), 0) << status;
    }
}

TEST_F(HttpsTransferTest, endsAsCancelledWhenTheResponseIsRefused)
{
    auto recorder = std::make_shared<Recorder>();
    recorder->disposition = HttpsTransferDelegate::Disposition::Cancel;
    get(server->url(u"/status/404"_qs), {}, recorder);
    EXPECT_EQ(code(recorder), -999);
    EXPECT_EQ(recorder->pieces, 0);
}

TEST_F(HttpsTransferTest, tellsTheResponseBeforeTheBodyComes)
{
    auto recorder = std::make_shared<Recorder>();
    recorder->disposition = HttpsTransferDelegate::Disposition::Cancel;
    get(server->url(u"/status-stalls/500"_qs), {}, recorder);
    ASSERT_EQ(recorder->responses.size(), 1u);
    EXPECT_EQ(recorder->responses[0].statusCode, 500);
    EXPECT_EQ(code(recorder), -999) << "not that the server fell silent";
}

TEST_F(HttpsTransferTest, failsIfTheBodyIsShorterThanAnnounced)
{
    const auto told = get(u"/short"_qs);
    EXPECT_EQ(code(told), -1005);
    EXPECT_TRUE(told->body == ModelServer::body(defaultSize / 2)) << "what came was handed on";
}

TEST_F(HttpsTransferTest, ignoresWhatFollowsTheBody)
{
    const auto told = get(u"/surplus"_qs);
    EXPECT_EQ(code(told), 0);
    EXPECT_TRUE(told->body == ModelServer::body(defaultSize));
}

TEST_F(HttpsTransferTest, failsIfTheConnectionBreaks)
{
    const auto told = get(u"/reset"_qs);
    EXPECT_EQ(code(told), -1005);
    EXPECT_TRUE(ModelServer::body(defaultSize / 2).startsWith(told->body));
    EXPECT_FALSE(told->body.isEmpty());
}

TEST_F(HttpsTransferTest, failsIfAServerFallsSilent)
{
    for (const QString &path : {u"/stall"_qs, u"/silent"_qs}) {
        QElapsedTimer timer;
        timer.start();
        const auto told = get(server->url(path), {.idle = std::chrono::milliseconds(700)});
        EXPECT_EQ(code(told), -1001) << path.toStdString();
        EXPECT_GE(timer.elapsed(), 700);
    }
}

TEST_F(HttpsTransferTest, isPatientWithASlowServerThatGoesOnSending)
{
    QElapsedTimer timer;
    timer.start();
    const auto told = get(server->url(u"/drip?delay=0.1"_qs), {.idle = std::chrono::milliseconds(1000)});
    EXPECT_EQ(code(told), 0);
    EXPECT_GT(timer.elapsed(), 1'500) << "it took longer than the limit, so the limit starts anew with each piece";
}

TEST_F(HttpsTransferTest, takesOnlySoLongOverall)
{
    const auto told = get(server->url(u"/drip?delay=0.2"_qs), {.overall = std::chrono::milliseconds(1000)});
    EXPECT_EQ(code(told), -1001);
    EXPECT_FALSE(told->body.isEmpty());
}

TEST_F(HttpsTransferTest, itsLimitsAreAMinuteAWeekAndSixteenRedirects)
{
    const HttpsTransferLimits limits;
    EXPECT_EQ(limits.idle, std::chrono::seconds(60));
    EXPECT_EQ(limits.overall, std::chrono::seconds(604'800));
    EXPECT_EQ(limits.redirects, 16);
}

TEST_F(HttpsTransferTest, failsIfTheAnswerMakesNoSense)
{
    EXPECT_EQ(code(get(u"/nonsense"_qs)), -1011);
    EXPECT_EQ(code(get(u"/gzip-broken"_qs)), -1011);
}

TEST_F(HttpsTransferTest, failsAtAHeadThatNoHonestServerSends)
{
    for (const char *path : {"/claims/-5", "/claims/99999999999999999999", "/claims/many", "/endless-head",
                             "/endless-header", "/endless-interim", "/nul-in-head"}) {
        const auto told = get(QString::fromLatin1(path));
        EXPECT_EQ(code(told), -1011) << path;
        EXPECT_TRUE(told->responses.empty()) << path;
        EXPECT_EQ(told->body, QByteArray()) << path;
    }
}

TEST_F(HttpsTransferTest, failsIfTheLargestSizeThereIsDoesNotCome)
{
    const auto told = get(u"/claims/9223372036854775807?size=5000"_qs);
    EXPECT_EQ(code(told), -1005);
    ASSERT_EQ(told->responses.size(), 1u);
    EXPECT_EQ(told->responses[0].expectedContentLength, 9'223'372'036'854'775'807);
    EXPECT_EQ(told->body, ModelServer::body(5000));
}

TEST_F(HttpsTransferTest, aSizeBesideChunksCountsForNothing)
{
    for (const char *path : {"/chunked-claims/7?size=5000", "/chunked-claims/99999999999999999999?size=5000"}) {
        const auto told = get(QString::fromLatin1(path));
        EXPECT_EQ(code(told), 0) << path;
        ASSERT_EQ(told->responses.size(), 1u);
        EXPECT_EQ(told->responses[0].expectedContentLength, -1) << path;
        EXPECT_EQ(told->body, ModelServer::body(5000)) << path;
    }
}

TEST_F(HttpsTransferTest, anAnswerWithoutContentEndsWell)
{
    const auto told = get(u"/no-content"_qs);
    EXPECT_EQ(code(told), 0);
    ASSERT_EQ(told->responses.size(), 1u);
    EXPECT_EQ(told->responses[0].statusCode, 204);
    EXPECT_EQ(told->body, QByteArray());
}

TEST_F(HttpsTransferTest, trustsNoCertificateThatIsForeignOrForAnotherHostOrExpired)
{
    for (const QString &name : {u"unknown"_qs, u"other_host"_qs, u"expired"_qs}) {
        const auto requests = server->requests().size();
        const auto told = get(server->url(u"/whole"_qs, name));
        EXPECT_EQ(code(told), -1202) << name.toStdString();
        ASSERT_TRUE(told->error);
        EXPECT_TRUE(told->error->localizedDescription().contains(u"pretending to be “localhost” which"_qs));
        EXPECT_TRUE(told->responses.empty());
        EXPECT_EQ(server->requests().size(), requests) << "nothing is asked of such a server";
    }
}

TEST_F(HttpsTransferTest, trustsWhatTheSystemTrustsUnlessTheEnvironmentNamesOthers)
{
    qunsetenv("SSL_CERT_FILE");
    EXPECT_EQ(code(get(u"/whole"_qs)), -1202) << "the system knows nothing of the test's authority";

    QTemporaryDir folder;
    QFile::copy(server->authority(), folder.filePath(u"authority.pem"_qs));
    ASSERT_EQ(std::system(qPrintable(u"openssl rehash "_qs + folder.path())), 0);
    qputenv("SSL_CERT_DIR", folder.path().toUtf8());
    EXPECT_EQ(code(get(u"/whole"_qs)), 0);

    qputenv("SSL_CERT_FILE", folder.filePath(u"missing.pem"_qs).toUtf8());
    EXPECT_EQ(code(get(u"/whole"_qs)), -1200);
}

TEST_F(HttpsTransferTest, failsIfTheOtherSideSpeaksNoTls)
{
    EXPECT_EQ(code(get(server->url(u"/whole"_qs, u"no_tls"_qs))), -1200);
}

TEST_F(HttpsTransferTest, goesThroughTheProxyOfTheEnvironment)
{
    server->useProxy();
    const auto told = get(server->url(u"/whole?size=5000"_qs, u"good"_qs, u"models.sorvanta.invalid"_qs));
    EXPECT_EQ(code(told), 0);
    ASSERT_EQ(told->responses.size(), 1u) << "the proxy's own answer is none";
    EXPECT_EQ(told->body, ModelServer::body(5000));
    const auto requests = server->requests();
    EXPECT_EQ(requests[requests.size() - 2].to, u"proxy"_qs);
    EXPECT_TRUE(requests[requests.size() - 2].target.startsWith(u"models.sorvanta.invalid:"_qs));
}

TEST_F(HttpsTransferTest, cannotConnectThroughAProxyThatRefusesOrIsNotThere)
{
    qputenv("https_proxy", "http://127.0.0.1:" + QByteArray::number(server->port(u"refusing_proxy"_qs)));
    EXPECT_EQ(code(get(u"/whole"_qs)), -1004);
    qputenv("https_proxy", "http://127.0.0.1:1");
    EXPECT_EQ(code(get(u"/whole"_qs)), -1004);
}

TEST_F(HttpsTransferTest, cannotConnectWhereNobodyListens)
{
    EXPECT_EQ(code(get(QUrl(u"https://127.0.0.1:1/whole"_qs))), -1004);
}

TEST_F(HttpsTransferTest, aCancelByTheDelegateStopsTheDataAndIsToldOnce)
{
    auto recorder = std::make_shared<Recorder>();
    HttpsTransfer transfer(server->url(u"/whole"_qs));
    recorder->onData = [&transfer] { transfer.cancel(); };
    transfer.resume(recorder);
    ASSERT_TRUE(recorder->waitForEnd());
    EXPECT_EQ(code(recorder), -999);
    EXPECT_EQ(recorder->error->localizedDescription(), u"cancelled"_qs);
    EXPECT_EQ(recorder->pieces, 1);
    transfer.cancel();
    EXPECT_EQ(recorder->completions, 1);
}

TEST_F(HttpsTransferTest, aCancelDoesNotWaitForASilentServer)
{
    auto recorder = std::make_shared<Recorder>();
    HttpsTransfer transfer(server->url(u"/silent"_qs));
    transfer.resume(recorder);
    QThread::msleep(300);
    transfer.cancel();
    ASSERT_TRUE(recorder->waitForEnd());
    EXPECT_EQ(code(recorder), -999);
}

TEST_F(HttpsTransferTest, aCancelBeforeTheStartAsksNothing)
{
    const auto requests = server->requests().size();
    auto recorder = std::make_shared<Recorder>();
    HttpsTransfer transfer(server->url(u"/whole"_qs));
    transfer.cancel();
    transfer.resume(recorder);
    ASSERT_TRUE(recorder->waitForEnd());
    EXPECT_EQ(code(recorder), -999);
    EXPECT_EQ(server->requests().size(), requests);
}

TEST_F(HttpsTransferTest, letsGoOfItsDelegateAtTheEnd)
{
    std::weak_ptr<Recorder> watched;
    {
        const auto told = get(u"/whole?size=10"_qs);
        watched = told;
    }
    QElapsedTimer timer;
    timer.start();
    while (!watched.expired() && timer.elapsed() < 5'000)
        QThread::msleep(5);
    EXPECT_TRUE(watched.expired());
}

TEST_F(HttpsTransferTest, sixTransfersAtOnceKeepApart)
{
    std::vector<std::shared_ptr<Recorder>> recorders;
    for (int i = 1; i <= 6; ++i) {
        recorders.push_back(std::make_shared<Recorder>());
        HttpsTransfer(server->url(u"/drip?delay=0.02&size=%1"_qs.arg(i * 100'000))).resume(recorders.back());
    }
    QList<QThread *> threads;
    for (int i = 1; i <= 6; ++i) {
        const auto &told = recorders[static_cast<std::size_t>(i - 1)];
        ASSERT_TRUE(told->waitForEnd());
        EXPECT_EQ(code(told), 0);
        EXPECT_TRUE(told->body == ModelServer::body(i * 100'000)) << i;
        EXPECT_FALSE(threads.contains(told->threads.first())) << "each has its thread";
        threads += told->threads;
    }
}

} // namespace
