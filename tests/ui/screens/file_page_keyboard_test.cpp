#include "file_page_test.h"

#include "support/posted_work.h"

namespace sorvanta {

namespace {

using testing::ElementsAre;

class FilePageKeyboard : public FilePageTest {
protected:
    /// The names of the controls that Tab goes through, once round.
    QStringList tabStops()
    {
        QStringList stops;
        for (int step = 0; step < 50; ++step) {
            press(Qt::Key_Tab);
            const QQuickItem *focused = window->activeFocusItem();
            if (!focused || (!stops.isEmpty() && focused->objectName() == stops.first()))
                break;
            stops << focused->objectName();
        }
        return stops;
    }
};

TEST_F(FilePageKeyboard, goesThroughAnIdlePageFromTopToBottom)
{
    useModel({});
    choose("/music/a.wav");
    showPage();
    EXPECT_THAT(tabStops(), ElementsAre("chooseFileButton", "modelPicker", "languagePicker", "startButton"));
}

TEST_F(FilePageKeyboard, goesThroughARunningPageFromTopToBottom)
{
    showPage();
    start(at42Percent);
    waitFor([this] { return run().progress() == 0.42; });
    run().setError("An error.");
    EXPECT_THAT(tabStops(), ElementsAre("chooseFileButton", "modelPicker", "languagePicker", "copyErrorButton",
                                        "stopButton", "transcriptSearchField", "previousButton", "nextButton",
                                        "transcriptLines", "fullViewButton", "stripDashesBox", "showLogsButton",
                                        "exportMenu", "copyOutputButton", "clearOutputButton"));
    press(Qt::Key_Backtab, Qt::ShiftModifier);
    EXPECT_EQ(window->activeFocusItem()->objectName(), "clearOutputButton");
}

TEST_F(FilePageKeyboard, doesAllOfAJob)
{
    useModel(at42Percent);
    showPage();
    tabTo(item("chooseFileButton"));
    press(Qt::Key_Space);
    ASSERT_EQ(bench.panels.requests.size(), 1);
    bench.panels.answer("/music/a.wav");
    tabTo(item("startButton"));
    press(Qt::Key_Return);
    waitFor([this] { return run().progress() == 0.42; });
    tabTo(item("stopButton"));
    press(Qt::Key_Space);
    waitFor([this] { return run().status() == "Cancelled"; });
}

TEST_F(FilePageKeyboard, goesBackToTheStartWhenTheStopThatHadTheFocusIsGone)
{
    showPage();
    start(at42Percent);
    waitFor([this] { return run().progress() == 0.42; });
    tabTo(item("stopButton"));
    press(Qt::Key_Space);
    waitFor([this] { return window->activeFocusItem() == item("startButton"); });
    EXPECT_FALSE(run().isTranscribing());
}

TEST_F(FilePageKeyboard, leavesTheFocusWhereItIsWhenARunEndsElsewhere)
{
    showPage();
    start(at42Percent);
    waitFor([this] { return run().progress() == 0.42; });
    tabTo(item("languagePicker"));
    run().stopRun();
    waitFor([this] { return !run().isTranscribing(); });
    runPosted();
    EXPECT_EQ(window->activeFocusItem()->objectName(), "languagePicker");
}

TEST_F(FilePageKeyboard, scrollsALongErrorAndLeavesAShortOneOut)
{
    showPage();
    start(failingWithLog(60));
    waitFor([this] { return run().hasError(); });
    auto *view = item("errorView");
    const auto shownFrom = [view] { return view->property("contentY").toReal(); };
    const qreal last = view->property("contentHeight").toReal() - view->height();
    tabTo(view);
    press(Qt::Key_Down);
    EXPECT_GT(shownFrom(), 10);
    EXPECT_LT(shownFrom(), 40);
    press(Qt::Key_PageDown);
    EXPECT_GT(shownFrom(), view->height() - 40);
    press(Qt::Key_End);
    EXPECT_EQ(shownFrom(), last);
    press(Qt::Key_Down);
    EXPECT_EQ(shownFrom(), last);
    press(Qt::Key_PageUp);
    EXPECT_LT(shownFrom(), last);
    press(Qt::Key_Home);
    EXPECT_EQ(shownFrom(), 0);
    press(Qt::Key_Up);
    EXPECT_EQ(shownFrom(), 0);

    run().setError("Short.");
    waitFor([view] { return !view->property("interactive").toBool(); });
    EXPECT_FALSE(tabStops().contains("errorView"));
}

TEST_F(FilePageKeyboard, bringsWhatHasTheFocusIntoSight)
{
    showPage(460, 300);
    start(at42Percent);
    waitFor([this] { return run().progress() == 0.42; });
    for (const char *control : {"stopButton", "chooseFileButton", "languagePicker", "stopButton", "modelPicker"}) {
        tabTo(item(control));
        EXPECT_GE(place(control).top(), 0) << control;
        EXPECT_LE(place(control).bottom(), 300) << control;
    }
}

TEST_F(FilePageKeyboard, doesNotScrollAwayWhatIsPressedByTheMouse)
{
    useModel({});
    choose("/music/Harbour walk interview.m4a");
    showPage(460, 300);
    root->setProperty("contentY", place("startButton").bottom() - 310);
    const QRectF button = place("startButton");
    ASSERT_EQ(button.bottom(), 310);
    const QPoint inSight(qRound(button.center().x()), 296);
    QTest::mousePress(window.get(), Qt::LeftButton, Qt::NoModifier, inSight);
    QTest::mouseMove(window.get(), inSight + QPoint(1, 0));
    EXPECT_EQ(place("startButton"), button);
    QTest::mouseRelease(window.get(), Qt::LeftButton, Qt::NoModifier, inSight + QPoint(1, 0));
    EXPECT_NE(run().status(), "") << "the press counts";
}

TEST_F(FilePageKeyboard, doesNotScrollAwayALineThatIsPressedByTheMouse)
{
    showPage(460, 300);
    start(at42Percent);
    waitFor([this] { return isThere("line-1"); });
    settle(); // for the layout
    const double scrolled = place("line-0").bottom() - 310;
    root->setProperty("contentY", scrolled);
    const QPoint inSight(qRound(place("line-0").left()) + 40, 296);
    QTest::mouseClick(window.get(), Qt::LeftButton, Qt::NoModifier, inSight);
    EXPECT_TRUE(window->activeFocusItem()->inherits("QQuickTextEdit"));
    EXPECT_EQ(root->property("contentY").toDouble(), scrolled);
}

TEST_F(FilePageKeyboard, leavesThePageWhereItWasScrolledToWhenTheWindowIsComeBackTo)
{
    showPage(460, 300);
    start(at42Percent);
    waitFor([this] { return run().progress() == 0.42; });
    tabTo(item("chooseFileButton"));
    root->setProperty("contentY", 250);
    leaveAndComeBack();
    EXPECT_TRUE(item("chooseFileButton")->hasActiveFocus());
    EXPECT_EQ(root->property("contentY").toDouble(), 250);
}

} // namespace

} // namespace sorvanta
