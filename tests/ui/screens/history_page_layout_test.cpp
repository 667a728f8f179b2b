#include "history_page_test.h"
#include "shown_texts.h"
#include "support/waiting.h"

namespace sorvanta {

namespace {

const QString interview =
    "Good morning, we are standing at the north end of the old harbour.\n"
    "It is a quarter past six and the boats are just coming back in.\n"
    "- Could you tell us how long you have worked here?\n"
    "- Since I was nineteen, so that makes it thirty-one years this autumn.\n"
    "- And what has changed most about the harbour in that time?\n"
    "- The sound of it. When I started you could tell each boat by its engine before you saw it.\n"
    "Nowadays they are all so quiet that you hear the gulls first.\n"
    "We used to keep the tide tables pinned to the door of the harbour office.\n"
    "My father wrote the heights in pencil and I still have every one of those sheets.\n"
    "- Do you ever look at them?\n"
    "- Every winter, when there is time. You can follow a whole life in those numbers.\n"
    "When the water is high the bridge is closed, and everybody waits for the ebb together.";

class HistoryPageDrawing : public HistoryPageTest {
protected:
    QList<TranscriptionHistoryEntry> drawnEntries() const
    {
        QList<TranscriptionHistoryEntry> entries{
            recorded("/music/Harbour walk interview.m4a", interview),
            entry("/films/Lecture 04 – Rivers and weirs.mp4", "Last week we left the river just above the old mill.",
                  1),
            recorded("/tmp/microphone_2025-11-13_09-12_4fa1c2.wav", "", 2),
            entry("/music/Town council 3 March.m4a", "Item one on the agenda is the bridge in Mill Lane.", 3),
            entry("/music/Choir rehearsal.mp3", "From bar twelve, please, and softer this time.", 4),
            entry("/music/Field notes 2025-11-08.m4a", "Cold and clear.", 5)};
        const QStringList models{"Large V3 Turbo", "Large V3", "Large V3 Turbo", "Medium", "Base", "Small"};
        const QStringList languages{"en", "auto", "auto", "en", "de", "en"};
        for (qsizetype i = 0; i < entries.size(); ++i) {
            entries[i].model = models[i];
            entries[i].language = languages[i];
        }
        return entries;
    }
    void play()
    {
        players.duration = 138;
        click(item("playButton"));
        players.position = 47;
        ASSERT_TRUE(waitUntil([this] { return text("positionText") == "0:47"; }));
    }
    void saveBoth(const QString &name)
    {
        settle();
        setDark(false);
        savePicture(name);
        setDark(true);
        savePicture(name + "-dark");
        setDark(false);
    }
};

TEST_F(HistoryPageDrawing, placesAllWhereItIsDrawn)
{
    write(drawnEntries());
    showPage();
    play();
    const auto at = [this](const QString &name) { return place(name).topLeft() + QPointF(260, 0); };
    EXPECT_EQ(at("historySearch"), QPointF(284, 100));
    EXPECT_EQ(place("historySearch").size(), QSizeF(312, 32));
    EXPECT_EQ(place("reloadButton").right() + 260, 1176);
    EXPECT_EQ(at("reloadButton").y(), 36);
    EXPECT_EQ(place(list()).adjusted(-1, -1, 1, 1), QRectF(24, 140, 312, 536));
    EXPECT_EQ(place(row(0)), QRectF(30, 146, 291, 99));
    EXPECT_EQ(place(row(1)).top(), 248);
    EXPECT_EQ(at("entryTitle"), QPointF(620, 100));
    EXPECT_EQ(at("exportMenu"), QPointF(620, 188));
    EXPECT_EQ(place("fullViewButton").left(), place("exportMenu").right() + 8);
    EXPECT_EQ(at("audioSection"), QPointF(620, 232));
    EXPECT_EQ(place("audioSection").height(), 48);
    EXPECT_EQ(place("positionSlider").width(), 264);
    EXPECT_EQ(place("durationText").right() - place("positionText").left(), 360);
    EXPECT_EQ(at("deleteButton"), QPointF(620, 292));
    EXPECT_EQ(place("entryText").bottom() + 1, 676);
    EXPECT_EQ(place("entryText").right() + 1 + 260, 1176);
    EXPECT_EQ(item("entryText")->property("contentHeight").toDouble(), 16 * 21) << "four of twelve lines are broken";
    EXPECT_EQ(grab().pixelColor(300, 690), color("windowColor"));
}

TEST_F(HistoryPageDrawing, looksAsDrawn)
{
    write(drawnEntries());
    showPage();
    play();
    qobject_cast<ExportMenuEntry *>(screen.exportMenu()->entries()[0])->choose();
    bench.panels.answer(bench.file("Harbour walk interview_history.srt"));
    saveBoth("06-history");
    click(item("exportMenu"));
    settle();
    saveBoth("history-export-open");
    press(Qt::Key_Escape);
    settle();
    click(row(2));
    saveBoth("history-no-text");
    tabTo(item("historySearch"));
    press(Qt::Key_Z);
    press(Qt::Key_Z);
    saveBoth("history-no-hit");
    press(Qt::Key_Backspace);
    press(Qt::Key_Backspace);
    tabTo(item("deleteButton"));
    press(Qt::Key_Space);
    settle();
    saveBoth("history-dialog");
    EXPECT_TRUE(isShown("confirmDeletionButton"));
}

TEST_F(HistoryPageDrawing, ofAnEmptyHistory)
{
    showPage();
    saveBoth("history-empty");
    EXPECT_TRUE(isShown("emptyHistory"));
}

struct Size {
    int width;
    int height;
};

class HistoryPageLayout : public HistoryPageDrawing, public testing::WithParamInterface<Size> {
protected:
    void show() { showPage(GetParam().width - 260, GetParam().height); }
    QString name(const QString &what) const { return QString("history-%1-%2").arg(what).arg(GetParam().width); }

    void expectThatNothingOverlaps()
    {
        settle();
        const QRectF all(-1e6, -1e6, 2e6, 2e6);
        const auto texts = shownTexts(root->property("contentItem").value<QQuickItem *>(), all);
        EXPECT_GT(texts.size(), 5);
        const double end = root->property("contentWidth").toDouble() - root->property("contentX").toDouble();
        expectTextsApart(texts, -1e6, end - 23);
        EXPECT_GE(place(list()).width() + 2, 280);
        EXPECT_LE(place(list()).width() + 2, 340);
    }
};

TEST_P(HistoryPageLayout, withOrdinaryEntries)
{
    write(drawnEntries());
    show();
    expectThatNothingOverlaps();
    saveBoth(name("ordinary"));
}

TEST_P(HistoryPageLayout, withVeryLongNamesAndMessages)
{
    QList<TranscriptionHistoryEntry> entries = drawnEntries();
    entries[0].sourceLabel = "/music/" + QString("A recording with a very long name ").repeated(20) + ".m4a";
    entries[0].model = QString("A model with a very long name ").repeated(6);
    entries[0].diarization = true;
    entries[0].createdAt = QString("a date that nobody can read ").repeated(12);
    entries[0].text = QString("Wordswithoutanyblanks").repeated(60);
    write(entries);
    screen.selectRow(5);
    show();
    qobject_cast<ExportMenuEntry *>(screen.exportMenu()->entries()[0])->choose();
    bench.panels.answer("/nowhere/" + QString("a name ").repeated(30) + ".txt");
    settle();
    expectThatNothingOverlaps();
    saveBoth(name("long"));
}

TEST_P(HistoryPageLayout, withoutEntries)
{
    show();
    expectThatNothingOverlaps();
    saveBoth(name("empty"));
}

TEST_P(HistoryPageLayout, everyControlIsReachedByTabAndThenInSight)
{
    write(drawnEntries());
    show();
    for (const char *control : {"reloadButton", "historySearch", "historyList", "exportMenu", "fullViewButton",
                                "exportAudioButton", "playButton", "positionSlider", "deleteButton", "entryText"}) {
        tabTo(item(control));
        settle();
        const QRectF seen = place(control);
        EXPECT_GE(seen.left(), 0) << control;
        EXPECT_GE(seen.top(), 0) << control;
        EXPECT_LE(seen.right(), root->width()) << control;
        EXPECT_LE(seen.bottom(), root->height()) << control;
    }
    saveBoth(name("end"));
    tabTo(item("deleteButton"));
    press(Qt::Key_Space);
    settle();
    saveBoth(name("dialog"));
    EXPECT_GE(place("cancelDeletionButton").left(), 0);
    EXPECT_LE(place("confirmDeletionButton").right(), root->width());
}

INSTANTIATE_TEST_SUITE_P(, HistoryPageLayout, testing::Values(Size{1200, 700}, Size{720, 480}, Size{1920, 1080}));

} // namespace

} // namespace sorvanta
