#include "models/models_settings_view_model.h"

#include "support/model_server.h"
#include "support/printing.h"
#include "support/waiting.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QElapsedTimer>
#include <QTest>
#include <QThread>

#include <csignal>
#include <vector>

#include <sys/resource.h>
#include <sys/stat.h>

using namespace sorvanta;

namespace {

constexpr int defaultSize = 1'000'000;

bool isDownloading(const Status &status)
{
    return std::holds_alternative<ModelStatus::Downloading>(status);
}

/// Limits the size of files for its lifetime, so that a write behind it fails.
class FileSizeLimit {
public:
    explicit FileSizeLimit(rlim_t size)
    {
        std::signal(SIGXFSZ, SIG_IGN);
        getrlimit(RLIMIT_FSIZE, &m_before);
        const rlimit limit{size, m_before.rlim_max};
        setrlimit(RLIMIT_FSIZE, &limit);
    }
    FileSizeLimit(const FileSizeLimit &) = delete;
    FileSizeLimit &operator=(const FileSizeLimit &) = delete;
    ~FileSizeLimit() { setrlimit(RLIMIT_FSIZE, &m_before); }

private:
    rlimit m_before = {};
};

class ModelDownloadTest : public testing::Test {
protected:
    static void SetUpTestSuite() { server = new ModelServer; }
    static void TearDownTestSuite()
    {
        delete server;
        server = nullptr;
    }

    void SetUp() override
    {
        ASSERT_TRUE(server->isRunning());
        models.emplace(folder.path());
        watch();
    }

    void watch()
    {
        QObject::connect(&*models, &ModelsSettingsViewModel::statusMapChanged, &*models, [this] {
            const Status status = models->status(tiny());
            if (statuses.empty() || statuses.back() != status)
                statuses.push_back(status);
        });
    }

    /// The model of the catalogue, to be fetched from a path of the server.
    static ModelInfo tiny(const QString &path = QString(), int index = 5)
    {
        ModelInfo model = modelCatalogue()[index];
        model.downloadURL = server->url(path);
        return model;
    }

    void download(const QString &path)
    {
        models->startDownload(tiny(path));
        EXPECT_TRUE(waitForEnd()) << path.toStdString();
    }
    bool waitForEnd()
    {
        return waitUntil([this] { return models->activeDownloads().isEmpty(); });
    }
    bool waitForBytes(qint64 count)
    {
        const auto hasCome = [this, count] {
            const Status status = models->status(tiny());
            return isDownloading(status) && std::get<ModelStatus::Downloading>(status).state.bytesReceived >= count;
        };
        return waitUntil(hasCome);
    }

    QString path(const QString &name) const { return folder.filePath(u"Sorvanta/Models/"_qs + name); }
    QStringList files() const { return QDir(path(QString())).entryList(QDir::Files); }
    static QByteArray contentOf(const QString &path)
    {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("cannot be read");
    }
    void makeFile(const QString &name, const QByteArray &bytes) const
    {
        QFile file(path(name));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes);
    }
    Status failed(const QString &text) const { return ModelStatus::Failed{text}; }

    static inline ModelServer *server = nullptr;
    QTemporaryDir folder;
    std::optional<ModelsSettingsViewModel> models;
    std::vector<Status> statuses;
};

TEST_F(ModelDownloadTest, bringsTheFileIntoItsPlace)
{
    models->startDownload(tiny(u"/whole"_qs));
    EXPECT_EQ(models->status(tiny()), Status(ModelStatus::Downloading{})) << "nothing received, expected or estimated";
    EXPECT_EQ(models->activeDownloads().keys(), QStringList{u"tiny"_qs});
    EXPECT_TRUE(models->downloadedModels().isEmpty());
    ASSERT_TRUE(waitForEnd());
    EXPECT_EQ(models->status(tiny()), Status(ModelStatus::Downloaded{path(u"ggml-tiny.bin"_qs)}));
    EXPECT_EQ(files(), QStringList{u"ggml-tiny.bin"_qs});
    EXPECT_TRUE(contentOf(path(u"ggml-tiny.bin"_qs)) == ModelServer::body(defaultSize));
    EXPECT_EQ(models->downloadedModels().size(), 1);
}

TEST_F(ModelDownloadTest, reportsTheFirstAndTheLastPiece)
{
    download(u"/whole"_qs);
    ASSERT_GE(statuses.size(), 4u);
    EXPECT_EQ(statuses[0], Status(ModelStatus::Downloading{}));
    const auto &first = std::get<ModelStatus::Downloading>(statuses[1]).state;
    EXPECT_LT(first.bytesReceived, defaultSize);
    EXPECT_EQ(first.totalBytesExpected, defaultSize);
    EXPECT_GT(first.estimatedSecondsRemaining.value(), 0);
    const auto &last = std::get<ModelStatus::Downloading>(statuses[statuses.size() - 2]).state;
    EXPECT_EQ(last, (DownloadState{defaultSize, defaultSize, 0.0}));
    EXPECT_TRUE(std::holds_alternative<ModelStatus::Downloaded>(statuses.back()));
}

TEST_F(ModelDownloadTest, reportsSeldom)
{
    QElapsedTimer timer;
    timer.start();
    download(u"/drip?delay=0.06"_qs);
    const double seconds = static_cast<double>(timer.elapsed()) / 1000;
    EXPECT_GT(seconds, 1.0);
    // The start, the first piece, one each 0.4 seconds, the last piece, the end.
    EXPECT_LE(static_cast<double>(statuses.size()), 4 + seconds / 0.4);
    EXPECT_GE(statuses.size(), 6u);
}

TEST_F(ModelDownloadTest, reportsBytesOfAnUnknownSize)
{
    for (const QString &page : {u"/unknown-size"_qs, u"/chunked"_qs, u"/gzip"_qs}) {
        statuses.clear();
        download(page);
        ASSERT_GE(statuses.size(), 3u);
        EXPECT_EQ(std::get<ModelStatus::Downloading>(statuses[1]).state.totalBytesExpected, -1);
        EXPECT_GT(std::get<ModelStatus::Downloading>(statuses[1]).state.bytesReceived, 0);
        EXPECT_TRUE(std::holds_alternative<ModelStatus::Downloaded>(statuses.back()));
        EXPECT_TRUE(contentOf(path(u"ggml-tiny.bin"_qs)) == ModelServer::body(defaultSize)) << page.toStdString();
    }
}

struct Failure {
    const char *path;
    const char *text;
};

void PrintTo(const Failure &failure, std::ostream *out)
{
    *out << failure.path;
}

class FailedModelDownload : public ModelDownloadTest, public testing::WithParamInterface<Failure> { };

TEST_P(FailedModelDownload, saysWhyLeavesNoFileAndCanBeTriedAgain)
{
    download(QString::fromLatin1(GetParam().path));
    EXPECT_EQ(models->status(tiny()), failed(QString::fromUtf8(GetParam().text)));
    EXPECT_EQ(statuses.back(), models->status(tiny()));
    EXPECT_EQ(files(), QStringList());
    download(u"/whole"_qs);
    EXPECT_EQ(models->status(tiny()), Status(ModelStatus::Downloaded{path(u"ggml-tiny.bin"_qs)}));
    EXPECT_TRUE(contentOf(path(u"ggml-tiny.bin"_qs)) == ModelServer::body(defaultSize));
}

TEST_P(FailedModelDownload, leavesAnOlderFileAsItWas)
{
    makeFile(u"ggml-tiny.bin"_qs, "old");
    download(QString::fromLatin1(GetParam().path));
    EXPECT_EQ(models->status(tiny()), failed(QString::fromUtf8(GetParam().text)));
    EXPECT_EQ(files(), QStringList{u"ggml-tiny.bin"_qs});
    EXPECT_EQ(contentOf(path(u"ggml-tiny.bin"_qs)), "old");
    models->refreshStatuses();
    EXPECT_EQ(models->status(tiny()), Status(ModelStatus::Downloaded{path(u"ggml-tiny.bin"_qs)}));
}

INSTANTIATE_TEST_SUITE_P(
    Answers, FailedModelDownload,
    testing::Values(
        Failure{"/status/404", "Server responded with 404"}, Failure{"/status/500", "Server responded with 500"},
        Failure{"/status/304", "Server responded with 304"}, Failure{"/status-stalls/503", "Server responded with 503"},
        Failure{"/short", "The network connection was lost."}, Failure{"/reset", "The network connection was lost."},
        Failure{"/redirect/17", "too many HTTP redirects"}, Failure{"/loop", "too many HTTP redirects"},
        Failure{"/insecure", "The resource could not be loaded because the App Transport Security policy "
                             "requires the use of a secure connection."},
        Failure{"/foreign", "unsupported URL"}, Failure{"/to-a-file", "unsupported URL"},
        Failure{"/nonsense", "There was a bad response from the server."},
        Failure{"/claims/-5", "There was a bad response from the server."},
        Failure{"/claims/99999999999999999999", "There was a bad response from the server."},
        Failure{"/claims/9223372036854775807", "The network connection was lost."},
        Failure{"/endless-head", "There was a bad response from the server."},
        Failure{"/endless-header", "There was a bad response from the server."},
        Failure{"/nul-in-head", "There was a bad response from the server."}));

TEST_F(ModelDownloadTest, anAnswerWithoutContentIsAnEmptyFile)
{
    download(u"/no-content"_qs);
    EXPECT_EQ(models->status(tiny()), Status(ModelStatus::Downloaded{path(u"ggml-tiny.bin"_qs)}))
        << "neither size nor content of a file is checked";
    EXPECT_EQ(contentOf(path(u"ggml-tiny.bin"_qs)), "");
}

TEST_F(ModelDownloadTest, aFailureToWriteIsToldFirstAndTheCancellationThatItCausesLast)
{
    const FileSizeLimit limit(300'000);
    models->startDownload(tiny(u"/whole"_qs));
    ASSERT_TRUE(waitUntil([this] { return models->status(tiny()) == failed(u"cancelled"_qs); }));
    ASSERT_GE(statuses.size(), 2u);
    EXPECT_EQ(statuses[statuses.size() - 2],
              failed(u"The file “ggml-tiny.bin.part” couldn’t be saved in the folder “Models”."_qs));
    EXPECT_TRUE(models->activeDownloads().isEmpty());
    EXPECT_EQ(files(), QStringList());
}

TEST_F(ModelDownloadTest, takesTheAnnouncedPartOfALongerBody)
{
    download(u"/surplus"_qs);
    EXPECT_EQ(models->status(tiny()), Status(ModelStatus::Downloaded{path(u"ggml-tiny.bin"_qs)}));
    EXPECT_TRUE(contentOf(path(u"ggml-tiny.bin"_qs)) == ModelServer::body(defaultSize));
}

TEST_F(ModelDownloadTest, followsRedirectsToTheFile)
{
    download(u"/redirect/16"_qs);
    EXPECT_TRUE(contentOf(path(u"ggml-tiny.bin"_qs)) == ModelServer::body(defaultSize));
}

TEST_F(ModelDownloadTest, ignoresAStalePartialFileUntilTheNextTryRemovesIt)
{
    makeFile(u"ggml-tiny.bin.part"_qs, QByteArray(2 * defaultSize, 's'));
    models->refreshStatuses();
    EXPECT_EQ(models->status(tiny()), Status(ModelStatus::NotDownloaded{}));
    models->startDownload(tiny(u"/whole"_qs));
    EXPECT_LE(QFileInfo(path(u"ggml-tiny.bin.part"_qs)).size(), defaultSize) << "it begins anew, from the first byte";
    ASSERT_TRUE(waitForEnd());
    EXPECT_EQ(files(), QStringList{u"ggml-tiny.bin"_qs});
    EXPECT_TRUE(contentOf(path(u"ggml-tiny.bin"_qs)) == ModelServer::body(defaultSize));
}

TEST_F(ModelDownloadTest, replacesAnOlderFile)
{
    makeFile(u"ggml-tiny.bin"_qs, QByteArray(2 * defaultSize, 'o'));
    download(u"/whole"_qs);
    EXPECT_TRUE(contentOf(path(u"ggml-tiny.bin"_qs)) == ModelServer::body(defaultSize));
    EXPECT_EQ(files(), QStringList{u"ggml-tiny.bin"_qs});
}

TEST_F(ModelDownloadTest, aRefreshLeavesARunningDownloadAlone)
{
    models->startDownload(tiny(u"/stall"_qs));
    ASSERT_TRUE(waitForBytes(1));
    const Status before = models->status(tiny());
    models->refreshStatuses();
    EXPECT_EQ(models->status(tiny()), before);
    EXPECT_EQ(models->status(modelCatalogue()[0]), Status(ModelStatus::NotDownloaded{}));
}

TEST_F(ModelDownloadTest, aRefreshFindsAnOlderFileWhileTheDownloadGoesOn)
{
    makeFile(u"ggml-tiny.bin"_qs, "old");
    models->startDownload(tiny(u"/drip?delay=0.1"_qs));
    EXPECT_TRUE(models->downloadedModels().isEmpty());
    ASSERT_TRUE(waitForBytes(1));
    models->refreshStatuses();
    EXPECT_EQ(models->downloadedModels().size(), 1);
    EXPECT_EQ(models->status(tiny()), Status(ModelStatus::Downloaded{path(u"ggml-tiny.bin"_qs)}));
    EXPECT_FALSE(models->activeDownloads().isEmpty());
    EXPECT_TRUE(waitForBytes(2)) << "the next report shows it again";
    ASSERT_TRUE(waitForEnd());
    EXPECT_TRUE(contentOf(path(u"ggml-tiny.bin"_qs)) == ModelServer::body(defaultSize));
}

TEST_F(ModelDownloadTest, withoutAFolderForDataItFailsAtOnce)
{
    models.emplace(std::nullopt);
    models->startDownload(tiny(u"/whole"_qs));
    EXPECT_EQ(models->status(tiny()), failed(u"Application Support directory unavailable."_qs));
    EXPECT_TRUE(models->activeDownloads().isEmpty());
}

TEST_F(ModelDownloadTest, withAFolderThatCannotBeMadeItFailsAtOnce)
{
    const QString other = folder.filePath(u"other"_qs);
    QDir().mkpath(other);
    ASSERT_TRUE(QFile(other + u"/Sorvanta"_qs).open(QIODevice::WriteOnly));
    models.emplace(other);
    models->startDownload(tiny(u"/whole"_qs));
    EXPECT_EQ(models->status(tiny()), failed(u"The file “Sorvanta” couldn’t be saved in the folder “other” because a "
                                             u"file with the same name already exists."_qs));
    EXPECT_TRUE(models->activeDownloads().isEmpty());
}

TEST_F(ModelDownloadTest, aFailureToStartIsToldThroughTheMainLoop)
{
    QDir().mkpath(path(u"ggml-tiny.bin.part/full"_qs));
    const auto requests = server->requests().size();
    models->startDownload(tiny(u"/whole"_qs));
    EXPECT_TRUE(isDownloading(models->status(tiny())));
    EXPECT_EQ(models->activeDownloads().size(), 1);
    ASSERT_TRUE(waitForEnd());
    EXPECT_EQ(models->status(tiny()), failed(u"“ggml-tiny.bin.part” couldn’t be removed."_qs));
    EXPECT_EQ(server->requests().size(), requests) << "nobody was asked";
}

TEST_F(ModelDownloadTest, aFileThatCannotTakeItsPlaceIsAFailure)
{
    QDir().mkpath(path(u"ggml-tiny.bin/full"_qs));
    download(u"/whole"_qs);
    EXPECT_EQ(models->status(tiny()), failed(u"“ggml-tiny.bin” couldn’t be removed."_qs));
    EXPECT_EQ(files(), QStringList()) << "the partial file has gone";
    EXPECT_TRUE(QDir(path(u"ggml-tiny.bin/full"_qs)).exists());
}

TEST_F(ModelDownloadTest, makesItsFolderForTheUserAlone)
{
    ASSERT_TRUE(QDir(folder.filePath(u"Sorvanta"_qs)).removeRecursively());
    ::umask(022);
    download(u"/whole"_qs);
    struct stat status { };
    ASSERT_EQ(::stat(QFile::encodeName(path(QString())).constData(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777, 0700u);
    ASSERT_EQ(::stat(QFile::encodeName(path(u"ggml-tiny.bin"_qs)).constData(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777, 0600u);
}

TEST_F(ModelDownloadTest, fetchesTheAddressOfTheModelByAPlainGet)
{
    download(u"/OrvaneKest/whisper/resolve/main/ggml-tiny.bin?download=true"_qs);
    const ModelServer::Request request = server->requests().last();
    EXPECT_TRUE(
        request.head.startsWith(u"GET /OrvaneKest/whisper/resolve/main/ggml-tiny.bin?download=true HTTP/1.1\r\n"_qs));
    EXPECT_FALSE(request.head.contains(u"Sorvanta"_qs, Qt::CaseInsensitive));
}

TEST_F(ModelDownloadTest, itIsTheCallerWhoPreventsASecondStart)
{
    const auto requests = server->requests().size();
    models->startDownload(tiny(u"/stall"_qs));
    const auto first = models->activeDownloads()[u"tiny"_qs];
    ASSERT_TRUE(waitForBytes(1));
    models->startDownload(tiny(u"/whole"_qs));
    EXPECT_NE(models->activeDownloads()[u"tiny"_qs], first) << "the new one stands in the place of the old one";
    EXPECT_EQ(models->status(tiny()), Status(ModelStatus::Downloading{}));
    ASSERT_TRUE(waitForEnd());
    EXPECT_EQ(server->requests().size(), requests + 2);
    EXPECT_EQ(models->status(tiny()), Status(ModelStatus::Downloaded{path(u"ggml-tiny.bin"_qs)}));
    EXPECT_TRUE(contentOf(path(u"ggml-tiny.bin"_qs)) == ModelServer::body(defaultSize));
}

TEST_F(ModelDownloadTest, aReplacedDownloadSaysNoMoreAndTouchesNoFileOfTheNextOne)
{
    models->startDownload(tiny(u"/drip?delay=0.05&size=3000000"_qs));
    ASSERT_TRUE(waitForBytes(1));
    for (int i = 0; i < 3; ++i)
        models->startDownload(tiny(u"/drip?delay=0.05"_qs));
    statuses.clear();
    ASSERT_TRUE(waitForEnd());
    for (const Status &status : statuses) {
        const auto *downloading = std::get_if<ModelStatus::Downloading>(&status);
        EXPECT_TRUE(!downloading || downloading->state.totalBytesExpected == defaultSize) << "a report of the old one";
        EXPECT_FALSE(std::holds_alternative<ModelStatus::Failed>(status));
    }
    EXPECT_EQ(models->status(tiny()), Status(ModelStatus::Downloaded{path(u"ggml-tiny.bin"_qs)}));
    EXPECT_TRUE(contentOf(path(u"ggml-tiny.bin"_qs)) == ModelServer::body(defaultSize));
    EXPECT_EQ(files(), QStringList{u"ggml-tiny.bin"_qs});
}

TEST_F(ModelDownloadTest, aFailedReplacementCanBeTriedAgain)
{
    models->startDownload(tiny(u"/silent"_qs));
    models->startDownload(tiny(u"/status/404"_qs));
    ASSERT_TRUE(waitForEnd());
    EXPECT_EQ(models->status(tiny()), failed(u"Server responded with 404"_qs));
    EXPECT_EQ(files(), QStringList());
    download(u"/whole"_qs);
    EXPECT_EQ(models->status(tiny()), Status(ModelStatus::Downloaded{path(u"ggml-tiny.bin"_qs)}));
}

TEST_F(ModelDownloadTest, retriesInTheVeryMomentOfTheFailure)
{
    for (int i = 0; i < 40; ++i) {
        download(u"/status-stalls/503"_qs);
        ASSERT_EQ(models->status(tiny()), failed(u"Server responded with 503"_qs));
        download(u"/whole?size=1000"_qs);
        ASSERT_EQ(models->status(tiny()), Status(ModelStatus::Downloaded{path(u"ggml-tiny.bin"_qs)})) << i;
        models->deleteLocalCopy(tiny());
    }
}

TEST_F(ModelDownloadTest, sixDownloadsAtOnceKeepApart)
{
    for (int i = 0; i < 6; ++i)
        models->startDownload(tiny(u"/drip?delay=0.02&size=%1"_qs.arg((i + 1) * 100'000), i));
    EXPECT_EQ(models->activeDownloads().size(), 6);
    ASSERT_TRUE(waitForEnd());
    EXPECT_EQ(models->downloadedModels().size(), 6);
    for (int i = 0; i < 6; ++i)
        EXPECT_TRUE(contentOf(path(modelCatalogue()[i].fileName)) == ModelServer::body((i + 1) * 100'000)) << i;
}

TEST_F(ModelDownloadTest, oneFailureLeavesTheOtherDownloadsAlone)
{
    models->startDownload(tiny(u"/drip?delay=0.02"_qs, 4));
    models->startDownload(tiny(u"/status/404"_qs));
    ASSERT_TRUE(waitForEnd());
    EXPECT_EQ(models->status(tiny()), failed(u"Server responded with 404"_qs));
    EXPECT_EQ(models->status(modelCatalogue()[4]), Status(ModelStatus::Downloaded{path(u"ggml-small.bin"_qs)}));
}

TEST_F(ModelDownloadTest, aDownloadOutlivesItsViewModelWithoutAWord)
{
    models->startDownload(tiny(u"/drip?delay=0.02"_qs));
    ASSERT_TRUE(waitForBytes(1));
    models.reset();
    statuses.clear();
    EXPECT_TRUE(waitUntil([this] { return QFile::exists(path(u"ggml-tiny.bin"_qs)); }));
    QTest::qWait(50);
    EXPECT_TRUE(statuses.empty());
    EXPECT_EQ(files(), QStringList{u"ggml-tiny.bin"_qs});
}

TEST_F(ModelDownloadTest, everyChangeIsToldOnTheMainThread)
{
    bool wasElsewhere = false;
    QObject::connect(
        &*models, &ModelsSettingsViewModel::statusMapChanged, &*models,
        [&wasElsewhere] {
            wasElsewhere = wasElsewhere || QThread::currentThread() != QCoreApplication::instance()->thread();
        },
        Qt::DirectConnection);
    download(u"/whole"_qs);
    EXPECT_FALSE(wasElsewhere);
}

} // namespace
