#include "file_page_test.h"
#include "shown_texts.h"

#include <QAccessible>
#include <QClipboard>
#include <QGuiApplication>
#include <QQmlComponent>
#include <QSignalSpy>

#include <algorithm>
#include <memory>

namespace sorvanta {

namespace {

const QByteArray harbour =
    "print main%3A processing 'a.wav' (1600000 samples, 100.0 sec), 4 threads%0A\n"
    "print [00%3A00%3A00.000 --> 00%3A00%3A05.000]   Good morning, we are standing at the north end of the old "
    "harbour.%0A\n"
    "print [00%3A00%3A05.000 --> 00%3A00%3A08.000]   It is a quarter past six and the boats are just coming back "
    "in.%0A\n"
    "print [00%3A00%3A08.000 --> 00%3A00%3A11.000]   - Could you tell us how long you have worked here?%0A\n"
    "print [00%3A00%3A11.000 --> 00%3A00%3A16.000]   - Since I was nineteen, so that makes it thirty-one years this "
    "autumn.%0A\n"
    "print [00%3A00%3A16.000 --> 00%3A00%3A20.000]   - And what has changed most about the harbour in that time?%0A\n"
    "print [00%3A00%3A20.000 --> 00%3A00%3A30.000]   - The sound of it. When I started you could tell each boat by its "
    "engine before you saw it.%0A\n"
    "print [00%3A00%3A30.000 --> 00%3A00%3A34.000]   Nowadays they are all so quiet that you hear the gulls "
    "first.%0A\n"
    "print [00%3A00%3A34.000 --> 00%3A00%3A42.000]   We used to keep the tide tables pinned to the door of the harbour "
    "office.%0A\n";

QByteArray longTalk(int lines)
{
    QByteArray commands;
    for (int line = 0; line < lines; ++line)
        commands += "print [x] line number " + QByteArray::number(line) + (line % 100 == 50 ? " gull" : "") + "%0A\n";
    return commands;
}

QString pasteboard()
{
    return QGuiApplication::clipboard()->text();
}

class TranscriptPaneUi : public FilePageTest {
protected:
    TranscriptPane &pane() { return *screen.pane(); }

    void showRunning(int width = 940, int height = 700)
    {
        showPage(width, height);
        start(harbour + "sleep 60000\n");
        waitFor([this] { return run().lines()->count() == 8; });
        settle();
    }
    void showFinished(const QByteArray &commands = harbour)
    {
        showPage();
        start(commands);
        waitFor([this] { return run().status() == "Done"; });
        settle();
    }
    void search(const QString &text)
    {
        click(item("transcriptSearchField"));
        for (const QChar letter : text)
            QTest::keyClick(window.get(), letter.toLatin1());
    }
    double contentY() const { return item("transcriptLines")->property("contentY").toDouble(); }

    /// The texts of what stands in the action row, from left to right.
    QStringList actionsInOrder() const
    {
        QMap<double, QString> byPlace;
        for (const char *name : {"fullViewButton", "stripDashesBox", "showLogsButton", "exportMenu", "copyOutputButton",
                                 "clearOutputButton"}) {
            if (isShown(name))
                byPlace[place(name).left()] = text(name);
        }
        return byPlace.values();
    }

    /// How many pixels of a row have that colour.
    int pixelsOf(const QString &rowName, const QColor &color) const
    {
        const QImage picture = grab();
        const QRect area = place(rowName).toRect() & picture.rect();
        int count = 0;
        for (int y = area.top(); y <= area.bottom(); ++y) {
            for (int x = area.left(); x <= area.right(); ++x)
                count += picture.pixelColor(x, y) == color ? 1 : 0;
        }
        return count;
    }
    QColor hitOnCard() const
    {
        const QColor hit = color("hit");
        const QColor card = color("card");
        const auto mixed = [&](int over, int under) {
            return qRound(over * hit.alphaF() + under * (1 - hit.alphaF()));
        };
        return {mixed(hit.red(), card.red()), mixed(hit.green(), card.green()), mixed(hit.blue(), card.blue())};
    }
    static bool isNear(const QColor &left, const QColor &right)
    {
        return qAbs(left.red() - right.red()) <= 2 && qAbs(left.green() - right.green()) <= 2
               && qAbs(left.blue() - right.blue()) <= 2;
    }
    int pixelsNear(const QString &rowName, const QColor &color) const
    {
        const QImage picture = grab();
        const QRect area = place(rowName).toRect() & picture.rect();
        int count = 0;
        for (int y = area.top(); y <= area.bottom(); ++y) {
            for (int x = area.left(); x <= area.right(); ++x)
                count += isNear(picture.pixelColor(x, y), color) ? 1 : 0;
        }
        return count;
    }
};

TEST_F(TranscriptPaneUi, isThereOnlyWhileThereIsText)
{
    showPage();
    EXPECT_FALSE(isShown("transcriptSearchField"));
    EXPECT_FALSE(isShown("copyOutputButton"));
    start(harbour);
    waitFor([this] { return run().status() == "Done"; });
    EXPECT_TRUE(isShown("transcriptSearchField"));
    EXPECT_TRUE(isShown("copyOutputButton"));
}

TEST_F(TranscriptPaneUi, standsWhereTheDrawingHasIt)
{
    showRunning();
    search("harbour");
    settle();
    EXPECT_EQ(place("transcriptSearchField"), QRectF(62, 433, 280, 32));
    EXPECT_EQ(place("matchButtons"), QRectF(414, 433, 65, 32));
    EXPECT_EQ(text("matchCounter"), "1 / 3");
    EXPECT_EQ(text("transcriptCounts"), pane().counts());
    EXPECT_EQ(place("transcriptCounts").right(), 874);
    EXPECT_EQ(place("transcriptLines").top(), 474);
    EXPECT_EQ(place("clearOutputButton").right(), 878);
    EXPECT_EQ(place("clearOutputButton").bottom(), 700 - 16);
    EXPECT_EQ(place("fullViewButton").topLeft(), QPointF(62, 652));
    savePicture("pane-running");
    setDark(true);
    savePicture("pane-running-dark");
}

TEST_F(TranscriptPaneUi, hasItsActionsInOrder)
{
    showRunning();
    EXPECT_EQ(actionsInOrder(),
              QStringList({"Open Full View", "Strip “- ”", "Show Logs", "Export", "Copy Output", "Clear Output"}));
}

TEST_F(TranscriptPaneUi, paintsHitsAndTheCurrentOneInItsOwnColour)
{
    showRunning();
    search("harbour");
    settle();
    EXPECT_GT(pixelsOf("line-0", color("hitCurrent")), 200);
    EXPECT_EQ(pixelsNear("line-0", hitOnCard()), 0);
    EXPECT_GT(pixelsNear("line-4", hitOnCard()), 200);
    EXPECT_EQ(pixelsOf("line-4", color("hitCurrent")), 0);
    EXPECT_EQ(pixelsNear("line-1", hitOnCard()), 0);

    click(item("nextButton"));
    EXPECT_EQ(text("matchCounter"), "2 / 3");
    settle();
    EXPECT_GT(pixelsOf("line-4", color("hitCurrent")), 200);
    EXPECT_EQ(pixelsOf("line-0", color("hitCurrent")), 0);
    EXPECT_GT(pixelsNear("line-0", hitOnCard()), 200);

    click(item("previousButton"));
    click(item("previousButton"));
    EXPECT_EQ(text("matchCounter"), "3 / 3");
    pane().search()->setSearchText({});
    settle();
    EXPECT_EQ(pixelsOf("line-0", color("hitCurrent")) + pixelsNear("line-4", hitOnCard()), 0);
    EXPECT_EQ(text("matchCounter"), "0 / 0");
}

TEST_F(TranscriptPaneUi, paintedTextCanBeSelected)
{
    showRunning();
    search("harbour");
    QQuickItem *row = item("line-0");
    const QPointF left = place("line-0").topLeft() + QPointF(16, 9);
    QTest::mousePress(window.get(), Qt::LeftButton, Qt::NoModifier, left.toPoint());
    QTest::mouseMove(window.get(), (left + QPointF(60, 0)).toPoint());
    QTest::mouseMove(window.get(), (left + QPointF(700, 0)).toPoint());
    QTest::mouseRelease(window.get(), Qt::LeftButton, Qt::NoModifier, (left + QPointF(700, 0)).toPoint());
    EXPECT_TRUE(row->childItems().first()->property("selectedText").toString().endsWith("harbour."));
}

TEST_F(TranscriptPaneUi, linesAreSelectedAndCopiedByKeys)
{
    showRunning();
    tabTo(item("transcriptLines"));
    press(Qt::Key_Return);
    press(Qt::Key_Down);
    press(Qt::Key_Right, Qt::ShiftModifier);
    press(Qt::Key_Right, Qt::ShiftModifier);
    press(Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(pasteboard(), "It");
    savePicture("pane-line-selected");
    press(Qt::Key_A, Qt::ControlModifier);
    press(Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(pasteboard(), run().displayedTranscript());
    savePicture("pane-all-selected");
    EXPECT_EQ(window->activeFocusItem(), item("transcriptLines"));
    press(Qt::Key_Tab);
    EXPECT_TRUE(item("fullViewButton")->hasActiveFocus());
}

TEST_F(TranscriptPaneUi, centresTheRowOfTheCurrentHit)
{
    showFinished(longTalk(1000));
    search("gull");
    EXPECT_EQ(text("matchCounter"), "1 / 10");
    const double before = contentY();
    press(Qt::Key_Return);
    settle();
    EXPECT_EQ(text("matchCounter"), "2 / 10");
    EXPECT_GT(contentY(), before);
    const QRectF list = place("transcriptLines");
    EXPECT_NEAR(place("line-150").center().y(), list.center().y(), 2);
    click(item("previousButton"));
    click(item("previousButton"));
    settle();
    EXPECT_NEAR(place("line-950").center().y(), list.center().y(), 2);
}

TEST_F(TranscriptPaneUi, scrollsToAHitInTheTimeOfTheLookUnlessMotionIsReduced)
{
    showFinished(longTalk(1000));
    QQmlComponent holder(&engine);
    holder.setData("import QtQml\nimport Sorvanta.Style\nQtObject { property QtObject theme: Theme }", {});
    const std::unique_ptr<QObject> held(holder.create());
    auto *const look = held->property("theme").value<QObject *>();
    ASSERT_NE(look, nullptr);
    look->setProperty("motion", true);
    search("gull");
    QSignalSpy moved(item("transcriptLines"), SIGNAL(contentYChanged()));
    press(Qt::Key_Return);
    const double atOnce = contentY();
    const auto isInTheMiddle = [this] {
        return isThere("line-150")
               && std::abs(place("line-150").center().y() - place("transcriptLines").center().y()) <= 2;
    };
    EXPECT_TRUE(waitUntil(isInTheMiddle));
    EXPECT_LT(atOnce, contentY());
    EXPECT_GT(moved.count(), 1);
    look->setProperty("motion", false);
}

TEST_F(TranscriptPaneUi, stripsDashesAndTellsWhatThatIs)
{
    showRunning();
    EXPECT_FALSE(item("stripDashesBox")->property("checked").toBool());
    click(item("stripDashesBox"));
    EXPECT_TRUE(run().stripDashes());
    EXPECT_EQ(item("line-2")->property("text").toString(), "Could you tell us how long you have worked here?");
    QAccessibleInterface *box = accessible(item("stripDashesBox"));
    EXPECT_EQ(box->role(), QAccessible::CheckBox);
    EXPECT_EQ(box->text(QAccessible::Name), "Strip “- ”");
    EXPECT_EQ(box->text(QAccessible::Description), "Remove leading dash markers from lines.");
    EXPECT_TRUE(box->state().checked);
    run().setStripDashes(false);
    EXPECT_FALSE(item("stripDashesBox")->property("checked").toBool()) << "it follows a change from elsewhere";
    const auto *hint = root->findChild<QObject *>("stripDashesHint");
    EXPECT_FALSE(hint->property("visible").toBool());
    QTest::mouseMove(window.get(), QPoint(2, 2));
    QTest::mouseMove(window.get(), place("stripDashesBox").center().toPoint());
    waitFor([hint] { return hint->property("opened").toBool(); });
    EXPECT_EQ(hint->property("text").toString(), "Remove leading dash markers from lines.");
    savePicture("pane-tool-tip");
    click(item("stripDashesBox"));
    EXPECT_TRUE(run().stripDashes());
}

TEST_F(TranscriptPaneUi, copiesWhatIsShown)
{
    showRunning();
    run().setStripDashes(true);
    pressAccessibly(item("copyOutputButton"));
    EXPECT_EQ(pasteboard(), run().displayedTranscript());
    EXPECT_TRUE(pasteboard().contains("\nCould you tell us"));
}

TEST_F(TranscriptPaneUi, afterClearOutputOnlyTheStartControlsStay)
{
    showFinished();
    search("harbour");
    tabTo(item("clearOutputButton"));
    press(Qt::Key_Space);
    settle();
    for (const char *name : {"transcriptSearchField", "transcriptLines", "fullViewButton", "showLogsButton",
                             "copyOutputButton", "clearOutputButton", "statusText"})
        EXPECT_FALSE(isShown(name)) << name;
    EXPECT_TRUE(isShown("startButton"));
    EXPECT_TRUE(item("startButton")->hasActiveFocus()) << "the focus is not lost";
    savePicture("pane-cleared");
    start(harbour);
    waitFor([this] { return run().status() == "Done"; });
    EXPECT_EQ(text("transcriptSearchField"), "");
}

TEST_F(TranscriptPaneUi, clearedInMidRunTheBlockComesBackWithTheNextOutput)
{
    showPage();
    start("print [x] One%0A\nsleep 800\nprint [x] Two%0A\nsleep 60000\n");
    waitFor([this] { return run().lines()->count() == 1; });
    click(item("clearOutputButton"));
    EXPECT_FALSE(isShown("transcriptSearchField"));
    EXPECT_TRUE(isShown("stopButton"));
    settle();
    EXPECT_TRUE(item("stopButton")->hasActiveFocus());
    waitFor([this] { return run().lines()->count() == 2; });
    EXPECT_TRUE(isShown("transcriptSearchField"));
}

TEST_F(TranscriptPaneUi, everyControlIsReachedByKeysAndReadOut)
{
    showRunning();
    for (const char *name :
         {"transcriptSearchField", "previousButton", "nextButton", "transcriptLines", "fullViewButton",
          "stripDashesBox", "showLogsButton", "exportMenu", "copyOutputButton", "clearOutputButton"}) {
        tabTo(item(name));
        EXPECT_TRUE(item(name)->hasActiveFocus()) << name;
        EXPECT_FALSE(accessible(item(name))->text(QAccessible::Name).isEmpty()) << name;
    }
    EXPECT_EQ(accessible(item("transcriptSearchField"))->text(QAccessible::Name), "Search in transcript");
    EXPECT_EQ(accessible(item("transcriptSearchField"))->role(), QAccessible::EditableText);
    EXPECT_EQ(accessible(item("previousButton"))->text(QAccessible::Name), "Previous match");
    EXPECT_EQ(accessible(item("nextButton"))->text(QAccessible::Name), "Next match");
    EXPECT_EQ(accessible(item("clearOutputButton"))->role(), QAccessible::Button);
    EXPECT_EQ(accessible(item("matchCounter"))->text(QAccessible::Name), "0 / 0");
}

TEST_F(TranscriptPaneUi, theSheetShowsTheLog)
{
    showRunning();
    EXPECT_FALSE(pane().showLogsSheet());
    tabTo(item("showLogsButton"));
    press(Qt::Key_Space);
    settle();
    EXPECT_TRUE(pane().showLogsSheet());
    EXPECT_EQ(text("logsTitle"), "Logs");
    EXPECT_FALSE(isShown("noLogs"));
    EXPECT_EQ(item("logLines")->property("count").toInt(), 9);
    EXPECT_TRUE(item("logLines")->hasActiveFocus());
    const QStringList words = spokenWords(accessible(item("logLines")));
    EXPECT_TRUE(words.contains("main: processing 'a.wav' (1600000 samples, 100.0 sec), 4 threads"));
    EXPECT_EQ(accessible(item("logLines"))->text(QAccessible::Name), "Logs");
    savePicture("pane-logs");
    setDark(true);
    savePicture("pane-logs-dark");

    press(Qt::Key_A, Qt::ControlModifier);
    press(Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(pasteboard(), run().rawOutput());
    savePicture("pane-logs-all-selected-dark");

    tabTo(item("closeLogsButton"));
    press(Qt::Key_Return);
    settle();
    EXPECT_FALSE(pane().showLogsSheet());
    EXPECT_EQ(pane().log()->count(), 0) << "nothing is kept for a sheet that is not there";
}

TEST_F(TranscriptPaneUi, theSheetClosesByEscapeAndOpensAgain)
{
    showRunning();
    click(item("showLogsButton"));
    settle();
    press(Qt::Key_Escape);
    settle();
    EXPECT_FALSE(pane().showLogsSheet());
    click(item("showLogsButton"));
    settle();
    EXPECT_TRUE(pane().showLogsSheet());
    EXPECT_TRUE(isShown("logLines"));
}

TEST_F(TranscriptPaneUi, theSheetScrollsByKeysAndItsLinesCanBeSelected)
{
    showFinished(longTalk(500));
    click(item("showLogsButton"));
    settle();
    QQuickItem *log = item("logLines");
    const double top = log->property("contentY").toDouble();
    press(Qt::Key_End);
    EXPECT_GT(log->property("contentY").toDouble(), top + 1000);
    press(Qt::Key_Home);
    EXPECT_EQ(log->property("contentY").toDouble(), top);
    settle();
    const QPointF left = place("logLines").topLeft() + QPointF(12, 18);
    QTest::mousePress(window.get(), Qt::LeftButton, Qt::NoModifier, left.toPoint());
    QTest::mouseMove(window.get(), (left + QPointF(60, 0)).toPoint());
    QTest::mouseMove(window.get(), (left + QPointF(500, 0)).toPoint());
    QTest::mouseRelease(window.get(), Qt::LeftButton, Qt::NoModifier, (left + QPointF(500, 0)).toPoint());
    press(Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(pasteboard(), "[x] line number 0");
}

TEST_F(TranscriptPaneUi, fiftyMegabytesOfLogDoNotHoldTheWindowUp)
{
    QString huge;
    while (huge.size() < 50'000'000)
        huge += "whisper_print_progress_callback: progress = 42% of a log that goes on and on and on\n";
    huge += QString(1'000'000, 'x');
    LogLinesModel log([&huge]() -> const QString & { return huge; });
    log.reset();
    EXPECT_EQ(log.count(), huge.count('\n') + 500) << "the line of a million letters takes 500 rows";
    show("import QtQuick\n"
         "ListView { property var log; model: log; delegate: Item {\n"
         "    required property string text\n"
         "    width: 600; height: words.height\n"
         "    TextEdit { id: words; width: 600; wrapMode: TextEdit.Wrap; text: parent.text } } }",
         {{"log", QVariant::fromValue(&log)}, {"width", 600}, {"height", 400}});
    QMetaObject::invokeMethod(root, "positionViewAtEnd");
    settle();
    EXPECT_LT(root->property("contentItem").value<QQuickItem *>()->childItems().size(), 100)
        << "rows are made in sight";
}

QtMessageHandler strictHandler = nullptr;

/// The platform without a screen says each time that it has no order of windows; every other warning is a failure.
void passOnButRaising(QtMsgType type, const QMessageLogContext &context, const QString &text)
{
    if (text != u"This plugin does not support raise()")
        strictHandler(type, context, text);
}

class TranscriptPaneViewer : public TranscriptPaneUi {
protected:
    TranscriptPaneViewer() { strictHandler = qInstallMessageHandler(passOnButRaising); }
    ~TranscriptPaneViewer() override { qInstallMessageHandler(strictHandler); }

    static qsizetype viewerWindows()
    {
        const QWindowList windows = QGuiApplication::topLevelWindows();
        return std::count_if(windows.begin(), windows.end(), [](const QWindow *shown) {
            return shown->isVisible() && shown->title() == "Transcript Viewer";
        });
    }
};

TEST_F(TranscriptPaneViewer, isOpenedOnceWithWhatIsShown)
{
    showRunning();
    EXPECT_EQ(viewerWindows(), 0);
    click(item("fullViewButton"));
    waitFor([] { return viewerWindows() == 1; });
    EXPECT_EQ(pane().viewer()->model().counts(), pane().counts());
    pressAccessibly(item("fullViewButton"));
    settle();
    EXPECT_EQ(viewerWindows(), 1) << "it is raised";
    pane().clearOutput();
    EXPECT_EQ(viewerWindows(), 1) << "the window stays without text";
    EXPECT_EQ(pane().viewer()->model().transcript(), QString());
    pane().viewer()->closeTranscriptWindow();
    waitFor([] { return viewerWindows() == 0; });
}

struct PaneSize {
    int width;
    int height;
};

class TranscriptPaneSizes : public TranscriptPaneUi, public testing::WithParamInterface<PaneSize> { };

TEST_P(TranscriptPaneSizes, nothingOverlapsAndNothingIsCutOff)
{
    choose("/music/" + QString("A very long name of a recording ").repeated(12) + ".m4a");
    showRunning(GetParam().width - 260, GetParam().height);
    tabTo(item("transcriptSearchField"));
    press(Qt::Key_A);
    const double end = root->property("contentHeight").toDouble() - root->height();
    root->setProperty("contentY", qMax(0.0, end));
    settle();
    const QString name = QString("pane-%1x%2").arg(GetParam().width).arg(GetParam().height);
    savePicture(name);
    expectThatNothingOverlaps(root);
    for (const char *action : {"fullViewButton", "stripDashesBox", "showLogsButton", "exportMenu", "copyOutputButton",
                               "clearOutputButton", "transcriptCounts", "matchButtons"}) {
        EXPECT_TRUE(isShown(action)) << action;
        EXPECT_LE(place(action).right(), root->width() - 24) << action;
        EXPECT_LE(place(action).bottom(), root->height()) << action;
    }
    EXPECT_GE(item("transcriptLines")->height(), 158);
    setDark(true);
    savePicture(name + "-dark");
    pane().setShowLogsSheet(true);
    settle();
    savePicture(name + "-logs-dark");
    EXPECT_LE(place("closeLogsButton").bottom(), root->height());
}

INSTANTIATE_TEST_SUITE_P(, TranscriptPaneSizes,
                         testing::Values(PaneSize{1200, 700}, PaneSize{720, 480}, PaneSize{1920, 1080}));

} // namespace

} // namespace sorvanta
