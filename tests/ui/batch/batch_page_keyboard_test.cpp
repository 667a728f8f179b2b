#include "batch_page_test.h"

namespace sorvanta {

namespace {

using BatchPageKeyboard = BatchPageTest;

TEST_F(BatchPageKeyboard, theListIsWalkedByItsKeys)
{
    showPage();
    transcribe(fiveFiles, twoOfFive);
    tabTo(item("resultList"));
    press(Qt::Key_Down);
    EXPECT_EQ(screen.results()->selectedRow(), 1);
    press(Qt::Key_End);
    EXPECT_EQ(screen.results()->selectedRow(), 4);
    press(Qt::Key_Down);
    EXPECT_EQ(screen.results()->selectedRow(), 4);
    press(Qt::Key_Up);
    EXPECT_EQ(screen.results()->selectedRow(), 3);
    press(Qt::Key_Home);
    EXPECT_EQ(screen.results()->selectedRow(), 0);
    press(Qt::Key_PageDown);
    EXPECT_GT(screen.results()->selectedRow(), 1);
    press(Qt::Key_PageUp);
    EXPECT_EQ(screen.results()->selectedRow(), 0);
}

TEST_F(BatchPageKeyboard, everythingIsReachedByTab)
{
    showPage();
    transcribe(fiveFiles, twoOfFive);
    for (const char *name : {"chooseFilesButton", "clearFilesButton", "modelPicker", "languagePicker", "startButton",
                             "exportAllMenu", "clearAllButton", "resultList", "transcriptSearchField", "fullViewButton",
                             "stripDashesBox", "showLogsButton", "exportMenu", "copyOutputButton"})
        tabTo(item(name));
}

TEST_F(BatchPageKeyboard, theFocusIsNotLostWithTheButtonsThatGo)
{
    showPage();
    transcribe(fiveFiles, twoOfFive);
    tabTo(item("clearAllButton"));
    press(Qt::Key_Space);
    EXPECT_TRUE(item("startButton")->hasActiveFocus());
    tabTo(item("clearFilesButton"));
    press(Qt::Key_Space);
    EXPECT_TRUE(item("chooseFilesButton")->hasActiveFocus());
}

TEST_F(BatchPageKeyboard, theFocusGoesOnWhenTheStopButtonHasDoneItsWork)
{
    showPage();
    start(fiveFiles, inTheSecond);
    waitFor([this] { return run().currentFileIndex() == 1 && run().hasActiveProcess(); });
    tabTo(item("stopButton"));
    press(Qt::Key_Space);
    waitFor([this] { return !run().isTranscribing(); });
    waitFor([this] { return item("startButton")->hasActiveFocus(); });
}

TEST_F(BatchPageKeyboard, whatHasTheFocusIsScrolledIntoSight)
{
    showPage(660, 480);
    transcribe(fiveFiles, twoOfFive);
    tabTo(item("copyOutputButton"));
    settle();
    EXPECT_LE(place("copyOutputButton").bottom(), 480);
    EXPECT_GE(place("copyOutputButton").top(), 0);
}

} // namespace

} // namespace sorvanta
