#include "viewer_window.h"

#include "support/waiting.h"

#include <QClipboard>
#include <QQmlProperty>

#include <algorithm>
#include <limits>

namespace sorvanta {

namespace {

/// What the window shows, where it stands and when.
class ViewerLayout : public ViewerWindow {
protected:
    QString shownText(const QString &name) const { return item(name)->property("text").toString(); }
    QString symbol(const QString &name) const { return QQmlProperty::read(item(name), "icon.name").toString(); }
    double contentY() const { return list()->property("contentY").toDouble(); }
    int rowCount() const { return list()->property("count").toInt(); }

    /// The texts seen at the place of an item, from the top.
    QStringList textsWithin(const QRectF &area) const
    {
        QMap<double, QString> byHeight;
        collectTexts(window->contentItem(), area, byHeight);
        return byHeight.values();
    }

private:
    void collectTexts(const QQuickItem *item, const QRectF &area, QMap<double, QString> &byHeight) const
    {
        for (const QQuickItem *child : item->childItems()) {
            if (!child->isVisible())
                continue;
            const QString said = child->property("text").toString();
            const QRectF at = place(child);
            if (child->inherits("QQuickText") && !said.isEmpty() && area.contains(at.center()))
                byHeight[at.center().y() + at.left() / 10000] = said;
            collectTexts(child, area, byHeight);
        }
    }
};

TEST_F(ViewerLayout, opensInTheMiddleOfTheScreenAndStaysWhereItsUserPutsIt)
{
    fill(3);
    open();
    const int frame = 8; // that the platform draws round a window, more or less of it told as its own
    const QPoint middle = window->screen()->geometry().center();
    EXPECT_LE((window->geometry().center() - middle).manhattanLength(), frame);
    window->setPosition(31, 17);
    window->resize(1180, 900);
    settle();
    EXPECT_LE((window->position() - QPoint(31, 17)).manhattanLength(), frame);
}

TEST_F(ViewerLayout, theHeaderNamesTheTextAndCountsIt)
{
    fill(3);
    open();
    EXPECT_EQ(shownText("viewerTitle"), "Transcript");
    EXPECT_EQ(item("viewerTitle")->property("font").value<QFont>().weight(), QFont::Bold);
    EXPECT_EQ(shownText("viewerCounts"), TranscriptCounts(text));
    EXPECT_EQ(item("viewerCounts")->property("color").value<QColor>(), color("text2"));
    text = "Other words";
    viewer.syncTranscriptWindow();
    EXPECT_EQ(shownText("viewerCounts"), "2 words · 11 chars");
}

TEST_F(ViewerLayout, longCountsAreCutOffInTheHeaderAndWrappedInThePanel)
{
    fill(3);
    open(820, 580);
    viewer.model().setCounts(QString("1234567890 words · ").repeated(6));
    settle();
    EXPECT_LE(place(item("viewerCounts")).right(), place(list()).right() + 1);
    EXPECT_GT(item("totalText")->height(), 2 * 16);
    EXPECT_LE(place(item("totalText")).right(), 820 - 16);
    savePicture("viewer-long-counts");
}

TEST_F(ViewerLayout, thePositionIsThereWhileSomethingIsSearchedFor)
{
    fill(3);
    open();
    EXPECT_FALSE(isShown("positionText"));
    view().setSearchText("nothing like it");
    EXPECT_TRUE(isShown("positionText"));
    EXPECT_EQ(shownText("positionText"), "0 / 0");
    view().setSearchText(" ");
    EXPECT_TRUE(isShown("positionText"));
    view().setSearchText({});
    EXPECT_FALSE(isShown("positionText"));
    EXPECT_EQ(item("searchField")->property("text").toString(), QString());
    EXPECT_EQ(item("searchField")->property("placeholderText").toString(), "Search");
}

TEST_F(ViewerLayout, theArrowUpGoesBackAndTheArrowDownGoesOn)
{
    fill(3);
    open();
    view().setSearchText("harbour");
    EXPECT_EQ(item("previousButton")->property("symbol").toString(), "chevron.up");
    EXPECT_EQ(item("nextButton")->property("symbol").toString(), "chevron.down");
    EXPECT_LT(place(item("previousButton")).right(), place(item("nextButton")).left() + 2);
    click(item("previousButton"));
    EXPECT_EQ(shownText("positionText"), "3 / 3");
    click(item("nextButton"));
    EXPECT_EQ(shownText("positionText"), "1 / 3");
}

TEST_F(ViewerLayout, copyAndCloseStandAtTheBottom)
{
    fill(3);
    open();
    EXPECT_EQ(shownText("copyButton"), "Copy");
    EXPECT_EQ(symbol("copyButton"), "doc.on.doc");
    EXPECT_EQ(shownText("closeButton"), "Close");
    EXPECT_EQ(symbol("closeButton"), "xmark");
    EXPECT_LT(place(item("copyButton")).right(), place(item("closeButton")).left());
    EXPECT_GT(place(item("copyButton")).top(), place(list()).bottom());
    click(item("copyButton"));
    EXPECT_EQ(QGuiApplication::clipboard()->text(), text);
    click(item("closeButton"));
    EXPECT_EQ(viewer.transcriptWindow(), nullptr);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_EQ(newWindow(), nullptr);
    static_cast<void>(window.release());
}

TEST_F(ViewerLayout, withoutAudioTheBarIsThereButOutOfUse)
{
    fill(3);
    isAvailable = false;
    open();
    EXPECT_TRUE(isShown("playButton"));
    EXPECT_FALSE(item("playButton")->isEnabled());
    EXPECT_FALSE(item("playbackSlider")->isEnabled());
    isAvailable = true;
    viewer.syncTranscriptWindow();
    EXPECT_TRUE(item("playButton")->isEnabled());
    EXPECT_TRUE(item("playbackSlider")->isEnabled());
    EXPECT_EQ(shownText("playButton"), "Pause");
    viewer.model().setPlaying(false);
    EXPECT_EQ(shownText("playButton"), "Play");
    for (const char *name : {"currentTimeText", "durationText"}) {
        EXPECT_EQ(item(name)->property("font").value<QFont>().pixelSize(), 12) << name;
        EXPECT_EQ(item(name)->property("color").value<QColor>(), color("text2")) << name;
    }
}

TEST_F(ViewerLayout, audioOfNoLengthHasASliderToOneThatCannotBeMoved)
{
    fill(3);
    time = 0;
    duration = 0;
    open();
    EXPECT_TRUE(item("playButton")->isEnabled());
    EXPECT_FALSE(item("playbackSlider")->isEnabled());
    EXPECT_EQ(item("playbackSlider")->property("from").toDouble(), 0);
    EXPECT_EQ(item("playbackSlider")->property("to").toDouble(), 1);
    EXPECT_EQ(shownText("durationText"), "00:00");
}

TEST_F(ViewerLayout, aTimeThatIsNoNumberIsShownAsSuchAndTheSliderGoesOnBehindIt)
{
    fill(3);
    open();
    viewer.model().setCurrentTime(std::numeric_limits<double>::quiet_NaN());
    EXPECT_EQ(shownText("currentTimeText"), "--:--");
    EXPECT_EQ(item("playbackSlider")->property("to").toDouble(), 138);
    viewer.model().setCurrentTime(20);
    EXPECT_EQ(shownText("currentTimeText"), "00:20");
    EXPECT_EQ(item("playbackSlider")->property("value").toDouble(), 20);
    viewer.model().setPlaybackDuration(std::numeric_limits<double>::quiet_NaN());
    EXPECT_EQ(shownText("durationText"), "--:--");
    EXPECT_FALSE(item("playbackSlider")->isEnabled());
    EXPECT_EQ(seeks, std::vector<double>());
}

TEST_F(ViewerLayout, aRowHasItsPaddingsSpacesAndMark)
{
    fill(12);
    open();
    viewer.updateActiveSegment(2);
    EXPECT_EQ(list()->property("topMargin").toDouble(), 8);
    EXPECT_EQ(list()->property("bottomMargin").toDouble(), 24);
    EXPECT_EQ(place(row(1)).top() - place(row(0)).bottom(), 6);
    QQuickItem *times = part(row(1), "times");
    QQuickItem *words = part(row(1), "words");
    EXPECT_EQ(place(times).top() - place(row(1)).top(), 6);
    EXPECT_EQ(place(words).top() - place(times).bottom(), 4);
    EXPECT_EQ(place(row(1)).bottom() - place(words).bottom(), 6);
    EXPECT_EQ(place(words).left() - place(row(1)).left(), 16);
    EXPECT_EQ(place(row(1)).right() - place(words).right(), 16);
    EXPECT_EQ(row(1)->property("radius").toDouble(), 8);
    EXPECT_EQ(row(1)->property("color").value<QColor>(), color("rowActive"));
    EXPECT_EQ(times->property("color").value<QColor>(), color("text2"));
    EXPECT_LT(times->property("font").value<QFont>().pixelSize(), 12);
    EXPECT_EQ(words->property("font").value<QFont>().pixelSize(), 16);
    click(item("timestampsSwitch"));
    settle();
    EXPECT_EQ(place(words).top() - place(row(1)).top(), 6) << "no gap is left of the times";
}

TEST_F(ViewerLayout, withoutTimingsThereIsARowForEachLineAndNoneIsEverMarked)
{
    text = "One\n\nThree";
    output = "plain\n";
    open();
    ASSERT_EQ(rowCount(), 3);
    for (const int index : {0, 1, 2}) {
        EXPECT_FALSE(part(row(index), "times")->isVisible());
        EXPECT_EQ(part(row(index), "words")->property("text").toString(), text.section('\n', index, index));
    }
    viewer.updateActiveSegment(0);
    for (const int index : {0, 1, 2})
        EXPECT_EQ(row(index)->property("color").value<QColor>().alpha(), 0);
    savePicture("viewer-without-timings");
}

TEST_F(ViewerLayout, whatIsHeardIsMarkedWithoutScrollingIfSoChosen)
{
    fill(200);
    open();
    view().setAutoScrollToPlayback(false);
    const double before = contentY();
    viewer.updateActiveSegment(4);
    EXPECT_EQ(row(2)->property("color").value<QColor>(), color("rowActive"));
    viewer.updateActiveSegment(300);
    settle();
    EXPECT_EQ(contentY(), before);
    EXPECT_EQ(row(2)->property("color").value<QColor>().alpha(), 0);
    view().setAutoScrollToPlayback(true);
    viewer.updateActiveSegment(301.5);
    settle();
    EXPECT_EQ(contentY(), before) << "nothing is heard in a gap";
    viewer.updateActiveSegment(302);
    settle();
    EXPECT_LE(std::abs(fromCentre(151)), 1);
}

TEST_F(ViewerLayout, thePanelHasItsOptionsInOrder)
{
    fill(3);
    open();
    const QStringList panel = textsWithin(QRectF(720, 0, 260, 720));
    EXPECT_EQ(panel.join('|'),
              "View Options|Strip “- ”|Show Timestamps|Auto-scroll to Playback|Font|Monospaced|Text Size|16|12|96|"
              "Line Spacing|6|Side Padding|16|Total: "
                  + viewer.model().counts());
    EXPECT_EQ(item("totalText")->property("font").value<QFont>().pixelSize(), 12);
    EXPECT_EQ(item("totalText")->property("color").value<QColor>(), color("text2"));
    for (const char *option : {"textSize", "lineSpacing", "sidePadding"})
        EXPECT_EQ(part(item(option), "stepper")->isVisible(), QString(option) == "textSize") << option;
    const auto range = [this](const char *option, const char *control) {
        const QQuickItem *of = part(item(option), control);
        return QList<double>{of->property("from").toDouble(), of->property("to").toDouble(),
                             of->property("stepSize").toDouble()};
    };
    EXPECT_EQ(range("textSize", "slider"), (QList<double>{12, 96, 1}));
    EXPECT_EQ(range("textSize", "stepper"), (QList<double>{12, 96, 1}));
    EXPECT_EQ(range("lineSpacing", "slider"), (QList<double>{0, 16, 1}));
    EXPECT_EQ(range("sidePadding", "slider"), (QList<double>{8, 48, 2}));
    viewer.model().setCounts({});
    EXPECT_FALSE(isShown("totalText"));
}

TEST_F(ViewerLayout, sizeIsChosenBySliderAndStepperAlike)
{
    fill(3);
    open();
    tabTo(part(item("textSize"), "slider"));
    press(Qt::Key_Right);
    EXPECT_EQ(view().fontSize(), 17);
    EXPECT_EQ(part(item("textSize"), "stepper")->property("value").toInt(), 17);
    tabTo(part(item("textSize"), "stepper"));
    press(Qt::Key_Down);
    press(Qt::Key_Down);
    EXPECT_EQ(view().fontSize(), 15);
    EXPECT_EQ(part(item("textSize"), "slider")->property("value").toDouble(), 15);
    EXPECT_EQ(part(item("textSize"), "value")->property("text").toString(), "15");
    EXPECT_EQ(part(row(0), "words")->property("font").value<QFont>().pixelSize(), 15);
}

TEST_F(ViewerLayout, theTypefaceIsTheChosenOne)
{
    fill(3);
    open();
    QQuickItem *words = part(row(0), "words");
    const QStringList families = {"monospacedFamily", "textFamily", "roundedFamily", "serifFamily"};
    tabTo(item("fontPicker"));
    for (int choice = 0; choice < 4; ++choice) {
        if (choice > 0)
            press(Qt::Key_Down);
        EXPECT_EQ(item("fontPicker")->property("currentIndex").toInt(), choice);
        EXPECT_EQ(view().fontIndex(), choice);
        EXPECT_EQ(words->property("font").value<QFont>().family(), themeText(families[choice])) << choice;
        savePicture(QString("viewer-font-%1").arg(choice));
    }
}

TEST_F(ViewerLayout, escapeClosesThePickerFirstAndThenTheWindow)
{
    fill(3);
    open();
    click(item("fontPicker"));
    const auto *popup = item("fontPicker")->property("popup").value<QObject *>();
    ASSERT_TRUE(waitUntil([popup] { return popup->property("opened").toBool(); }));
    press(Qt::Key_Escape);
    ASSERT_NE(viewer.transcriptWindow(), nullptr);
    EXPECT_TRUE(waitUntil([popup] { return !popup->property("visible").toBool(); }));
    click(item("searchField"));
    press(Qt::Key_Escape);
    EXPECT_EQ(viewer.transcriptWindow(), nullptr);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    static_cast<void>(window.release());
}

TEST_F(ViewerLayout, eachScreenHasAWindowOfItsOwn)
{
    fill(3);
    open();
    TranscriptViewer other{{
        .text = [] { return u"Another text"_qs; },
        .counts = [] { return u"2 words · 12 chars"_qs; },
        .rawOutput = [] { return QString(); },
        .stripsSegments = [] { return false; },
        .isPlaybackAvailable = [] { return false; },
        .isPlaying = [] { return false; },
        .currentTime = [] { return 0.0; },
        .playbackDuration = [] { return 0.0; },
        .stripDashes = {.get = [] { return false; }, .set = [](bool) {}},
        .togglePlay = [] {},
        .seek = [](double) {},
    }};
    QQmlComponent component(&engine);
    component.setData("import Sorvanta.Viewer\nTranscriptViewerLoader {}", QUrl("qrc:/qt/qml/Other.qml"));
    const std::unique_ptr<QObject> loader(
        component.createWithInitialProperties({{"viewer", QVariant::fromValue(&other)}}));
    other.openTranscriptWindow();
    const auto windowCount = [] {
        const QWindowList windows = QGuiApplication::topLevelWindows();
        return std::count_if(windows.begin(), windows.end(), [](const QWindow *candidate) {
            return candidate->objectName() == u"transcriptViewerWindow" && candidate->isVisible();
        });
    };
    EXPECT_EQ(windowCount(), 2);
    other.transcriptWindow()->setFontSize(40);
    other.transcriptWindow()->setSearchText("text");
    EXPECT_EQ(view().fontSize(), 16);
    EXPECT_EQ(view().searchText(), QString());
    other.closeTranscriptWindow();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_EQ(windowCount(), 1);
    EXPECT_NE(viewer.transcriptWindow(), nullptr);
}

TEST_F(ViewerLayout, opensAnewWithTheDefaultsAndOnceOnly)
{
    fill(3);
    open();
    click(item("timestampsSwitch"));
    view().setFontSize(40);
    view().setSearchText("harbour");
    viewer.openTranscriptWindow();
    EXPECT_EQ(newWindow(), window.get()) << "it is the same window";
    EXPECT_EQ(part(row(0), "words")->property("font").value<QFont>().pixelSize(), 40);
    viewer.closeTranscriptWindow();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    static_cast<void>(window.release()); // it went with its loader
    viewer.openTranscriptWindow();
    window.reset(newWindow());
    ASSERT_NE(window, nullptr);
    ASSERT_TRUE(QTest::qWaitForWindowExposed(window.get()));
    EXPECT_EQ(part(row(0), "words")->property("font").value<QFont>().pixelSize(), 16);
    EXPECT_TRUE(part(row(0), "times")->isVisible());
    EXPECT_EQ(item("searchField")->property("text").toString(), QString());
}

TEST_F(ViewerLayout, looksAsDrawnWithTenThousandLinesOfAnyLength)
{
    fill(10000);
    text += "\n" + QString("aVeryLongWordWithoutAnyPlaceToBreakIt").repeated(40);
    output += "[05:33:20.000 --> 05:33:21.000]   " + text.section('\n', -1) + "\n";
    open(1200, 700);
    view().setSearchText("very");
    settle();
    savePicture("viewer-10000-top");
    view().setSearchText("harbour");
    view().previousMatch();
    settle();
    EXPECT_EQ(shownText("positionText"), "10000 / 10000");
    savePicture("viewer-10000-end");
    EXPECT_LE(std::abs(fromCentre(9999)), 1) << "also next to a row that is higher than most";
    EXPECT_LE(item("positionText")->implicitWidth(), item("positionText")->width()) << "in letters of their size";
    EXPECT_LE(place(item("positionText")).right(), place(item("matchButtons")).left());
    setDark(true);
    savePicture("viewer-10000-end-dark");
    for (const int size : {12, 96}) {
        view().setFontSize(size);
        settle();
        savePicture(QString("viewer-10000-%1-dark").arg(size));
    }
}

} // namespace

} // namespace sorvanta
