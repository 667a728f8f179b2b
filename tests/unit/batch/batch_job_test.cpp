#include "screens/batch/batch_job.h"
#include "support/fake_engine_bundle.h"
#include "support/posted_work.h"
#include "support/printing.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QTemporaryDir>

using namespace sorvanta;
using testing::ElementsAre;

namespace {

/// A job of two files that go to the engine as they stand. What it posts is heard when it is done.
class BatchJobTest : public testing::Test {
protected:
    /// @param commands what the engine does
    /// @param isStopping what the job reads
    void run(const QByteArray &commands, const std::function<bool()> &isStopping)
    {
        BatchJob job({.files = {QUrl::fromLocalFile(u"/music/a.wav"_qs), QUrl::fromLocalFile(u"/music/b.wav"_qs)},
                      .modelPath = model(commands),
                      .language = u"auto"_qs,
                      .engine = {bundle.resourceFolder(), false}},
                     AudioPreparer(TemporaryFiles()), report(isStopping));
        job.run();
        EXPECT_EQ(heard, QStringList()) << "no post is waited for";
        runPosted();
    }

    FakeEngineBundle bundle;
    QStringList heard;

private:
    QString model(const QByteArray &commands) const
    {
        const QString path = folder.filePath(u"model"_qs);
        QFile file(path);
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(commands);
        return path;
    }
    BatchJob::Report report(const std::function<bool()> &isStopping)
    {
        return {
            .isStopping = isStopping,
            .preparation = {.status = [] { return QString(); },
                            .setStatus = [this](const QString &status) { heard << status; },
                            .error = [] { return std::nullopt; },
                            .setError = [this](const QString &error) { heard << error; },
                            .endRun = [this] { heard << u"preparation failed"_qs; },
                            .refreshPlaybackState = {}},
            .fileBegan = [this](qsizetype index) { heard << u"began %1"_qs.arg(index); },
            .processCreated = [](const std::shared_ptr<ChildProcess> &) {},
            .outputCame =
                [this](qsizetype index, const QString &piece) {
                    heard << u"%1 says %2"_qs.arg(QString::number(index), piece);
                },
            .fileEnded = [this](qsizetype index, const QString &) { heard << u"ended %1"_qs.arg(index); },
            .fileFailed = [this](qsizetype index, const std::exception_ptr &) { heard << u"failed %1"_qs.arg(index); },
            .batchEnded = [this] { heard << u"batch ended"_qs; }};
    }

    QTemporaryDir folder;
};

TEST_F(BatchJobTest, tellsWhatHappensInItsOrder)
{
    run("print x\n", [] { return false; });
    EXPECT_THAT(heard, ElementsAre(u"Audio detected, no conversion needed for a.wav."_qs, u"began 0"_qs, u"0 says x"_qs,
                                   u"ended 0"_qs, u"Audio detected, no conversion needed for b.wav."_qs, u"began 1"_qs,
                                   u"1 says x"_qs, u"ended 1"_qs, u"batch ended"_qs));
}

TEST_F(BatchJobTest, stoppedBeforeTheFirstFileTouchesNone)
{
    run("print x\n", [] { return true; });
    EXPECT_THAT(heard, ElementsAre(u"batch ended"_qs));
}

TEST_F(BatchJobTest, stoppedBetweenTwoFilesLeavesTheSecondAloneAndComesToTheEndOfTheBatch)
{
    int reads = 0;
    // The first file has three: before it, when it is prepared, and when its engine has ended.
    run("print x\n", [&reads] { return ++reads > 3; });
    EXPECT_THAT(heard, ElementsAre(u"Audio detected, no conversion needed for a.wav."_qs, u"began 0"_qs, u"0 says x"_qs,
                                   u"ended 0"_qs, u"batch ended"_qs));
}

TEST_F(BatchJobTest, stoppedDuringARunFailsWithThatFileAndComesToNoEndOfTheBatch)
{
    int reads = 0;
    run("print x\n", [&reads] { return ++reads > 2; });
    EXPECT_THAT(heard, ElementsAre(u"Audio detected, no conversion needed for a.wav."_qs, u"began 0"_qs, u"0 says x"_qs,
                                   u"failed 0"_qs));
}

} // namespace
