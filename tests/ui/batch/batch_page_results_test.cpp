#include "batch_page_test.h"

#include <QAccessible>
#include <QElapsedTimer>

#include <cstdio>

namespace sorvanta {

namespace {

using testing::ElementsAre;

class BatchPageResults : public BatchPageTest {
protected:
    QColor colorOf(int row, const QString &objectName)
    {
        return coloured(item(QString("result-%1").arg(row)), objectName);
    }
    static QColor coloured(const QQuickItem *parent, const QString &objectName)
    {
        for (const QQuickItem *child : parent->childItems()) {
            if (child->objectName() == objectName)
                return child->property("color").value<QColor>();
            if (const QColor found = coloured(child, objectName); found.isValid())
                return found;
        }
        return {};
    }
};

TEST_F(BatchPageResults, areListedWithTheirWordsInTheirColours)
{
    showPage();
    transcribe(fiveFiles, twoOfFive);
    EXPECT_THAT(texts("resultName"),
                ElementsAre("Town council 3 March.m4a", "Lecture 04 – Rivers and weirs.mp3",
                            "Interview Marta, take 2.wav", "Field notes 2024-11-08.m4a", "Choir rehearsal.mp3"));
    EXPECT_THAT(texts("resultStatus"), ElementsAre("Done", "Done", "Failed", "Pending", "Pending"));
    EXPECT_EQ(colorOf(0, "resultStatus"), color("success"));
    EXPECT_EQ(colorOf(2, "resultStatus"), color("danger"));
    EXPECT_EQ(colorOf(3, "resultStatus"), color("text2"));
    EXPECT_TRUE(isShown("exportAllMenu"));
    EXPECT_TRUE(isShown("clearAllButton"));
    EXPECT_GE(item("resultList")->height(), 198);
}

TEST_F(BatchPageResults, ofARunningAndACancelledFileHaveTheirColours)
{
    showPage();
    start(fiveFiles, inTheSecond);
    waitFor([this] { return run().currentFileIndex() == 1 && run().hasActiveProcess(); });
    EXPECT_THAT(texts("resultStatus"), ElementsAre("Done", "Transcribing", "Pending", "Pending", "Pending"));
    EXPECT_EQ(colorOf(1, "resultStatus"), color("info"));
    run().stopRun();
    waitFor([this] { return !run().isTranscribing(); });
    EXPECT_THAT(texts("resultStatus"), ElementsAre("Done", "Cancelled", "Pending", "Pending", "Pending"));
    EXPECT_EQ(colorOf(1, "resultStatus"), color("warning"));
}

TEST_F(BatchPageResults, aTapSelectsARow)
{
    showPage(940, 900);
    transcribe(fiveFiles, twoOfFive);
    scrollTo(scrollEnd());
    EXPECT_EQ(text("selectedName"), "Town council 3 March.m4a");
    EXPECT_EQ(text("selectedStatus"), "Done");
    EXPECT_FALSE(isShown("selectedError"));
    EXPECT_TRUE(item("result-0")->property("highlighted").toBool());
    click(item("result-2"));
    EXPECT_EQ(screen.results()->selectedRow(), 2);
    EXPECT_FALSE(item("result-0")->property("highlighted").toBool());
    EXPECT_TRUE(item("result-2")->property("highlighted").toBool());
    EXPECT_EQ(text("selectedName"), "Interview Marta, take 2.wav");
    EXPECT_EQ(text("selectedStatus"), "Failed");
    EXPECT_EQ(item("selectedStatus")->property("color").value<QColor>(), color("danger"));
    EXPECT_TRUE(isShown("selectedError"));
    EXPECT_TRUE(text("selectedError").endsWith("failed to decode"));
    EXPECT_EQ(item("selectedError")->property("color").value<QColor>(), color("danger"));
    click(item("result-4"));
    EXPECT_FALSE(isShown("selectedError"));
    EXPECT_TRUE(isShown("noTranscript"));
    EXPECT_EQ(text("noTranscript"), "No transcript yet.");
    EXPECT_FALSE(isShown("showLogsButton")) << "there is no output";
    EXPECT_FALSE(item("copyOutputButton")->isEnabled());
    EXPECT_FALSE(item("fullViewButton")->isEnabled());
    EXPECT_FALSE(item("exportMenu")->isEnabled());
    EXPECT_TRUE(item("exportAllMenu")->isEnabled());
}

TEST_F(BatchPageResults, thePaneHasTheActionsOfThisScreen)
{
    showPage(940, 900);
    transcribe(fiveFiles, twoOfFive);
    EXPECT_TRUE(isShown("fullViewButton"));
    EXPECT_EQ(text("stripDashesBox"), "Strip “- ”");
    EXPECT_EQ(text("showLogsButton"), "Show Full Logs");
    EXPECT_EQ(text("exportMenu"), "Export");
    EXPECT_EQ(text("copyOutputButton"), "Copy Output");
    EXPECT_FALSE(isShown("clearOutputButton"));
    EXPECT_EQ(text("matchCounter"), "0 / 0");
    EXPECT_FALSE(isShown("noTranscript"));
    screen.pane()->setShowLogsSheet(true);
    settle();
    EXPECT_EQ(text("logsTitle"), "Full Logs");
    screen.pane()->setShowLogsSheet(false);
}

TEST_F(BatchPageResults, clearAllTakesTheAreaAwayAndLeavesTheFiles)
{
    showPage();
    transcribe(fiveFiles, twoOfFive);
    scrollTo(scrollEnd());
    click(item("clearAllButton"));
    EXPECT_FALSE(isShown("resultList"));
    EXPECT_FALSE(isShown("transcriptLines"));
    EXPECT_FALSE(isShown("errorText"));
    EXPECT_EQ(text("fileCount"), "5 files ready");
    EXPECT_TRUE(window->activeFocusItem()) << "the focus is somewhere";
}

TEST_F(BatchPageResults, aReaderIsToldNameAndStatusOfEachRow)
{
    showPage();
    transcribe(fiveFiles, twoOfFive);
    QAccessibleInterface *const row = accessible(item("result-2"));
    EXPECT_EQ(row->role(), QAccessible::ListItem);
    EXPECT_EQ(row->text(QAccessible::Name), "Interview Marta, take 2.wav, Failed");
    EXPECT_FALSE(row->state().selected);
    pressAccessibly(item("result-2"));
    EXPECT_EQ(screen.results()->selectedRow(), 2);
    EXPECT_TRUE(row->state().selected);
    EXPECT_EQ(accessible(item("resultList"))->role(), QAccessible::List);
    EXPECT_EQ(accessible(item("resultList"))->text(QAccessible::Name), "Outputs");
}

TEST_F(BatchPageResults, twoThousandAreScrolledThroughWithAFewRowsMade)
{
    showPage(940, 900);
    useModel({});
    QStringList paths;
    for (int i = 0; i < 2000; ++i)
        paths << QString("/music/A recording with a name of some length, number %1.wav").arg(i);
    choose(paths);
    bench.installModel("ggml-large-v3-turbo.bin", "sleep 60000\n");
    screen.start();
    scrollTo(scrollEnd());
    QQuickItem *const list = item("resultList");
    ASSERT_EQ(list->property("count").toInt(), 2000);
    EXPECT_LE(list->height(), 390);
    QElapsedTimer clock;
    QList<qint64> frames;
    int mostRows = 0;
    const double end = list->property("contentHeight").toDouble() - list->height();
    EXPECT_GT(end, 2000 * 36 - 400);
    for (int step = 0; step <= 60; ++step) {
        list->setProperty("contentY", end * step / 60);
        clock.start();
        grab();
        frames << clock.elapsed();
        int rows = 0;
        for (const QQuickItem *child : list->property("contentItem").value<QQuickItem *>()->childItems())
            rows += child->objectName().startsWith("result-") ? 1 : 0;
        mostRows = qMax(mostRows, rows);
    }
    std::sort(frames.begin(), frames.end());
    std::printf("a frame of 2,000 rows scrolled: %lld ms at the median, %lld ms at most\n",
                static_cast<long long>(frames[30]), static_cast<long long>(frames.last()));
    EXPECT_LT(mostRows, 60);
    EXPECT_EQ(text("result-1999"), "A recording with a name of some length, number 1999.wav");
}

} // namespace

} // namespace sorvanta
