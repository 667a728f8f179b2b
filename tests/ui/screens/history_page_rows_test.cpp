#include "history_page_test.h"

#include "support/waiting.h"

#include <QAccessible>
#include <QClipboard>
#include <QGuiApplication>
#include <QQmlProperty>

namespace sorvanta {

namespace {

using testing::ElementsAre;

class HistoryPageRows : public HistoryPageTest {
protected:
    void showThree(int width = 940)
    {
        TranscriptionHistoryEntry second = entry("/films/Lecture 04.mp4", "Last week we left the river.\nMore.", 1);
        second.model = "Large V3";
        second.language = QString();
        second.diarization = true;
        write({recorded("/music/Harbour walk.m4a", "Good morning.\nHow are you?"), second,
               recorded("/tmp/mic.wav", "", 2)});
        showPage(width);
    }
    void showMany(int count)
    {
        QList<TranscriptionHistoryEntry> entries;
        for (int i = 0; i < count; ++i) {
            entries << entry(QString("/music/%1.wav").arg(i), "Words.");
            entries.last().id = QString::number(i);
        }
        write(entries);
        showPage();
    }
    QString rowText(int number, const char *name) const
    {
        return row(number)->findChild<QQuickItem *>(name)->property("text").toString();
    }
};

TEST_F(HistoryPageRows, showTheirEntries)
{
    showThree();
    EXPECT_EQ(list()->property("count").toInt(), 3);
    EXPECT_EQ(rowText(0, "title"), "Harbour walk.m4a");
    EXPECT_EQ(rowText(0, "preview"), "Good morning.");
    EXPECT_EQ(rowText(0, "date"), screen.rows()->index(0).data(FilteredEntries::DateRole).toString());
    EXPECT_EQ(rowText(2, "preview"), "No transcript text saved.");
    const QStringList words = spokenWords(accessible(row(1)));
    EXPECT_EQ(words.mid(2), (QStringList{"Last week we left the river.", "Large V3", "auto", "Diarization"}));
    EXPECT_EQ(words.first(), "Lecture 04.mp4");
    EXPECT_EQ(accessible(row(1))->role(), QAccessible::ListItem);
}

TEST_F(HistoryPageRows, areSelectedByTheMouse)
{
    showThree();
    EXPECT_TRUE(accessible(row(0))->state().selected);
    click(row(1));
    EXPECT_EQ(screen.selectedRow(), 1);
    EXPECT_EQ(text("entryTitle"), "Lecture 04.mp4");
    EXPECT_TRUE(accessible(row(1))->state().selected);
    EXPECT_FALSE(accessible(row(0))->state().selected);
    EXPECT_EQ(pixel(row(1), 200, 4), color("accentSoft"));
    EXPECT_EQ(pixel(row(0), 200, 4), color("card"));
}

TEST_F(HistoryPageRows, areSelectedByKeys)
{
    showThree();
    tabTo(list());
    press(Qt::Key_Down);
    EXPECT_EQ(screen.selectedRow(), 1);
    EXPECT_TRUE(accessible(row(1))->state().focused);
    press(Qt::Key_Up);
    EXPECT_EQ(screen.selectedRow(), 0);
    press(Qt::Key_Up);
    EXPECT_EQ(screen.selectedRow(), 0);
    press(Qt::Key_End);
    EXPECT_EQ(screen.selectedRow(), 2);
    press(Qt::Key_Home);
    EXPECT_EQ(screen.selectedRow(), 0);
    press(Qt::Key_PageDown);
    EXPECT_EQ(screen.selectedRow(), 2);
}

TEST_F(HistoryPageRows, areSelectedByAssistiveTechnology)
{
    showThree();
    pressAccessibly(row(2));
    EXPECT_EQ(screen.selectedRow(), 2);
}

TEST_F(HistoryPageRows, areFilteredAsOneTypes)
{
    showThree();
    tabTo(item("historySearch"));
    for (const Qt::Key key : {Qt::Key_R, Qt::Key_I, Qt::Key_V})
        press(key);
    settle();
    EXPECT_EQ(screen.searchText(), "riv");
    EXPECT_EQ(list()->property("count").toInt(), 1);
    EXPECT_EQ(text("entryTitle"), "Lecture 04.mp4");
    press(Qt::Key_Z);
    settle();
    EXPECT_TRUE(isShown("emptyHistory"));
    EXPECT_FALSE(list()->isVisible());
    EXPECT_TRUE(isShown("noSelection"));
    EXPECT_FALSE(isShown("historyDetail"));
    for (int i = 0; i < 4; ++i)
        press(Qt::Key_Backspace);
    settle();
    EXPECT_EQ(list()->property("count").toInt(), 3);
    EXPECT_FALSE(isShown("emptyHistory"));
}

TEST_F(HistoryPageRows, areSearchedWithoutAutocorrection)
{
    showThree();
    EXPECT_EQ(item("historySearch")->property("placeholderText").toString(), "Search in history");
    EXPECT_TRUE(item("historySearch")->property("inputMethodHints").toInt() & Qt::ImhNoPredictiveText);
}

TEST_F(HistoryPageRows, areReachedFromTheSearchByTheArrow)
{
    showThree();
    tabTo(item("historySearch"));
    press(Qt::Key_Down);
    EXPECT_TRUE(list()->hasActiveFocus());
    press(Qt::Key_Down);
    EXPECT_EQ(screen.selectedRow(), 1);
}

TEST_F(HistoryPageRows, areMadeOnlyForWhatIsInSight)
{
    showMany(3000);
    const auto madeRows = [this] {
        int count = 0;
        for (const QQuickItem *child : list()->property("contentItem").value<QQuickItem *>()->childItems())
            count += child->property("preview").isValid() && child->isVisible() ? 1 : 0;
        return count;
    };
    EXPECT_LE(madeRows(), 12);
    tabTo(list());
    press(Qt::Key_End);
    settle();
    EXPECT_EQ(screen.selectedRow(), 2999);
    EXPECT_EQ(rowText(2999, "title"), "2999.wav");
    EXPECT_GE(place(row(2999)).top(), place(list()).top());
    EXPECT_LE(place(row(2999)).bottom(), place(list()).bottom());
    EXPECT_LE(madeRows(), 14);

    // One entry that comes moves nothing that is being read.
    const QQuickItem *const last = row(2999);
    const double y = place(last).top();
    bench.history.addEntry({.text = "New"});
    settle();
    EXPECT_EQ(row(3000), last) << "the view of the row lives on";
    EXPECT_EQ(place(row(3000)).top(), y);
    EXPECT_EQ(screen.selectedRow(), 3000);
}

TEST_F(HistoryPageRows, stayWhereTheyAreReadWhenAnEntryComesWhileTheSelectionIsOutOfSight)
{
    showMany(100);
    list()->setProperty("contentY", 5000);
    settle();
    const QQuickItem *const read = row(50);
    const double y = place(read).top();
    ASSERT_GE(y, place(list()).top());
    bench.history.addEntry({.text = "New"});
    settle();
    EXPECT_EQ(row(51), read);
    EXPECT_EQ(place(read).top(), y);

    tabTo(list());
    press(Qt::Key_Up);
    EXPECT_EQ(screen.selectedRow(), 0);
    EXPECT_GE(place(row(0)).top(), place(list()).top()) << "what is selected is brought into sight";
    list()->setProperty("contentY", 5000);
    press(Qt::Key_Up);
    EXPECT_GE(place(row(0)).top(), place(list()).top()) << "also if it was selected before";
}

TEST_F(HistoryPageRows, cutLongNamesAndTagsWithinTheRow)
{
    TranscriptionHistoryEntry long1 =
        entry("/music/" + QString("a very long name ").repeated(20) + ".wav", QString("many words ").repeated(100));
    long1.model = QString("A model with a very long name ").repeated(5);
    long1.diarization = true;
    long1.createdAt = QString("not a date ").repeated(20);
    write({long1});
    showPage();
    const QRectF whole = place(row(0));
    QList<QQuickItem *> waiting{row(0)};
    while (!waiting.isEmpty()) {
        const QQuickItem *part = waiting.takeFirst();
        waiting += part->childItems();
        if (part->isVisible() && part->inherits("QQuickText")) {
            EXPECT_LE(place(part).right(), whole.right() - 8) << part->property("text").toString().toStdString();
        }
    }
    EXPECT_EQ(whole.height(), 99);
}

class HistoryPageDetail : public HistoryPageRows {
protected:
    /// The first piece of the entry's text.
    QQuickItem *textEdit() const
    {
        QList<QQuickItem *> waiting{item("entryText")};
        while (!waiting.isEmpty()) {
            QQuickItem *part = waiting.takeFirst();
            waiting += part->childItems();
            if (part->inherits("QQuickTextEdit"))
                return part;
        }
        throw std::runtime_error("there is no text in sight");
    }
    /// What a screen reader finds behind the list.
    QStringList detailWords()
    {
        const QStringList words = spokenWords(accessible(window.get()));
        return words.mid(words.lastIndexOf(screen.detail()->title()));
    }
};

TEST_F(HistoryPageDetail, showsTheEntryWithItsControlsInOrder)
{
    showThree();
    EXPECT_EQ(text("entryTitle"), "Harbour walk.m4a");
    EXPECT_EQ(text("entryDate"), screen.detail()->date());
    EXPECT_THAT(detailWords(), ElementsAre("Harbour walk.m4a", screen.detail()->date(), "Base", "auto", "Export",
                                           "Open Full View", "Export Audio", "Play Audio", "0:00", "Playback position",
                                           "0:00", "Delete", "Transcript", "Good morning.\nHow are you?"));
}

TEST_F(HistoryPageDetail, marksItsControlsWithTheirSymbols)
{
    showThree();
    const auto symbol = [this](const char *name) { return QQmlProperty::read(item(name), "icon.name").toString(); };
    EXPECT_EQ(symbol("reloadButton"), "arrow.clockwise");
    EXPECT_EQ(symbol("exportMenu"), "square.and.arrow.down");
    EXPECT_EQ(symbol("fullViewButton"), "");
    EXPECT_EQ(symbol("exportAudioButton"), "square.and.arrow.up");
    EXPECT_EQ(symbol("deleteButton"), "trash");
    EXPECT_EQ(symbol("playButton"), "play.circle");
    click(item("playButton"));
    EXPECT_EQ(symbol("playButton"), "pause.circle");
}

TEST_F(HistoryPageDetail, showsTheTagsOfTheEntryThatIsSelected)
{
    showThree();
    const auto tags = [this] {
        QStringList found;
        QList<QQuickItem *> waiting{item("entryTags")};
        while (!waiting.isEmpty()) {
            const QQuickItem *part = waiting.takeFirst();
            waiting = part->childItems() + waiting;
            if (part->property("symbol").isValid() && part->property("text").isValid())
                found << part->property("symbol").toString() + " " + part->property("text").toString();
        }
        return found;
    };
    EXPECT_THAT(tags(), ElementsAre("cpu Base", "globe auto"));
    screen.selectRow(1);
    EXPECT_THAT(tags(), ElementsAre("cpu Large V3", "globe auto", "person.2.wave.2.fill Diarization"));
    screen.selectRow(2);
    EXPECT_THAT(tags(), ElementsAre("cpu Base", "globe auto"));
}

TEST_F(HistoryPageDetail, hasNoAudioWithoutARecording)
{
    showThree();
    click(row(1));
    settle();
    EXPECT_FALSE(isShown("audioSection"));
    EXPECT_FALSE(isShown("exportAudioButton"));
    EXPECT_FALSE(detailWords().contains("Play Audio"));
    EXPECT_FALSE(detailWords().contains("Export Audio"));
    EXPECT_TRUE(detailWords().contains("Open Full View"));
}

TEST_F(HistoryPageDetail, saysThatAnEntryHasNoText)
{
    showThree();
    click(row(2));
    settle();
    EXPECT_TRUE(isShown("noText"));
    EXPECT_EQ(text("noText"), "No transcript text stored.");
    EXPECT_TRUE(isShown("audioSection"));
    click(row(0));
    settle();
    EXPECT_FALSE(isShown("noText"));
}

TEST_F(HistoryPageDetail, textIsSelectedAndCopiedAsAWhole)
{
    showThree();
    QQuickItem *const words = textEdit();
    click(words);
    press(Qt::Key_A, Qt::ControlModifier);
    press(Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(QGuiApplication::clipboard()->text(), "Good morning.\nHow are you?");
    press(Qt::Key_X);
    EXPECT_EQ(words->property("text").toString(), "Good morning.\nHow are you?") << "it cannot be changed";
    EXPECT_EQ(words->height(), 42) << "two lines of 21";
}

TEST_F(HistoryPageDetail, aClickIntoALongTextLeavesItWhereItIs)
{
    write({recorded("/music/talk.wav", QString("A line of a talk.\n").repeated(200))});
    showPage(940, 400);
    QQuickItem *const area = item("historyDetail");
    const double end = area->property("contentHeight").toDouble() - area->height();
    ASSERT_GT(end, 20);
    area->setProperty("contentY", end);
    item("entryText")->setProperty("contentY", 2000);
    click(item("entryText"));
    settle();
    EXPECT_TRUE(textEdit()->hasActiveFocus());
    EXPECT_EQ(area->property("contentY").toDouble(), end);
}

TEST_F(HistoryPageDetail, showsAnotherTextFromItsBeginningAndWithNothingSelected)
{
    write({entry("/a.wav", QString("A line of one text.\n").repeated(200)),
           entry("/b.wav", QString("A line of another text.\n").repeated(100).chopped(1), 1)});
    showPage();
    QMetaObject::invokeMethod(textEdit(), "selectAll");
    ASSERT_GT(textEdit()->property("selectedText").toString().size(), 2000);
    tabTo(item("entryText"));
    press(Qt::Key_End);
    settle();
    ASSERT_GT(item("entryText")->property("contentY").toDouble(), 2000);
    screen.selectRow(1);
    settle();
    EXPECT_TRUE(item("entryText")->property("atYBeginning").toBool());
    EXPECT_EQ(textEdit()->property("text").toString(), screen.selectedEntry()->text);
    EXPECT_EQ(textEdit()->property("selectedText").toString(), QString());
    EXPECT_EQ(textEdit()->height(), 100 * 21) << "each line is as high as those of the first text";
    EXPECT_EQ(item("entryText")->property("contentHeight").toDouble(), 100 * 21);
    screen.selectRow(0);
    settle();
    EXPECT_TRUE(item("entryText")->property("atYBeginning").toBool());
    EXPECT_EQ(item("entryText")->property("contentHeight").toDouble(), 201 * 21);
}

TEST_F(HistoryPageDetail, scrollsAVeryLongTextByKeysWithoutLayingAllOfItOut)
{
    write({entry("/a.wav", QString("A line of a talk that went on for ten hours, no less.\n").repeated(12000))});
    showPage();
    int edits = 0;
    for (QQuickItem *child : item("entryText")->property("contentItem").value<QQuickItem *>()->childItems())
        edits += child->property("content").isValid() ? 1 : 0;
    EXPECT_LE(edits, 3);
    tabTo(item("entryText"));
    press(Qt::Key_End);
    settle();
    EXPECT_GT(item("entryText")->property("contentY").toDouble(), 10000);
    press(Qt::Key_Home);
    settle();
    EXPECT_TRUE(item("entryText")->property("atYBeginning").toBool());
}

TEST_F(HistoryPageDetail, playsPausesAndSeeks)
{
    showThree();
    players.duration = 138;
    click(item("playButton"));
    EXPECT_EQ(text("playButton"), "Pause Audio");
    EXPECT_EQ(text("durationText"), "2:18");
    players.position = 47;
    ASSERT_TRUE(waitUntil([this] { return text("positionText") == "0:47"; }));
    EXPECT_EQ(item("positionSlider")->property("value").toDouble(), 47);
    EXPECT_EQ(item("positionSlider")->property("to").toDouble(), 138);
    click(item("playButton"));
    EXPECT_EQ(text("playButton"), "Play Audio");
}

TEST_F(HistoryPageDetail, scrubsWithTheSlider)
{
    showThree();
    players.duration = 100;
    click(item("playButton"));
    players.takeCalls();
    QQuickItem *slider = item("positionSlider");
    const auto at = [slider](double part) {
        return slider->mapToScene(QPointF(8 + part * (slider->width() - 16), slider->height() / 2)).toPoint();
    };
    QTest::mousePress(window.get(), Qt::LeftButton, {}, at(0));
    EXPECT_TRUE(screen.playback()->isScrubbingAudio());
    EXPECT_EQ(players.takeCalls(), QStringList("pause"));
    for (const double part : {0.1, 0.3, 0.5})
        QTest::mouseMove(window.get(), at(part));
    EXPECT_EQ(text("positionText"), "0:50");
    EXPECT_EQ(players.takeCalls(), QStringList()) << "the player moves when the slider is let go";
    EXPECT_EQ(text("playButton"), "Pause Audio");
    QTest::mouseRelease(window.get(), Qt::LeftButton, {}, at(0.5));
    EXPECT_FALSE(screen.playback()->isScrubbingAudio());
    EXPECT_THAT(players.takeCalls(), ElementsAre("seek 50", "play"));
}

TEST_F(HistoryPageDetail, seeksByKeysAtOnce)
{
    showThree();
    players.duration = 100;
    click(item("playButton"));
    players.takeCalls();
    tabTo(item("positionSlider"));
    press(Qt::Key_Right);
    EXPECT_EQ(players.takeCalls(), QStringList("seek 5"));
    EXPECT_EQ(text("positionText"), "0:05");
    press(Qt::Key_Left);
    press(Qt::Key_Left);
    EXPECT_EQ(text("positionText"), "0:00");
    EXPECT_EQ(text("playButton"), "Pause Audio");
    EXPECT_EQ(accessible(item("positionSlider"))->text(QAccessible::Name), "Playback position");
}

TEST_F(HistoryPageDetail, exportsWithMessages)
{
    showThree();
    pressAccessibly(item("exportMenu"));
    settle();
    press(Qt::Key_Down);
    press(Qt::Key_Return);
    ASSERT_EQ(bench.panels.saveRequests.size(), 1);
    EXPECT_EQ(bench.panels.saveRequests[0].name, "Harbour walk_history.txt");
    EXPECT_FALSE(isShown("exportMessage"));
    bench.panels.answer(bench.file("walk.txt"));
    EXPECT_EQ(text("exportMessage"), "Exported to walk.txt");
    EXPECT_EQ(item("exportMessage")->property("color").value<QColor>(), color("success"));
    EXPECT_FALSE(isShown("exportError"));
    click(item("exportAudioButton"));
    ASSERT_EQ(bench.panels.saveRequests.size(), 2);
    EXPECT_EQ(bench.panels.saveRequests[1].name, "Harbour walk_history.wav");
    bench.panels.answer("/nowhere/walk.wav");
    EXPECT_TRUE(text("exportError").startsWith("Export failed: "));
    EXPECT_EQ(item("exportError")->property("color").value<QColor>(), color("danger"));
    EXPECT_EQ(accessible(item("exportError"))->role(), QAccessible::AlertMessage);
    EXPECT_FALSE(isShown("exportMessage"));
}

TEST_F(HistoryPageDetail, showsAnotherVeryLongTextFromItsBeginning)
{
    const QString line = "A line of a talk that went on for ten hours, no less.\n";
    write({entry("/a.wav", line.repeated(12000)), entry("/b.wav", "Other.\n\n" + line.repeated(11999), 1)});
    showPage();
    const qsizetype pieces = screen.detail()->textPieces().size();
    ASSERT_GT(pieces, 50);
    tabTo(item("entryText"));
    press(Qt::Key_End);
    settle();
    ASSERT_GT(item("entryText")->property("contentY").toDouble(), 10000);
    screen.selectRow(1);
    settle();
    ASSERT_EQ(screen.detail()->textPieces().size(), pieces) << "pieces that are changed in place";
    EXPECT_TRUE(item("entryText")->property("atYBeginning").toBool());
    QQuickItem *const first = textEdit();
    EXPECT_TRUE(first->property("text").toString().startsWith("Other."));
    EXPECT_EQ(place(first).top(), place("entryText").top() + 12);
}

class HistoryPageDeletion : public HistoryPageRows {
protected:
    void ask()
    {
        showThree();
        click(item("deleteButton"));
        settle();
    }
    bool isOpen() const { return root->findChild<QObject *>("deleteDialog")->property("visible").toBool(); }
};

TEST_F(HistoryPageDeletion, asksFirst)
{
    ask();
    EXPECT_TRUE(screen.showDeleteConfirmation());
    EXPECT_TRUE(isShown("confirmDeletionButton"));
    const QStringList words = spokenWords(accessible(window.get()));
    EXPECT_TRUE(words.contains("Delete this history entry?"));
    EXPECT_EQ(words.last(), "Delete");
    EXPECT_EQ(words[words.size() - 2], "Cancel");
    EXPECT_GT(place("confirmDeletionButton").left(), place("cancelDeletionButton").right());
    EXPECT_TRUE(item("cancelDeletionButton")->hasActiveFocus());
}

TEST_F(HistoryPageDeletion, isCancelledByTheButtonAndByEscape)
{
    ask();
    click(item("cancelDeletionButton"));
    ASSERT_TRUE(waitUntil([this] { return !isOpen(); }));
    EXPECT_FALSE(screen.showDeleteConfirmation());
    EXPECT_EQ(screen.rows()->count(), 3);
    EXPECT_TRUE(item("deleteButton")->hasActiveFocus());
    press(Qt::Key_Space);
    settle();
    EXPECT_TRUE(screen.showDeleteConfirmation());
    press(Qt::Key_Escape);
    ASSERT_TRUE(waitUntil([this] { return !isOpen(); }));
    EXPECT_FALSE(screen.showDeleteConfirmation());
    EXPECT_EQ(screen.rows()->count(), 3);
}

TEST_F(HistoryPageDeletion, deletesAndGoesToTheFirstEntryLeft)
{
    ask();
    click(item("confirmDeletionButton"));
    ASSERT_TRUE(waitUntil([this] { return !isOpen(); }));
    settle();
    EXPECT_EQ(screen.rows()->count(), 2);
    EXPECT_EQ(text("entryTitle"), "Lecture 04.mp4");
    EXPECT_TRUE(item("deleteButton")->hasActiveFocus());
}

TEST_F(HistoryPageDeletion, ofTheLastEntryHandsTheFocusToTheSearch)
{
    write({entry("/a.wav", "Words.")});
    showPage();
    click(item("deleteButton"));
    settle();
    pressAccessibly(item("confirmDeletionButton"));
    settle();
    ASSERT_TRUE(waitUntil([this] { return isShown("emptyHistory"); }));
    ASSERT_TRUE(waitUntil([this] { return item("historySearch")->hasActiveFocus(); }));
    EXPECT_TRUE(isShown("noSelection"));
}

TEST_F(HistoryPageDeletion, andReloadExplainThemselves)
{
    showThree();
    EXPECT_EQ(accessible(item("deleteButton"))->text(QAccessible::Description),
              "Remove this entry from history and delete stored transcript files.");
    EXPECT_EQ(accessible(item("reloadButton"))->text(QAccessible::Description),
              "Reload transcription-history.json from disk.");
}

class HistoryPageWhole : public HistoryPageRows { };

TEST_F(HistoryPageWhole, saysWhatItIsInAnEmptyHistory)
{
    showPage();
    EXPECT_THAT(spokenWords(accessible(window.get())),
                ElementsAre("History", "All transcriptions saved to Application Support/sorvanta.", "Reload",
                            "Search in history", "No transcriptions saved yet.",
                            "Once you transcribe audio, entries will appear here. Saved in transcription-history.json "
                            "inside Application Support/sorvanta.",
                            "Select a transcription to view details."));
}

TEST_F(HistoryPageWhole, readsTheDiskAgain)
{
    showPage();
    writeFileAtomically(bench.history.historyPath(), encodedHistory({entry("/a.wav", "Words.")}));
    click(item("reloadButton"));
    settle();
    EXPECT_EQ(text("entryTitle"), "a.wav");
}

TEST_F(HistoryPageWhole, saysWhyTheHistoryCannotBeRead)
{
    showThree();
    EXPECT_FALSE(isShown("storeError"));
    const double before = place(list()).top();
    writeFileAtomically(bench.history.historyPath(), "[{}]");
    click(item("reloadButton"));
    settle();
    EXPECT_TRUE(text("storeError").startsWith("Unable to read history: "));
    EXPECT_TRUE(isShown("storeError"));
    EXPECT_GT(place(list()).top(), before);
    EXPECT_GE(place("historySearch").top(), place("storeError").bottom());
    savePicture("history-store-error");
}

} // namespace

} // namespace sorvanta
