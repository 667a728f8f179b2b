#include "models/download_tracker.h"

#include "support/cramped_folder.h"
#include "support/printing.h"
#include "support/waiting.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <utility>
#include <vector>

#include <netinet/in.h>
#include <sys/socket.h>

using namespace sorvanta;

namespace {

/// An address where a transfer waits until this object is gone: somebody listens there, but never answers.
class SilentAddress {
public:
    SilentAddress()
    {
        sockaddr_in address = {};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        socklen_t size = sizeof address;
        auto *generic = reinterpret_cast<sockaddr *>(&address);
        EXPECT_EQ(bind(m_socket.number(), generic, size), 0);
        EXPECT_EQ(listen(m_socket.number(), 1), 0);
        EXPECT_EQ(getsockname(m_socket.number(), generic, &size), 0);
        m_port = ntohs(address.sin_port);
    }

    QUrl url() const { return QUrl(u"https://127.0.0.1:%1/"_qs.arg(m_port)); }

private:
    FileDescriptor m_socket{socket(AF_INET, SOCK_STREAM, 0)};
    int m_port = 0;
};

class DownloadTrackerTest : public testing::Test {
protected:
    void SetUp() override
    {
        qputenv("no_proxy", "*");
        makeTracker(folder.filePath(u"ggml-tiny.bin"_qs));
    }
    void TearDown() override
    {
        address.reset();
        EXPECT_TRUE(waitForTheTransfer());
        qunsetenv("no_proxy");
    }

    /// Lets go of the tracker. @return whether its transfer did so, too
    bool waitForTheTransfer()
    {
        const std::weak_ptr<DownloadTracker> watched = std::exchange(tracker, nullptr);
        return waitUntil([&watched] { return watched.expired(); });
    }

    void makeTracker(const QString &destination)
    {
        tracker = std::make_shared<DownloadTracker>(
            model, destination, [this](const DownloadState &state) { reports.push_back(state); },
            [this](const DownloadResult &result) { results.push_back(result); }, HttpsTransferLimits{},
            [this] { return now; });
    }

    void respond(int status, qint64 size)
    {
        tracker->didReceiveResponse({status, size}, [this](HttpsTransferDelegate::Disposition disposition) {
            answers.push_back(disposition);
            resultsAtTheAnswer = results.size();
        });
    }

    const Error &error(std::size_t index) const { return std::get<Error>(results.at(index)); }
    QStringList files() const { return QDir(folder.path()).entryList(QDir::Files); }

    QTemporaryDir folder;
    std::optional<SilentAddress> address = std::make_optional<SilentAddress>();
    ModelInfo model{.id = u"tiny"_qs, .name = {}, .description = {}, .fileName = {}, .downloadURL = address->url()};
    double now = 1000;
    std::vector<DownloadState> reports;
    std::vector<DownloadResult> results;
    std::vector<HttpsTransferDelegate::Disposition> answers;
    std::size_t resultsAtTheAnswer = 0;
    std::shared_ptr<DownloadTracker> tracker;
};

TEST_F(DownloadTrackerTest, reportsAtMostEveryFourTenthsOfASecond)
{
    now = 1001;
    tracker->reportProgress(10, 100);
    EXPECT_EQ(reports.size(), 1u) << "the first one always";
    now = 1001.375;
    tracker->reportProgress(20, 100);
    EXPECT_EQ(reports.size(), 1u);
    now = 1001.40625;
    tracker->reportProgress(30, 100);
    EXPECT_EQ(reports.size(), 2u);
    now = 1001.75;
    tracker->reportProgress(40, 100);
    EXPECT_EQ(reports.size(), 2u) << "counted from the last report";
    EXPECT_EQ(reports[1].bytesReceived, 30);
    EXPECT_EQ(reports[1].totalBytesExpected, 100);
}

TEST_F(DownloadTrackerTest, reportsAgainAfterFourTenthsOfASecondToTheDot)
{
    now = 0; // where 0.4 is what it is
    tracker->reportProgress(10, 100);
    now = 0.399;
    tracker->reportProgress(20, 100);
    EXPECT_EQ(reports.size(), 1u);
    now = 0.4;
    tracker->reportProgress(30, 100);
    EXPECT_EQ(reports.size(), 2u);
}

TEST_F(DownloadTrackerTest, reportsTheLastPieceOfAKnownSizeHoweverSoonItComes)
{
    now = 1001;
    tracker->reportProgress(99, 100);
    tracker->reportProgress(100, 100);
    ASSERT_EQ(reports.size(), 2u);
    EXPECT_EQ(reports[1], (DownloadState{100, 100, 0.0}));
    tracker->reportProgress(200, -1);
    EXPECT_EQ(reports.size(), 2u) << "no piece of an unknown size is the last";
}

TEST_F(DownloadTrackerTest, aPieceThatWasHeldBackIsToldWithTheNextOneOnly)
{
    now = 1001;
    tracker->didReceiveData("abc");
    tracker->didReceiveData("def");
    now = 1060;
    QTest::qWait(500);
    ASSERT_EQ(reports.size(), 1u) << "nothing is told while nothing comes";
    EXPECT_EQ(reports[0].bytesReceived, 3);
    tracker->didReceiveData("g");
    ASSERT_EQ(reports.size(), 2u);
    EXPECT_EQ(reports[1].bytesReceived, 7);
}

TEST_F(DownloadTrackerTest, estimatesByTheAverageSpeedSinceTheStart)
{
    now = 1004;
    tracker->reportProgress(100, 1000);
    EXPECT_EQ(reports.at(0), (DownloadState{100, 1000, 36.0})) << "25 bytes a second";
    now = 1010;
    tracker->reportProgress(800, 1000);
    EXPECT_EQ(reports.at(1), (DownloadState{800, 1000, 2.5})) << "80 bytes a second, whatever came lately";
}

TEST_F(DownloadTrackerTest, estimatesNothingWithoutTimeOrBytes)
{
    tracker->reportProgress(100, 1000);
    EXPECT_EQ(reports.at(0), (DownloadState{100, 1000, std::nullopt})) << "no time has passed";
    now = 999;
    tracker->reportProgress(1000, 1000);
    EXPECT_EQ(reports.at(1), (DownloadState{1000, 1000, std::nullopt})) << "a clock that was set back";
    now = 1002;
    tracker->reportProgress(0, 1000);
    EXPECT_EQ(reports.at(2), (DownloadState{0, 1000, std::nullopt})) << "no speed";
}

TEST_F(DownloadTrackerTest, estimatesBelowZeroForAnUnknownSize)
{
    now = 1002;
    tracker->reportProgress(99, -1);
    ASSERT_EQ(reports.size(), 1u);
    EXPECT_EQ(reports[0].totalBytesExpected, -1);
    EXPECT_LT(reports[0].estimatedSecondsRemaining.value(), 0);
}

TEST_F(DownloadTrackerTest, countsTheTimeFromTheStartOfTheTransfer)
{
    now = 2000;
    tracker->start();
    now = 2002;
    tracker->reportProgress(50, 100);
    EXPECT_EQ(reports.at(0).estimatedSecondsRemaining, 2.0);
}

TEST_F(DownloadTrackerTest, takesEveryStatusFrom200To299)
{
    for (const int status : {200, 206, 299}) {
        respond(status, 5);
        EXPECT_EQ(answers.back(), HttpsTransferDelegate::Disposition::Allow) << status;
    }
    EXPECT_TRUE(results.empty());
    tracker->didReceiveData("abc");
    EXPECT_EQ(reports.at(0).totalBytesExpected, 5);
    EXPECT_EQ(reports.at(0).bytesReceived, 3);
}

TEST_F(DownloadTrackerTest, refusesEveryOtherStatus)
{
    for (const int status : {100, 199, 300, 304, 404, 500}) {
        makeTracker(folder.filePath(u"ggml-tiny.bin"_qs));
        results.clear();
        respond(status, 5);
        EXPECT_EQ(answers.back(), HttpsTransferDelegate::Disposition::Cancel) << status;
        EXPECT_EQ(resultsAtTheAnswer, 0u) << "the answer comes first";
        ASSERT_EQ(results.size(), 1u);
        EXPECT_EQ(error(0).domain(), u"ModelDownload"_qs);
        EXPECT_EQ(error(0).code(), status);
        EXPECT_EQ(error(0).localizedDescription(), u"Server responded with %1"_qs.arg(status));
    }
}

TEST_F(DownloadTrackerTest, completesOnce)
{
    respond(404, 5);
    tracker->didComplete(Error(u"NSURLErrorDomain"_qs, -999, u"cancelled"_qs));
    ASSERT_EQ(results.size(), 1u);
    EXPECT_EQ(error(0).code(), 404);
}

TEST_F(DownloadTrackerTest, writesAsTheBytesComeAndMovesTheFileAtTheEnd)
{
    tracker->start();
    EXPECT_EQ(files(), QStringList{u"ggml-tiny.bin.part"_qs}) << "empty, from the start";
    respond(200, 6);
    tracker->didReceiveData("abc");
    QFile partial(folder.filePath(u"ggml-tiny.bin.part"_qs));
    ASSERT_TRUE(partial.open(QIODevice::ReadOnly));
    EXPECT_EQ(partial.readAll(), "abc") << "at once";
    EXPECT_EQ(partial.permissions() & ~(QFile::ReadUser | QFile::WriteUser), QFile::ReadOwner | QFile::WriteOwner);
    tracker->didReceiveData("def");
    tracker->didComplete(std::nullopt);
    ASSERT_EQ(results.size(), 1u);
    EXPECT_EQ(std::get<QString>(results[0]), folder.filePath(u"ggml-tiny.bin"_qs));
    EXPECT_EQ(files(), QStringList{u"ggml-tiny.bin"_qs});
    QFile file(folder.filePath(u"ggml-tiny.bin"_qs));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(file.readAll(), "abcdef");
}

TEST_F(DownloadTrackerTest, aFailedTransferLeavesNoPartialFileAndAnOldFileAsItWas)
{
    QFile old(folder.filePath(u"ggml-tiny.bin"_qs));
    ASSERT_TRUE(old.open(QIODevice::WriteOnly));
    old.write("old");
    old.close();
    tracker->start();
    respond(200, 6);
    tracker->didReceiveData("abc");
    tracker->didComplete(Error(u"NSURLErrorDomain"_qs, -1005, u"The network connection was lost."_qs));
    ASSERT_EQ(results.size(), 1u);
    EXPECT_EQ(error(0).code(), -1005);
    EXPECT_EQ(files(), QStringList{u"ggml-tiny.bin"_qs});
    ASSERT_TRUE(old.open(QIODevice::ReadOnly));
    EXPECT_EQ(old.readAll(), "old");
}

TEST_F(DownloadTrackerTest, replacesAnOldFile)
{
    QFile old(folder.filePath(u"ggml-tiny.bin"_qs));
    ASSERT_TRUE(old.open(QIODevice::WriteOnly));
    old.write("a longer old file");
    old.close();
    tracker->start();
    tracker->didReceiveData("new");
    tracker->didComplete(std::nullopt);
    EXPECT_TRUE(std::holds_alternative<QString>(results.at(0)));
    ASSERT_TRUE(old.open(QIODevice::ReadOnly));
    EXPECT_EQ(old.readAll(), "new");
    EXPECT_EQ(files(), QStringList{u"ggml-tiny.bin"_qs});
}

TEST_F(DownloadTrackerTest, failsIfWhatLiesInTheFinalPlaceCannotBeRemoved)
{
    QDir(folder.path()).mkpath(u"ggml-tiny.bin/full"_qs);
    tracker->start();
    tracker->didReceiveData("new");
    tracker->didComplete(std::nullopt);
    EXPECT_EQ(error(0).localizedDescription(), u"“ggml-tiny.bin” couldn’t be removed."_qs);
    EXPECT_EQ(files(), QStringList()) << "the partial file has gone";
    EXPECT_TRUE(QDir(folder.filePath(u"ggml-tiny.bin/full"_qs)).exists());
}

TEST_F(DownloadTrackerTest, failsIfThePartialFileHasGone)
{
    tracker->start();
    ASSERT_TRUE(QFile::remove(folder.filePath(u"ggml-tiny.bin.part"_qs)));
    tracker->didReceiveData("new");
    tracker->didComplete(std::nullopt);
    EXPECT_EQ(error(0).localizedDescription(),
              u"“ggml-tiny.bin.part” couldn’t be moved to “%1” because either the former doesn’t exist, or the folder "
              u"containing the latter doesn’t exist."_qs.arg(QDir(folder.path()).dirName()));
}

TEST_F(DownloadTrackerTest, throwsAwayAPartialFileOfAnEarlierTry)
{
    QFile partial(folder.filePath(u"ggml-tiny.bin.part"_qs));
    ASSERT_TRUE(partial.open(QIODevice::WriteOnly));
    partial.write("a stale file");
    partial.close();
    tracker->start();
    EXPECT_EQ(partial.size(), 0);
    tracker->didReceiveData("new");
    EXPECT_EQ(partial.size(), 3);
}

TEST_F(DownloadTrackerTest, theEndOfARefusedTryLeavesThePartialFileOfTheNextOneAlone)
{
    tracker->start();
    respond(500, 5);
    ASSERT_EQ(results.size(), 1u) << "from now on a retry is offered";
    const auto refused = tracker;
    makeTracker(folder.filePath(u"ggml-tiny.bin"_qs));
    tracker->start();
    tracker->didReceiveData("new");
    refused->didComplete(Error(u"NSURLErrorDomain"_qs, -999, u"cancelled"_qs));
    EXPECT_EQ(files(), QStringList{u"ggml-tiny.bin.part"_qs});
    tracker->didComplete(std::nullopt);
    EXPECT_EQ(files(), QStringList{u"ggml-tiny.bin"_qs});
}

TEST_F(DownloadTrackerTest, makesTheFoldersThatAreMissing)
{
    makeTracker(folder.filePath(u"a/b/ggml-tiny.bin"_qs));
    tracker->start();
    EXPECT_TRUE(results.empty());
    EXPECT_TRUE(QFile::exists(folder.filePath(u"a/b/ggml-tiny.bin.part"_qs)));
}

TEST_F(DownloadTrackerTest, completesAtOnceIfAnOldPartialFileCannotBeRemoved)
{
    QDir(folder.path()).mkpath(u"ggml-tiny.bin.part/full"_qs);
    tracker->start();
    ASSERT_EQ(results.size(), 1u);
    EXPECT_EQ(error(0).localizedDescription(), u"“ggml-tiny.bin.part” couldn’t be removed."_qs);
    EXPECT_TRUE(QDir(folder.filePath(u"ggml-tiny.bin.part/full"_qs)).exists());
}

TEST_F(DownloadTrackerTest, completesAtOnceIfTheFolderCannotBeMade)
{
    ASSERT_TRUE(QFile(folder.filePath(u"Models"_qs)).open(QIODevice::WriteOnly));
    makeTracker(folder.filePath(u"Models/ggml-tiny.bin"_qs));
    tracker->start();
    ASSERT_EQ(results.size(), 1u);
    EXPECT_EQ(error(0).domain(), u"NSCocoaErrorDomain"_qs);
    EXPECT_EQ(error(0).code(), 516);
}

TEST_F(DownloadTrackerTest, completesAtOnceIfThePartialFileCannotBeMade)
{
    makeTracker(crampedFolder(folder.path()) + u"/ggml-tiny.bin"_qs);
    tracker->start();
    ASSERT_EQ(results.size(), 1u);
    EXPECT_EQ(error(0).code(), 514);
    EXPECT_TRUE(error(0).localizedDescription().startsWith(
        u"The file “ggml-tiny.bin.part” couldn’t be saved in the folder “"_qs));
}

} // namespace
