#include "models/models_settings_view_model.h"

#include "support/model_server.h"
#include "support/printing.h"
#include "support/waiting.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QElapsedTimer>
#include <QProcess>
#include <QTest>

using namespace sorvanta;

namespace {

constexpr int size = 1'000'000;

/// A process that downloads, and is ended in the midst of that.
class EndInMidTransfer : public testing::Test {
protected:
    void SetUp() override { ASSERT_TRUE(server.isRunning()); }

    /// @return whether so many bytes have come
    bool startUntil(const QString &path, qint64 bytes)
    {
        downloader.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        downloader.start(MODEL_DOWNLOADER, {folder.path(), server.url(path).toString()});
        QElapsedTimer timer;
        timer.start();
        while (timer.elapsed() < patience) {
            while (downloader.canReadLine()) {
                if (downloader.readLine().trimmed().toLongLong() >= bytes)
                    return true;
            }
            downloader.waitForReadyRead(100);
        }
        return false;
    }

    QStringList files() const { return QDir(folder.filePath(u"Sorvanta/Models"_qs)).entryList(QDir::Files); }

    /// What the next start of the application makes of it.
    void expectThatNothingCountsAndARetryWorks()
    {
        EXPECT_EQ(files(), QStringList{u"ggml-tiny.bin.part"_qs});
        ModelInfo model = modelCatalogue().last();
        model.downloadURL = server.url(u"/whole"_qs);
        ModelsSettingsViewModel models(folder.path());
        EXPECT_EQ(models.status(model), Status(ModelStatus::NotDownloaded{}));
        models.startDownload(model);
        ASSERT_TRUE(waitUntil([&models] { return models.activeDownloads().isEmpty(); }));
        EXPECT_TRUE(std::holds_alternative<ModelStatus::Downloaded>(models.status(model)));
        EXPECT_EQ(files(), QStringList{u"ggml-tiny.bin"_qs});
        QFile file(folder.filePath(u"Sorvanta/Models/ggml-tiny.bin"_qs));
        ASSERT_TRUE(file.open(QIODevice::ReadOnly));
        EXPECT_TRUE(file.readAll() == ModelServer::body(size));
    }

    ModelServer server;
    QTemporaryDir folder;
    QProcess downloader;
};

TEST_F(EndInMidTransfer, aKilledApplicationLeavesAPartialFileThatCountsForNothing)
{
    ASSERT_TRUE(startUntil(u"/drip?delay=0.2"_qs, 1));
    downloader.kill();
    ASSERT_TRUE(downloader.waitForFinished());
    EXPECT_EQ(downloader.exitStatus(), QProcess::CrashExit);
    expectThatNothingCountsAndARetryWorks();
}

struct Moment {
    const char *path;
    qint64 bytes;
};

void PrintTo(const Moment &moment, std::ostream *out)
{
    *out << moment.path;
}

class QuitInMidTransfer : public EndInMidTransfer, public testing::WithParamInterface<Moment> { };

TEST_P(QuitInMidTransfer, waitsForNoServerAndLeavesAPartialFileThatCountsForNothing)
{
    ASSERT_TRUE(startUntil(QString::fromLatin1(GetParam().path), GetParam().bytes));
    QTest::qWait(200);
    downloader.closeWriteChannel();
    ASSERT_TRUE(downloader.waitForFinished(patience));
    EXPECT_EQ(downloader.exitStatus(), QProcess::NormalExit);
    EXPECT_EQ(downloader.exitCode(), 0);
    expectThatNothingCountsAndARetryWorks();
}

INSTANTIATE_TEST_SUITE_P(Moments, QuitInMidTransfer,
                         testing::Values(Moment{"/drip?delay=0.1", 1}, Moment{"/stall", 1}, Moment{"/silent", 0},
                                         Moment{"/whole?size=100000000000", 1}));

} // namespace
