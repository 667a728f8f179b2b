#include "batch_screen_test.h"
#include "support/file_content.h"

#include <QFile>

using namespace sorvanta;

namespace {

class BatchHistory : public BatchScreenTest {
protected:
    const QList<TranscriptionHistoryEntry> &entries() { return bench.history.entries(); }
};

TEST_F(BatchHistory, eachFinishedFileIsKeptWithAllThatIsKnownOfIt)
{
    bench.installModel(u"ggml-large-v3-turbo.bin"_qs, twoLines);
    screen->appear();
    screen->language()->setLanguage(u" EN "_qs);
    choose({u"/music/a.wav"_qs, u"/video/a.wav"_qs});
    screen->start();
    screen->language()->setLanguage(u"fr"_qs);
    waitForEnd();
    ASSERT_EQ(entries().size(), 2) << "files named alike make two entries";
    EXPECT_EQ(entries()[1].sourceLabel, u"/music/a.wav"_qs);
    EXPECT_EQ(entries()[0].sourceLabel, u"/video/a.wav"_qs);
    for (const TranscriptionHistoryEntry &entry : entries()) {
        EXPECT_EQ(entry.text, u"- One\nTwo"_qs);
        EXPECT_EQ(entry.model, u"Large V3 Turbo"_qs);
        EXPECT_EQ(entry.language, u"en"_qs) << "the one that the batch began with";
        EXPECT_FALSE(entry.diarization);
        EXPECT_FALSE(entry.recordingPath);
        EXPECT_EQ(contentOf(entry.txtPath), "- One\nTwo");
        ASSERT_TRUE(entry.srtPath);
        EXPECT_EQ(contentOf(*entry.srtPath), "1\n00:00:00,000 --> 00:00:15,000\n- One\n\n"
                                             "2\n00:00:15,000 --> 00:00:30,000\nTwo\n");
    }
}

TEST_F(BatchHistory, anEntryIsThereAsSoonAsItsFileHasEnded)
{
    start({u"/music/a.wav"_qs, u"/music/b.wav"_qs}, twoLines + "only b.wav\nsleep 60000\n");
    waitFor([this] { return status(0) == FileStatus::done; });
    EXPECT_EQ(entries().size(), 1);
}

TEST_F(BatchHistory, withStrippingTheDashesAreGone)
{
    screen->pane()->setStripDashes(true);
    transcribe({u"/music/a.wav"_qs}, twoLines);
    ASSERT_EQ(entries().size(), 1);
    EXPECT_EQ(entries()[0].text, u"One\nTwo"_qs);
    EXPECT_TRUE(contentOf(*entries()[0].srtPath).contains("\nOne\n"));
    EXPECT_EQ(result(0).transcript(), u"- One\nTwo"_qs);
}

TEST_F(BatchHistory, withoutTimedLinesThereAreNoSubtitles)
{
    transcribe({u"/music/a.wav"_qs}, "print only words%0A\n");
    ASSERT_EQ(entries().size(), 1);
    EXPECT_EQ(entries()[0].text, u"only words"_qs);
    EXPECT_FALSE(entries()[0].srtPath);
}

TEST_F(BatchHistory, aTextOfBlanksLeavesNoEntry)
{
    transcribe({u"/music/a.wav"_qs}, "print [x] %E2%80%8B%0A[x]  %0A\n");
    EXPECT_NE(result(0).rawOutput(), QString());
    EXPECT_TRUE(entries().isEmpty());
    EXPECT_EQ(status(0), FileStatus::done);
}

TEST_F(BatchHistory, aModelThatWentDuringTheBatchIsUnknown)
{
    const QString model = bench.installModel(u"ggml-base.bin"_qs, twoLines + bench.engine.awaitGate());
    screen->appear();
    choose({u"/music/a.wav"_qs});
    screen->start();
    waitFor([this] { return !run().rawOutput().isEmpty(); });
    QFile::remove(model);
    bench.models.refreshStatuses();
    bench.engine.openGate();
    waitForEnd();
    ASSERT_EQ(entries().size(), 1);
    EXPECT_EQ(entries()[0].model, u"Unknown model"_qs);
}

TEST_F(BatchHistory, aHistoryThatCannotBeWrittenDoesNotStopTheBatch)
{
    QDir(bench.history.transcriptsDirectory()).removeRecursively();
    QFile inTheWay(bench.history.transcriptsDirectory());
    ASSERT_TRUE(inTheWay.open(QIODevice::WriteOnly));
    transcribe(threeFiles, twoLines);
    ASSERT_TRUE(bench.history.errorMessage());
    EXPECT_TRUE(bench.history.errorMessage()->startsWith(u"Unable to save history: "_qs));
    EXPECT_FALSE(run().error());
    EXPECT_EQ(run().status(), u"Done"_qs);
    EXPECT_EQ(status(2), FileStatus::done);
}

} // namespace
