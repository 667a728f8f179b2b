#include "file_page_test.h"
#include "shown_texts.h"

#include <QQmlProperty>

#include <memory>

namespace sorvanta {

namespace {

/// What the parts of the pane look like, and when they can be used.
class TranscriptPaneParts : public FilePageTest {
protected:
    void showFinished(const QByteArray &commands)
    {
        showPage();
        start(commands);
        waitFor([this] { return run().status() == "Done"; });
        settle();
    }
    TranscriptPane &pane() { return *screen.pane(); }
    QString symbol(const QString &name) const { return QQmlProperty::read(item(name), "icon.name").toString(); }
    bool isUsable(const QString &name) const { return item(name)->isEnabled(); }
};

TEST_F(TranscriptPaneParts, theSearchRowIsInOrder)
{
    showFinished("print [x] One one%0A\n");
    double right = 0;
    for (const char *name :
         {"transcriptSearchField", "matchCounter", "previousButton", "nextButton", "transcriptCounts"}) {
        EXPECT_TRUE(isShown(name)) << name;
        EXPECT_GE(place(name).left(), right - 2) << name;
        right = place(name).right();
    }
    EXPECT_EQ(item("transcriptSearchField")->property("placeholderText").toString(), "Search in transcript");
    EXPECT_EQ(item("previousButton")->property("symbol").toString(), "chevron.up");
    EXPECT_EQ(item("nextButton")->property("symbol").toString(), "chevron.down");
    EXPECT_LT(place("transcriptSearchField").bottom(), place("transcriptLines").top());
    EXPECT_LT(place("transcriptLines").bottom(), place("fullViewButton").top());
}

TEST_F(TranscriptPaneParts, theCounterKeepsItsWidthWhateverItSays)
{
    showFinished("print [x] One one%0A\n");
    const QRectF arrows = place("matchButtons");
    EXPECT_EQ(place("matchCounter").width(), 48);
    pane().search()->setSearchText("one");
    EXPECT_EQ(text("matchCounter"), "1 / 2");
    EXPECT_EQ(place("matchButtons"), arrows);
}

TEST_F(TranscriptPaneParts, rowsHaveTheirSpaceAndTheirNames)
{
    showFinished("print [x] One%0A[x] Two%0A[x] Three%0A\n");
    for (const int row : {1, 2}) {
        const QRectF upper = place("line-" + QString::number(row - 1));
        const QRectF lower = place("line-" + QString::number(row));
        EXPECT_EQ(lower.top() - upper.bottom(), 4);
    }
    EXPECT_EQ(text("line-2"), "Three");
}

TEST_F(TranscriptPaneParts, actionsLookLikeWhatTheyDo)
{
    showFinished("print [x] One%0A\n");
    EXPECT_EQ(symbol("fullViewButton"), "arrow.up.left.and.arrow.down.right");
    EXPECT_EQ(item("clearOutputButton")->property("labelColor").value<QColor>(), color("danger"));
    for (const char *name : {"fullViewButton", "showLogsButton", "copyOutputButton"})
        EXPECT_EQ(item(name)->property("labelColor").value<QColor>(), color("text")) << name;
}

TEST_F(TranscriptPaneParts, clearOutputCanAlwaysBePressed)
{
    showPage();
    start("print [x] One%0A\nsleep 60000\n");
    waitFor([this] { return run().lines()->count() == 1; });
    EXPECT_TRUE(isUsable("clearOutputButton"));
    run().stopRun();
    EXPECT_TRUE(isUsable("clearOutputButton"));
}

TEST_F(TranscriptPaneParts, whereThePaneStaysWithoutTextNothingCanBeDoneWithIt)
{
    TranscriptPane staying(run(), {.offersClear = false, .staysWithoutText = true}, {});
    showType("Sorvanta.Screens", "TranscriptPane",
             {{"pane", QVariant::fromValue(&staying)},
              {"exportMenu", QVariant::fromValue(screen.exportMenu())},
              {"width", 816},
              {"height", 400}});
    EXPECT_TRUE(isShown("transcriptSearchField"));
    EXPECT_TRUE(isShown("noTranscript"));
    for (const char *name : {"fullViewButton", "exportMenu", "copyOutputButton"})
        EXPECT_FALSE(isUsable(name)) << name;
    EXPECT_FALSE(isShown("showLogsButton"));
    EXPECT_FALSE(isShown("clearOutputButton"));
    savePicture("pane-staying");
    start("print [x] One%0A\n");
    waitFor([this] { return run().status() == "Done"; });
    for (const char *name : {"fullViewButton", "exportMenu", "copyOutputButton"})
        EXPECT_TRUE(isUsable(name)) << name;
    EXPECT_TRUE(isShown("showLogsButton"));
    delete root; // it looks at the pane until its end
    root = nullptr;
}

TEST_F(TranscriptPaneParts, anOpenSheetSaysThatThereIsNoLogYetWhenARunBegins)
{
    showFinished("print [x] One%0A\n");
    pane().setShowLogsSheet(true);
    settle();
    EXPECT_FALSE(isShown("noLogs"));
    useModel(bench.engine.awaitGate() + "print [x] Two%0A\n");
    run().start("/music/a.m4a", *screen.model()->modelPath(), "auto");
    EXPECT_TRUE(isShown("noLogs"));
    EXPECT_EQ(text("noLogs"), "No logs available.");
    EXPECT_EQ(item("logLines")->property("count").toInt(), 0);
    savePicture("pane-no-logs");
    bench.engine.openGate();
    waitFor([this] { return run().status() == "Done"; });
    EXPECT_FALSE(isShown("noLogs"));
    EXPECT_EQ(item("logLines")->property("count").toInt(), 1);
}

TEST_F(TranscriptPaneParts, showLogsIsOfferedWhileTheOutputHoldsAnything)
{
    showPage();
    useModel("sleep 60000\n");
    choose("/music/a.m4a");
    screen.start();
    EXPECT_FALSE(isShown("showLogsButton"));
    start("print Hello%0A\n");
    waitFor([this] { return run().status() == "Done"; });
    EXPECT_TRUE(isShown("showLogsButton"));
}

TEST_F(TranscriptPaneParts, tenThousandLinesOfAnyLengthStandInTheirCard)
{
    QByteArray commands;
    for (int line = 0; line < 10000; ++line)
        commands += "print [x] line number " + QByteArray::number(line) + " about the harbour%0A\n";
    commands += "print [x] " + QByteArray("aVeryLongWordWithoutAnyPlaceToBreakIt").repeated(30) + "%0A\n";
    showFinished(commands);
    pane().search()->setSearchText("harbour");
    pane().search()->previousMatch();
    settle();
    EXPECT_EQ(text("matchCounter"), "10000 / 10000");
    EXPECT_LE(item("matchCounter")->property("contentWidth").toDouble(), place("matchCounter").width());
    EXPECT_LE(place("matchButtons").right(), place("transcriptCounts").left());
    savePicture("pane-10000");
    EXPECT_NEAR(place("line-9999").center().y(), place("transcriptLines").center().y(), 1)
        << "also next to a row that is higher than most";
    setDark(true);
    savePicture("pane-10000-dark");
    EXPECT_LE(place("line-10000").right(), place("transcriptLines").right());
    EXPECT_GT(place("line-10000").height(), 2 * 17) << "a word that is too long is broken";
}

} // namespace

} // namespace sorvanta
