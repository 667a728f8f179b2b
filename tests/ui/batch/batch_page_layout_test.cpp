#include "batch_page_test.h"
#include "support/held_file.h"
#include "support/silent_media.h"
#include "ui/screens/shown_texts.h"

namespace sorvanta {

namespace {

struct Size {
    int width;
    int height;
};

class BatchPageLayout : public BatchPageTest, public testing::WithParamInterface<Size> {
protected:
    void show() { showPage(GetParam().width - 260, GetParam().height); }

    QString named(const QString &name) const { return QString("%1-%2").arg(name).arg(GetParam().width); }

    void expectThatNothingOverlaps()
    {
        settle();
        sorvanta::expectThatNothingOverlaps(root);
    }
    void expectThatNothingOverlapsAllTheWayDown(const QString &name)
    {
        scrollTo(0);
        expectThatNothingOverlaps();
        savePicture(named(name));
        for (double y = root->height() / 2; y < scrollEnd(); y += root->height() / 2) {
            scrollTo(y);
            expectThatNothingOverlaps();
        }
        scrollTo(scrollEnd());
        expectThatNothingOverlaps();
        savePicture(named(name + "-end"));
        setDark(true);
        settle();
        savePicture(named(name + "-end-dark"));
        scrollTo(0);
        settle();
        savePicture(named(name + "-dark"));
    }
    static QStringList longNames()
    {
        QStringList paths;
        for (int i = 0; i < 7; ++i)
            paths << "/music/" + QString("A very long name of a recording ").repeated(7) + QString::number(i) + ".m4a";
        return paths;
    }
};

TEST_P(BatchPageLayout, withoutAModelAndFiles)
{
    show();
    expectThatNothingOverlapsAllTheWayDown("04-batch-empty");
}

TEST_P(BatchPageLayout, withResults)
{
    show();
    transcribe(fiveFiles, twoOfFive);
    screen.results()->selectRow(1);
    screen.pane()->search()->setSearchText("weir");
    screen.pane()->search()->nextMatch();
    run().setError(std::nullopt);
    run().setStatus("Saved TXT to Lecture 04 – Rivers and weirs_transcription.txt");
    expectThatNothingOverlapsAllTheWayDown("04-batch-results");
    EXPECT_GE(item("transcriptLines")->height(), 158);
}

TEST_P(BatchPageLayout, withVeryLongNames)
{
    show();
    transcribe(longNames(), twoOfFive);
    expectThatNothingOverlapsAllTheWayDown("04-batch-long-names");
    EXPECT_LE(place("selectedStatus").right(), root->width() - 24);
    EXPECT_LE(place("moreFiles").right(), root->width() - 24);
}

TEST_P(BatchPageLayout, duringABatchWithLongNames)
{
    show();
    start(longNames(), twoOfFive + "only\nsleep 60000\n");
    waitFor([this] { return run().progress() == 0.42 / 7; });
    expectThatNothingOverlapsAllTheWayDown("04-batch-running-long");
    EXPECT_GE(item("progressBar")->width(), 60);
    EXPECT_TRUE(item("fileLine")->property("truncated").toBool() || root->width() > 1400);
}

TEST_P(BatchPageLayout, duringAConversion)
{
    const QString film = bench.file(QString("A very long name of a film ").repeated(8) + ".mp4");
    writeWav(film, 1.0);
    const HeldFile held(film);
    show();
    start({film}, {});
    waitFor([this] { return run().status().startsWith("Converting A very long name"); });
    ASSERT_FALSE(run().hasProgress());
    expectThatNothingOverlaps();
    savePicture(named("04-batch-converting"));
    scrollTo(scrollEnd());
    expectThatNothingOverlaps();
    savePicture(named("04-batch-converting-end"));
    EXPECT_TRUE(isShown("waitingText"));
    EXPECT_TRUE(item("waitingText")->property("truncated").toBool());
    EXPECT_FALSE(run().hasProgress()) << "all of this was seen during the conversion";
    run().stopRun();
}

TEST_P(BatchPageLayout, withAVeryLongError)
{
    QByteArray log;
    for (int line = 0; line < 60; ++line)
        log += "complain whisper_init%3A line " + QByteArray::number(line)
               + " of a log that tells at length what went wrong while the engine was at work%0A\n";
    show();
    transcribe(fiveFiles, "print [x] One%0A\n" + log + "exit 1\n");
    expectThatNothingOverlapsAllTheWayDown("04-batch-error");
    EXPECT_GT(text("errorText").size(), 4000);
    EXPECT_LE(item("errorView")->height(), 162) << "the rest is scrolled to";
    EXPECT_LE(item("selectedErrorView")->height(), 144);
}

INSTANTIATE_TEST_SUITE_P(, BatchPageLayout, testing::Values(Size{1200, 700}, Size{720, 480}));

using BatchPagePlaces = BatchPageTest;

TEST_F(BatchPagePlaces, areThoseOfTheDrawing)
{
    useModel(twoOfFive);
    choose(fiveFiles);
    showPage(); // 260 to the right of where the window draws it
    EXPECT_EQ(place("dropCard"), QRectF(62, 120, 816, 190));
    EXPECT_EQ(place("chooseFilesButton").top(), 266);
    EXPECT_EQ(place("clearFilesButton").right(), 862);
    EXPECT_EQ(place("modelPicker"), QRectF(582, 338, 280, 32));
    EXPECT_EQ(place("startButton"), QRectF(62, 455, 160, 32));
    screen.start();
    waitFor([this] { return !run().isTranscribing(); });
    run().setError(std::nullopt);
    run().setStatus("Saved");
    screen.results()->selectRow(1);
    settle();
    EXPECT_EQ(place("statusText").top(), 487);
    EXPECT_EQ(place("exportAllMenu").top(), 535);
    EXPECT_EQ(place("clearAllButton").right(), 878);
    EXPECT_EQ(place("result-0").topLeft(), QPointF(67, 580));
    EXPECT_EQ(place("result-0").height(), 36);
    EXPECT_EQ(place("result-1").top() - place("result-0").top(), 38);
    EXPECT_EQ(place("result-0").width(), 806);
}

} // namespace

} // namespace sorvanta
