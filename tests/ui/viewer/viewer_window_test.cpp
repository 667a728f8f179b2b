#include "viewer_window.h"

#include "support/waiting.h"

#include <QAccessible>
#include <QClipboard>
#include <QElapsedTimer>

#include <ctime>
#include <iostream>

namespace sorvanta {

namespace {

TEST_F(ViewerWindow, hasItsTitleSizeAndSmallestSize)
{
    fill(20);
    open();
    EXPECT_EQ(window->title(), "Transcript Viewer");
    EXPECT_EQ(window->size(), QSize(980, 720));
    EXPECT_EQ(window->minimumSize(), QSize(820, 580));
    EXPECT_EQ(window->transientParent(), nullptr);
}

TEST_F(ViewerWindow, looksAsDrawnInLightAndDark)
{
    fill(60);
    open();
    view().setSearchText("harbour");
    viewer.updateActiveSegment(6);
    view().nextMatch();
    savePicture("viewer");
    EXPECT_EQ(place(list()), QRectF(25, 165, 670, 490));
    EXPECT_EQ(place(item("searchField")), QRectF(24, 60, 240, 32));
    EXPECT_EQ(place(item("playButton")).left(), 32);
    EXPECT_GE(item("playButton")->width(), 70);
    EXPECT_EQ(item("currentTimeText")->width(), 64);
    EXPECT_EQ(item("durationText")->width(), 64);
    EXPECT_EQ(item("playbackSlider")->width(), 180);
    EXPECT_EQ(item("currentTimeText")->property("text").toString(), "00:43");
    EXPECT_EQ(item("durationText")->property("text").toString(), "02:18");
    EXPECT_EQ(row(3)->property("color").value<QColor>(), color("rowActive"));
    EXPECT_EQ(row(2)->property("color").value<QColor>().alpha(), 0);
    setDark(true);
    savePicture("viewer-dark");
}

TEST_F(ViewerWindow, fitsItsSmallestSizeAndTheLargestText)
{
    fill(60);
    open(820, 580);
    savePicture("viewer-small");
    EXPECT_LE(place(item("durationText")).right(), place(list()).right());
    EXPECT_LE(place(item("totalText")).bottom(), 580);
    view().setFontSize(96);
    savePicture("viewer-96");
    view().setFontSize(12);
    savePicture("viewer-12");
    QQuickItem *words = part(row(0), "words");
    EXPECT_EQ(words->property("font").value<QFont>().pixelSize(), 12);
}

TEST_F(ViewerWindow, saysThatThereIsNoTranscriptYet)
{
    open();
    EXPECT_TRUE(item("noTranscript")->isVisible());
    EXPECT_EQ(item("noTranscript")->property("text").toString(), "No transcript yet.");
    savePicture("viewer-empty");
    fill(1);
    viewer.syncTranscriptWindow();
    EXPECT_FALSE(item("noTranscript")->isVisible());
}

TEST_F(ViewerWindow, putsTheRowAskedForInTheCentreOfAHundredThousand)
{
    fill(100000);
    QElapsedTimer clock;
    clock.start();
    viewer.syncTranscriptWindow();
    std::cout << "read after " << clock.restart() << " ms\n";
    open();
    std::cout << "opened after " << clock.elapsed() << " ms\n";
    for (const double size : {16.0, 96.0}) {
        view().setFontSize(size);
        settle();
        for (const int target : {50000, 49990, 99000, 300, 70001, 70002, 70003}) {
            clock.restart();
            viewer.updateActiveSegment(2 * target);
            std::cout << "size " << size << ", row " << target << ": " << clock.elapsed() << " ms\n";
            settle();
            EXPECT_LE(std::abs(fromCentre(target)), 1) << "row " << target << " at size " << size;
            EXPECT_EQ(row(target)->property("text").toString().section(u' ', 1, 1), QString::number(target));
        }
    }
}

TEST_F(ViewerWindow, scrollsToTheCentreByAnAnimationWhereThereIsMotion)
{
    fill(3000);
    open();
    QQmlComponent motion(&engine);
    motion.setData("import QtQml\nimport Sorvanta.Style\nQtObject { Component.onCompleted: Theme.motion = true }", {});
    const std::unique_ptr<QObject> holder(motion.create());
    for (const int target : {1, 30, 2000, 1990}) {
        viewer.updateActiveSegment(2 * target);
        if (target == 1) {
            settle();
            EXPECT_EQ(list()->property("contentY").toDouble(), -8) << "it is in sight at the top";
        } else {
            const QString name = "line-" + QString::number(target);
            EXPECT_TRUE(waitUntil([&] { return isThere(name) && std::abs(fromCentre(target)) <= 1; })) << target;
        }
    }
}

TEST_F(ViewerWindow, aTickCostsLittle)
{
    fill(100000);
    open();
    view().setFontSize(96);
    QTest::qWait(300);
    const std::clock_t before = std::clock();
    QElapsedTimer clock;
    clock.start();
    for (int tick = 0; tick < 20; ++tick) {
        viewer.model().setCurrentTime(1000 + 0.2 * tick);
        viewer.updateActiveSegment(1000 + 0.2 * tick);
        QTest::qWait(200);
    }
    const double share =
        100.0 * static_cast<double>(std::clock() - before) / CLOCKS_PER_SEC / (clock.elapsed() / 1000.0);
    std::cout << "playback costs " << share << " % of a core\n";
    EXPECT_LT(share, 10);
}

TEST_F(ViewerWindow, shortcutsCopyAndClose)
{
    fill(3);
    open();
    press(Qt::Key_C, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_EQ(QGuiApplication::clipboard()->text(), text);
    press(Qt::Key_Escape);
    EXPECT_EQ(viewer.transcriptWindow(), nullptr);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_EQ(newWindow(), nullptr);
    static_cast<void>(window.release());
}

TEST_F(ViewerWindow, theCloseBoxEndsTheWindow)
{
    fill(3);
    open();
    window->close();
    EXPECT_EQ(viewer.transcriptWindow(), nullptr);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    static_cast<void>(window.release());
}

TEST_F(ViewerWindow, movingTheSliderSeeksAndFollowingDoesNot)
{
    fill(3);
    open();
    viewer.model().setCurrentTime(200);
    viewer.model().setCurrentTime(20);
    EXPECT_TRUE(seeks.empty());
    EXPECT_EQ(item("playbackSlider")->property("value").toDouble(), 20);
    EXPECT_EQ(item("playbackSlider")->property("to").toDouble(), 138);
    click(item("playbackSlider"));
    ASSERT_FALSE(seeks.empty());
    EXPECT_NEAR(seeks.back(), 69, 2);
    click(item("playButton"));
    EXPECT_EQ(toggles, 1);
}

TEST_F(ViewerWindow, aKeyMovesTheSliderByAPartThatCanBeHeard)
{
    fill(3);
    open();
    viewer.model().setCurrentTime(20);
    QQuickItem *const slider = item("playbackSlider");
    slider->forceActiveFocus(Qt::TabFocusReason);
    press(Qt::Key_Right);
    ASSERT_EQ(seeks.size(), 1U);
    EXPECT_NEAR(seeks.back(), 20 + 138 * 0.05, 1e-6);
    pressAccessibly(slider, QAccessibleActionInterface::increaseAction());
    EXPECT_NEAR(seeks.back(), 20 + 138 * 0.1, 1e-6);
    for (int i = 0; i < 5; ++i)
        press(Qt::Key_Left);
    EXPECT_EQ(seeks.back(), 0);
}

TEST_F(ViewerWindow, searchesStepsAndPaintsTheHits)
{
    fill(40);
    open();
    click(item("searchField"));
    for (const char letter : {'h', 'a', 'r', 'b', 'o', 'u', 'r'})
        press(static_cast<Qt::Key>(letter - 'a' + Qt::Key_A));
    EXPECT_EQ(item("positionText")->property("text").toString(), "1 / 40");
    const auto count = [this](const QColor &wanted) {
        const QRect area = place(list()).toRect();
        const QImage shown = grab().copy(area);
        int found = 0;
        for (int y = 0; y < shown.height(); ++y) {
            for (int x = 0; x < shown.width(); ++x)
                found += shown.pixelColor(x, y) == wanted ? 1 : 0;
        }
        return found;
    };
    const int current = count(color("hitCurrent"));
    EXPECT_GT(current, 200);
    EXPECT_GT(count(QColor("#FFEDA6")), 3 * current) << "the others are lighter";
    for (int step = 0; step < 20; ++step)
        click(item("nextButton"));
    EXPECT_EQ(item("positionText")->property("text").toString(), "21 / 40");
    settle();
    EXPECT_LE(std::abs(fromCentre(20)), 1);
    click(item("previousButton"));
    EXPECT_EQ(item("positionText")->property("text").toString(), "20 / 40");
}

TEST_F(ViewerWindow, linesAreSelectedByMouseAndKeyboard)
{
    fill(10);
    open();
    QQuickItem *words = part(row(1), "words");
    const QRectF area = place(words);
    QTest::mousePress(window.get(), Qt::LeftButton, {}, (area.topLeft() + QPointF(1, 9)).toPoint());
    QTest::mouseMove(window.get(), (area.topLeft() + QPointF(60, 9)).toPoint());
    QTest::mouseMove(window.get(), (area.topLeft() + QPointF(200, 9)).toPoint());
    QTest::mouseRelease(window.get(), Qt::LeftButton, {}, (area.topLeft() + QPointF(200, 9)).toPoint());
    EXPECT_TRUE(words->property("selectedText").toString().startsWith("line 1 of a"));
    EXPECT_TRUE(seeks.empty()) << "a click on a row does nothing";
    tabTo(list());
    press(Qt::Key_Return);
    press(Qt::Key_Home);
    press(Qt::Key_Right, Qt::ShiftModifier);
    press(Qt::Key_Right, Qt::ShiftModifier);
    EXPECT_EQ(part(row(0), "words")->property("selectedText").toString(), "li");
    press(Qt::Key_Down);
    EXPECT_EQ(window->activeFocusItem(), part(row(1), "words"));
    EXPECT_EQ(part(row(0), "words")->property("selectedText").toString(), "") << "one selection at a time";
    press(Qt::Key_End, Qt::ShiftModifier);
    press(Qt::Key_C, Qt::ControlModifier);
    EXPECT_TRUE(QGuiApplication::clipboard()->text().startsWith("line 1 of a talk"));
    press(Qt::Key_Up);
    EXPECT_EQ(window->activeFocusItem(), part(row(0), "words"));
    press(Qt::Key_Tab);
    EXPECT_EQ(window->activeFocusItem(), list()) << "Tab leaves the line";
    press(Qt::Key_Tab);
    EXPECT_FALSE(list()->hasActiveFocus());
}

TEST_F(ViewerWindow, allLinesAreSelectedAndCopiedByKeys)
{
    fill(10);
    open();
    click(part(row(1), "words"));
    press(Qt::Key_A, Qt::ControlModifier);
    for (const int shown : {0, 1, 2})
        EXPECT_EQ(part(row(shown), "words")->property("selectedText"), part(row(shown), "words")->property("text"));
    press(Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(QGuiApplication::clipboard()->text(), text);
    click(part(row(2), "words"));
    EXPECT_EQ(part(row(0), "words")->property("selectedText").toString(), "") << "a click ends it";
}

TEST_F(ViewerWindow, arrowsGoThroughTheDisplayedLinesOfARowFirst)
{
    fill(10);
    open();
    view().setFontSize(40);
    tabTo(list());
    press(Qt::Key_Return);
    QQuickItem *words = part(row(0), "words");
    ASSERT_EQ(window->activeFocusItem(), words);
    const int displayed = words->property("lineCount").toInt();
    ASSERT_GT(displayed, 1);
    for (int line = 1; line < displayed; ++line)
        press(Qt::Key_Down);
    EXPECT_EQ(window->activeFocusItem(), words);
    press(Qt::Key_Down);
    EXPECT_EQ(window->activeFocusItem(), part(row(1), "words"));
}

TEST_F(ViewerWindow, arrowsGoOnIntoLinesThatAreOutOfSight)
{
    fill(200);
    open();
    tabTo(list());
    press(Qt::Key_Return);
    for (int presses = 0; presses < 100; ++presses) {
        const int before = window->activeFocusItem()->property("row").toInt();
        press(Qt::Key_Down);
        const QQuickItem *words = window->activeFocusItem();
        ASSERT_EQ(words->objectName(), "words") << "behind row " << before;
        ASSERT_LE(words->property("row").toInt() - before, 1);
        ASSERT_TRUE(place(list()).contains(place(words).center())) << "the focus is in sight";
    }
    EXPECT_GT(window->activeFocusItem()->property("row").toInt(), 30);
}

TEST_F(ViewerWindow, optionsAreSetByTheirControls)
{
    fill(10);
    open();
    EXPECT_TRUE(part(row(0), "times")->isVisible());
    EXPECT_EQ(part(row(0), "times")->property("text").toString(), "00:00:00.000 → 00:00:01.000");
    click(item("timestampsSwitch"));
    EXPECT_FALSE(part(row(0), "times")->isVisible());
    click(item("stripSwitch"));
    EXPECT_TRUE(strips);
    click(item("autoScrollSwitch"));
    EXPECT_FALSE(view().autoScrollToPlayback());
    QQuickItem *stepper = part(item("textSize"), "stepper");
    tabTo(stepper);
    press(Qt::Key_Up);
    EXPECT_EQ(view().fontSize(), 17);
    EXPECT_EQ(part(item("textSize"), "value")->property("text").toString(), "17");
    tabTo(part(item("sidePadding"), "slider"));
    press(Qt::Key_Right);
    EXPECT_EQ(view().horizontalPadding(), 18);
    EXPECT_EQ(part(row(0), "words")->parentItem()->x(), 18);
    tabTo(part(item("lineSpacing"), "slider"));
    press(Qt::Key_Left);
    EXPECT_EQ(view().lineSpacing(), 5);
    EXPECT_EQ(list()->property("spacing").toDouble(), 5);
}

TEST_F(ViewerWindow, everythingHasAName)
{
    fill(3);
    open();
    const QStringList words = spokenWords(accessible(window.get()));
    for (const char *name :
         {"Transcript", "Search", "Previous match", "Next match", "Pause", "Playback position", "Copy", "Close",
          "View Options", "Strip “- ”", "Show Timestamps", "Auto-scroll to Playback", "Font", "Text Size",
          "Line Spacing", "Side Padding", "00:43", "02:18", "00:00:00.000 → 00:00:01.000"})
        EXPECT_TRUE(words.contains(QString::fromUtf8(name))) << name;
}

} // namespace

} // namespace sorvanta
