#include "file_screen_test.h"
#include "support/file_content.h"

#include <QFile>

using namespace sorvanta;

namespace {

class FileScreenHistory : public FileScreenTest {
protected:
    const TranscriptionHistoryEntry &onlyEntry()
    {
        if (bench.history.entries().size() != 1)
            throw std::runtime_error("There is not one entry.");
        return bench.history.entries().first();
    }
};

TEST_F(FileScreenHistory, aFinishedRunIsKeptWithAllThatIsKnownOfIt)
{
    bench.installModel(u"ggml-large-v3-turbo.bin"_qs, twoLines);
    screen->appear();
    screen->language()->choose(17);
    choose(u"/music/Harbour walk.m4a"_qs);
    screen->start();
    waitForStatus(u"Done"_qs);
    const TranscriptionHistoryEntry &entry = onlyEntry();
    EXPECT_EQ(entry.text, u"- One\nTwo"_qs);
    EXPECT_EQ(entry.sourceLabel, u"/music/Harbour walk.m4a"_qs);
    EXPECT_EQ(entry.model, bench.models.downloadedModels().first().first.name);
    EXPECT_EQ(entry.model, u"Large V3 Turbo"_qs);
    EXPECT_EQ(entry.language, u"de"_qs);
    EXPECT_FALSE(entry.diarization);
    EXPECT_FALSE(entry.recordingPath);
    EXPECT_EQ(contentOf(entry.txtPath), "- One\nTwo");
    ASSERT_TRUE(entry.srtPath);
    EXPECT_EQ(contentOf(*entry.srtPath), "1\n00:00:00,000 --> 00:00:15,000\n- One\n\n"
                                         "2\n00:00:15,000 --> 00:00:30,000\nTwo\n");
    EXPECT_FALSE(bench.history.errorMessage());
}

TEST_F(FileScreenHistory, theLanguageIsTheOneThatTheRunBeganWith)
{
    useModel(twoLines + bench.engine.awaitGate());
    screen->language()->setLanguage(u"  EN "_qs);
    choose(u"/music/a.wav"_qs);
    screen->start();
    waitFor([this] { return run().isTranscribing(); });
    screen->language()->setLanguage(u"fr"_qs);
    bench.engine.openGate();
    waitForStatus(u"Done"_qs);
    EXPECT_EQ(onlyEntry().language, u"en"_qs);
}

TEST_F(FileScreenHistory, withStrippingTheDashesAreGoneFromTextAndSubtitles)
{
    run().setStripDashes(true);
    transcribe(u"/music/a.wav"_qs, twoLines);
    EXPECT_EQ(onlyEntry().text, u"One\nTwo"_qs);
    EXPECT_TRUE(contentOf(*onlyEntry().srtPath).contains("\nOne\n"));
    EXPECT_EQ(run().transcript(), u"- One\nTwo"_qs);
}

TEST_F(FileScreenHistory, withoutTimedLinesThereAreNoSubtitles)
{
    transcribe(u"/music/a.wav"_qs, "print only words%0A\n");
    EXPECT_EQ(onlyEntry().text, u"only words"_qs);
    EXPECT_FALSE(onlyEntry().srtPath);
}

TEST_F(FileScreenHistory, anEngineThatSaidNothingLeavesNoEntry)
{
    transcribe(u"/music/a.wav"_qs, {});
    EXPECT_TRUE(bench.history.entries().isEmpty());
    EXPECT_EQ(run().transcript(), QString());
    EXPECT_FALSE(run().error());
}

TEST_F(FileScreenHistory, aTextOfBlanksLeavesNoEntry)
{
    transcribe(u"/music/a.wav"_qs, "print [x] %E2%80%8B%0A[x]  %0A\n");
    EXPECT_NE(run().rawOutput(), QString());
    EXPECT_TRUE(bench.history.entries().isEmpty());
}

TEST_F(FileScreenHistory, aModelThatWentDuringTheRunIsUnknown)
{
    const QString model = bench.installModel(u"ggml-base.bin"_qs, twoLines + bench.engine.awaitGate());
    screen->appear();
    choose(u"/music/a.wav"_qs);
    screen->start();
    waitFor([this] { return !run().rawOutput().isEmpty(); });
    QFile::remove(model);
    bench.models.refreshStatuses();
    bench.engine.openGate();
    waitForStatus(u"Done"_qs);
    EXPECT_EQ(onlyEntry().model, u"Unknown model"_qs);
}

TEST_F(FileScreenHistory, theSameFileTwiceMakesTwoEntries)
{
    transcribe(u"/music/a.wav"_qs, twoLines);
    choose(u"/music/a.wav"_qs);
    screen->start();
    waitForStatus(u"Done"_qs);
    EXPECT_EQ(bench.history.entries().size(), 2);
}

TEST_F(FileScreenHistory, aHistoryThatCannotBeWrittenIsTheHistorysConcern)
{
    QDir(bench.history.transcriptsDirectory()).removeRecursively();
    QFile inTheWay(bench.history.transcriptsDirectory());
    ASSERT_TRUE(inTheWay.open(QIODevice::WriteOnly));
    transcribe(u"/music/a.wav"_qs, twoLines);
    ASSERT_TRUE(bench.history.errorMessage());
    EXPECT_TRUE(bench.history.errorMessage()->startsWith(u"Unable to save history: "_qs))
        << bench.history.errorMessage()->toStdString();
    EXPECT_FALSE(run().error());
    EXPECT_EQ(run().status(), u"Done"_qs);
    EXPECT_EQ(run().transcript(), u"- One\nTwo"_qs);
}

} // namespace
