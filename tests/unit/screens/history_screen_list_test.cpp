#include "history_screen_test.h"

#include <QSignalSpy>

namespace sorvanta {

namespace {

using testing::ElementsAre;

class HistoryScreenSearch : public HistoryScreenTest {
protected:
    HistoryScreenSearch()
    {
        TranscriptionHistoryEntry turbo = entry(u"turbo"_qs, u"Good morning, harbour."_qs);
        turbo.model = u"Large V3 Turbo"_qs;
        turbo.sourceLabel = u"/music/Walk.m4a"_qs;
        turbo.language = u"en"_qs;
        TranscriptionHistoryEntry base = entry(u"base"_qs, u"GUTEN MORGEN, CAFÉ."_qs, 1);
        base.sourceLabel = u"/films/Lecture.mp4"_qs;
        base.language = u"de"_qs;
        showHistory({turbo, base});
    }
};

struct Search {
    QString text;
    QStringList found;
};

class HistoryScreenSearches : public HistoryScreenSearch, public testing::WithParamInterface<Search> { };

TEST_P(HistoryScreenSearches, lookAtTextSourceAndModelWhateverTheCase)
{
    screen.setSearchText(GetParam().text);
    EXPECT_EQ(shownIds(), GetParam().found);
    EXPECT_EQ(screen.searchText(), GetParam().text);
}

INSTANTIATE_TEST_SUITE_P(
    , HistoryScreenSearches,
    testing::Values(Search{u""_qs, {u"turbo"_qs, u"base"_qs}}, Search{u" \n\t"_qs, {u"turbo"_qs, u"base"_qs}},
                    Search{u"turbo"_qs, {u"turbo"_qs}}, Search{u" TURBO\n"_qs, {u"turbo"_qs}},
                    Search{u"morning"_qs, {u"turbo"_qs}}, Search{u"guten morgen"_qs, {u"base"_qs}},
                    Search{u"MOR"_qs, {u"turbo"_qs, u"base"_qs}}, Search{u"/MUSIC/walk"_qs, {u"turbo"_qs}},
                    Search{u"cafe\u0301"_qs, {u"base"_qs}}, Search{u"cafe"_qs, {}}, Search{u"harbour. large"_qs, {}},
                    Search{u"en "_qs, {u"base"_qs}}, Search{u"2026"_qs, {}}, Search{u"zebra"_qs, {}}));

TEST_F(HistoryScreenSearch, doesNotLookAtTheLanguageAndTheDate)
{
    for (const QString &text : {u"auto"_qs, u"2/2/26"_qs, u"Feb"_qs, u"2026-02"_qs}) {
        screen.setSearchText(text);
        EXPECT_EQ(shownIds(), QStringList()) << text.toStdString();
    }
}

TEST_F(HistoryScreenSearch, thatMatchesNothingSelectsNothing)
{
    screen.setSearchText(u"zebra"_qs);
    EXPECT_TRUE(screen.rows()->isEmpty());
    EXPECT_EQ(screen.selectedID(), std::nullopt);
    EXPECT_EQ(screen.selectedEntry(), std::nullopt);
    EXPECT_FALSE(screen.detail()->isShown());
    EXPECT_EQ(screen.selectedRow(), -1);
    screen.setSearchText({});
    EXPECT_EQ(screen.selectedID(), u"turbo"_qs);
}

TEST_F(HistoryScreenSearch, keepsTheSelectionWhileItIsFoundAndMovesItElse)
{
    screen.selectRow(1);
    screen.setSearchText(u"m"_qs);
    EXPECT_EQ(screen.selectedID(), u"base"_qs);
    EXPECT_EQ(screen.selectedRow(), 1);
    screen.setSearchText(u"morgen"_qs);
    EXPECT_EQ(screen.selectedID(), u"base"_qs);
    EXPECT_EQ(screen.selectedRow(), 0);
    screen.setSearchText(u"morning"_qs);
    EXPECT_EQ(screen.selectedID(), u"turbo"_qs);
    EXPECT_EQ(screen.detail()->title(), u"Walk.m4a"_qs);
}

TEST_F(HistoryScreenSearch, tellsOfTheRowOfASelectionThatStays)
{
    screen.selectRow(1);
    QSignalSpy moved(&screen, &HistoryView::selectionChanged);
    screen.setSearchText(u"morgen"_qs);
    EXPECT_GE(moved.count(), 1);
}

TEST_F(HistoryScreenSearch, tellsOfItsTextOnlyWhenThatChanges)
{
    QSignalSpy changed(&screen, &HistoryView::searchTextChanged);
    screen.setSearchText(u"m"_qs);
    screen.setSearchText(u"m"_qs);
    EXPECT_EQ(changed.count(), 1);
}

using HistoryScreenSelection = HistoryScreenTest;

TEST_F(HistoryScreenSelection, beginsWithTheNewestEntry)
{
    EXPECT_EQ(screen.selectedID(), std::nullopt);
    showHistory({entry(u"old"_qs, {}, 9), entry(u"new"_qs)});
    EXPECT_EQ(shownIds(), (QStringList{u"new"_qs, u"old"_qs}));
    EXPECT_EQ(screen.selectedID(), u"new"_qs);
    EXPECT_EQ(screen.selectedEntry()->id, u"new"_qs);
}

TEST_F(HistoryScreenSelection, isNoneInAnEmptyHistory)
{
    screen.appear();
    EXPECT_EQ(screen.selectedID(), std::nullopt);
    EXPECT_FALSE(screen.detail()->isShown());
    screen.selectRow(0);
    EXPECT_EQ(screen.selectedID(), std::nullopt);
}

TEST_F(HistoryScreenSelection, staysWithinTheRows)
{
    showHistory({entry(u"a"_qs), entry(u"b"_qs, {}, 1), entry(u"c"_qs, {}, 2)});
    screen.selectRow(1);
    EXPECT_EQ(screen.selectedID(), u"b"_qs);
    screen.selectRow(7);
    EXPECT_EQ(screen.selectedID(), u"c"_qs);
    screen.selectRow(-3);
    EXPECT_EQ(screen.selectedID(), u"a"_qs);
}

TEST_F(HistoryScreenSelection, staysWithItsEntryWhenOneIsAdded)
{
    showHistory({entry(u"a"_qs), entry(u"b"_qs, {}, 1)});
    screen.selectRow(1);
    QSignalSpy moved(&screen, &HistoryView::selectionChanged);
    bench.history.addEntry({.text = u"New"_qs});
    EXPECT_EQ(screen.selectedRow(), 2);
    EXPECT_GE(moved.count(), 1) << "the row is another one";
    settle();
    EXPECT_EQ(screen.selectedID(), u"b"_qs);
    EXPECT_EQ(screen.rows()->count(), 3);
}

TEST_F(HistoryScreenSelection, comesToTheFirstEntryOfAnEmptyHistory)
{
    screen.appear();
    bench.history.addEntry({.text = u"New"_qs, .sourceLabel = u"/music/new.wav"_qs});
    settle();
    EXPECT_EQ(screen.selectedID(), bench.history.entries().first().id);
    EXPECT_EQ(screen.detail()->title(), u"new.wav"_qs);
}

TEST_F(HistoryScreenSelection, followsARecordingToTheTranscriptThatTakesItsPlace)
{
    showHistory({entry(u"other"_qs, {}, 9)});
    const QString recording = bench.file(u"talk.wav"_qs);
    writeFileAtomically(recording, "sound");
    bench.history.addEntry({.sourceLabel = recording, .recordingPath = recording, .replaceExisting = true});
    settle();
    screen.selectRow(0);
    EXPECT_EQ(screen.detail()->title(), u"talk.wav"_qs);
    bench.history.addEntry(
        {.text = u"Said"_qs, .sourceLabel = recording, .recordingPath = recording, .replaceExisting = true});
    settle();
    EXPECT_EQ(screen.rows()->count(), 2);
    EXPECT_EQ(screen.selectedRow(), 0);
    EXPECT_EQ(screen.selectedEntry()->text, u"Said"_qs);
}

TEST_F(HistoryScreenSelection, movesToTheFirstEntryWhenItsOwnHasGone)
{
    showHistory({entry(u"a"_qs), entry(u"b"_qs, {}, 1), entry(u"c"_qs, {}, 2)});
    screen.selectRow(1);
    bench.history.deleteEntry(u"b"_qs);
    settle();
    EXPECT_EQ(screen.selectedID(), u"a"_qs);
}

TEST_F(HistoryScreenSelection, addsAnEntryToWhatASearchShowsOnlyIfItIsFound)
{
    showHistory({entry(u"a"_qs, u"harbour"_qs)});
    screen.setSearchText(u"harbour"_qs);
    bench.history.addEntry({.text = u"Mountains"_qs});
    settle();
    EXPECT_EQ(shownIds(), QStringList(u"a"_qs));
    bench.history.addEntry({.text = u"The Harbour"_qs});
    settle();
    EXPECT_EQ(screen.rows()->count(), 2);
    EXPECT_EQ(screen.selectedID(), u"a"_qs);
}

using HistoryScreenReload = HistoryScreenTest;

TEST_F(HistoryScreenReload, showsWhatIsOnTheDisk)
{
    showHistory({entry(u"a"_qs)});
    write({entry(u"a"_qs), entry(u"b"_qs, {}, 1)});
    screen.reload();
    EXPECT_EQ(shownIds(), (QStringList{u"a"_qs, u"b"_qs}));
    EXPECT_EQ(screen.selectedID(), u"a"_qs);
    write({entry(u"b"_qs)});
    screen.reload();
    EXPECT_EQ(screen.selectedID(), u"b"_qs);
}

TEST_F(HistoryScreenReload, showsAnEntryThatWasChangedInTheFile)
{
    showHistory({entry(u"a"_qs, u"Before"_qs)});
    write({entry(u"a"_qs, u"After"_qs)});
    screen.reload();
    EXPECT_EQ(screen.selectedEntry()->text, u"After"_qs);
    EXPECT_EQ(screen.detail()->textPieces(), QStringList(u"After"_qs));
}

TEST_F(HistoryScreenReload, keepsTheSearch)
{
    showHistory({entry(u"a"_qs, u"One"_qs), entry(u"b"_qs, u"Two"_qs, 1)});
    screen.setSearchText(u"two"_qs);
    write({entry(u"a"_qs, u"One"_qs), entry(u"c"_qs, u"TWO"_qs, 1), entry(u"b"_qs, u"Two"_qs, 2)});
    screen.reload();
    EXPECT_EQ(shownIds(), (QStringList{u"c"_qs, u"b"_qs}));
    EXPECT_EQ(screen.selectedID(), u"b"_qs);
}

TEST_F(HistoryScreenReload, thatFailsKeepsTheListAndSaysWhy)
{
    showHistory({entry(u"a"_qs)});
    EXPECT_EQ(screen.storeError(), QString());
    QSignalSpy changed(&screen, &HistoryView::storeErrorChanged);
    writeFileAtomically(bench.history.historyPath(), "[{}]");
    screen.reload();
    EXPECT_EQ(changed.count(), 1);
    EXPECT_TRUE(screen.storeError().startsWith(u"Unable to read history: "_qs)) << screen.storeError().toStdString();
    EXPECT_EQ(shownIds(), QStringList(u"a"_qs));
    EXPECT_EQ(screen.selectedID(), u"a"_qs);
    write({entry(u"a"_qs)});
    screen.reload();
    EXPECT_EQ(screen.storeError(), QString());
}

} // namespace

} // namespace sorvanta
