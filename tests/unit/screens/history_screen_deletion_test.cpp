#include "history_screen_test.h"

#include <QDir>

namespace sorvanta {

namespace {

class HistoryScreenDeletion : public HistoryScreenTest {
protected:
    /// An entry with all files.
    TranscriptionHistoryEntry filed(const QString &id, int minutesEarlier = 0)
    {
        TranscriptionHistoryEntry made = recorded(id, u"Words."_qs, minutesEarlier);
        made.txtPath = bench.history.transcriptsDirectory() + u'/' + id + u".txt"_qs;
        made.srtPath = bench.history.transcriptsDirectory() + u'/' + id + u".srt"_qs;
        writeFileAtomically(made.txtPath, "text");
        writeFileAtomically(*made.srtPath, "subtitles");
        return made;
    }
    QStringList files() const
    {
        return QDir(bench.history.transcriptsDirectory()).entryList(QDir::Files)
               + QDir(bench.history.recordingsDirectory()).entryList(QDir::Files);
    }
};

TEST_F(HistoryScreenDeletion, isAskedAboutFirst)
{
    showHistory({filed(u"a"_qs)});
    screen.askForDeletion();
    EXPECT_TRUE(screen.showDeleteConfirmation());
    EXPECT_EQ(screen.rows()->count(), 1);
    screen.cancelDeletion();
    settle();
    EXPECT_FALSE(screen.showDeleteConfirmation());
    EXPECT_EQ(screen.rows()->count(), 1);
    EXPECT_EQ(files().size(), 3);
}

TEST_F(HistoryScreenDeletion, removesTheEntryAndItsFilesAndGoesToTheFirstOneLeft)
{
    showHistory({filed(u"a"_qs), filed(u"b"_qs, 1), filed(u"c"_qs, 2)});
    screen.selectRow(2);
    screen.askForDeletion();
    screen.confirmDeletion();
    settle();
    EXPECT_FALSE(screen.showDeleteConfirmation());
    EXPECT_EQ(shownIds(), (QStringList{u"a"_qs, u"b"_qs}));
    EXPECT_EQ(files(), (QStringList{u"a.srt"_qs, u"a.txt"_qs, u"b.srt"_qs, u"b.txt"_qs, u"a.wav"_qs, u"b.wav"_qs}));
    EXPECT_EQ(screen.selectedID(), u"a"_qs);
    EXPECT_EQ(historyIds(decodedHistory(readFile(bench.history.historyPath()))), shownIds());
}

TEST_F(HistoryScreenDeletion, ofTheLastEntryLeavesNothingSelected)
{
    showHistory({filed(u"a"_qs)});
    screen.askForDeletion();
    screen.confirmDeletion();
    settle();
    EXPECT_EQ(screen.selectedID(), std::nullopt);
    EXPECT_FALSE(screen.detail()->isShown());
    EXPECT_TRUE(screen.rows()->isEmpty());
    EXPECT_EQ(files(), QStringList());
    screen.askForDeletion();
    EXPECT_FALSE(screen.showDeleteConfirmation()) << "there is nothing to ask about";
}

TEST_F(HistoryScreenDeletion, stopsTheSoundBeforeTheFileGoes)
{
    const TranscriptionHistoryEntry shown = filed(u"a"_qs);
    showHistory({shown});
    screen.togglePlayback();
    bool wasThere = false;
    QObject::connect(screen.playback(), &PlaybackController::isPlayingChanged, screen.playback(),
                     [&] { wasThere = QFile::exists(*shown.recordingPath); });
    screen.askForDeletion();
    EXPECT_TRUE(screen.playback()->isPlaying()) << "asking stops nothing";
    players.takeCalls();
    screen.confirmDeletion();
    EXPECT_EQ(players.takeCalls(), QStringList(u"release"_qs));
    EXPECT_TRUE(wasThere);
    EXPECT_FALSE(QFile::exists(*shown.recordingPath));
}

TEST_F(HistoryScreenDeletion, ofAnEntryThatIsNotSearchedForIsLeftToTheFirstFound)
{
    showHistory({filed(u"a"_qs), filed(u"b"_qs, 1), filed(u"ab"_qs, 2)});
    screen.setSearchText(u"b.wav"_qs);
    screen.askForDeletion();
    screen.confirmDeletion();
    settle();
    EXPECT_EQ(shownIds(), QStringList(u"ab"_qs));
    EXPECT_EQ(screen.selectedID(), u"ab"_qs);
}

TEST_F(HistoryScreenDeletion, isOfTheEntryThatWasAskedAbout)
{
    showHistory({filed(u"a"_qs), filed(u"b"_qs, 1)});
    screen.selectRow(1);
    screen.askForDeletion();
    bench.history.deleteEntry(u"b"_qs); // it is replaced behind the dialog
    settle();
    EXPECT_EQ(screen.selectedID(), u"a"_qs);
    screen.confirmDeletion();
    settle();
    EXPECT_EQ(shownIds(), QStringList(u"a"_qs)) << "not of the one that is selected since";
}

TEST_F(HistoryScreenDeletion, thatWasNotAskedForDoesNothing)
{
    showHistory({filed(u"a"_qs)});
    screen.confirmDeletion();
    settle();
    EXPECT_EQ(screen.rows()->count(), 1);
}

TEST_F(HistoryScreenDeletion, thatCannotBeSavedSaysWhy)
{
    showHistory({filed(u"a"_qs), filed(u"b"_qs, 1)});
    ASSERT_TRUE(QFile::remove(bench.history.historyPath()));
    ASSERT_TRUE(QDir().mkpath(bench.history.historyPath() + u"/full"_qs));
    screen.askForDeletion();
    screen.confirmDeletion();
    settle();
    EXPECT_TRUE(screen.storeError().startsWith(u"Unable to update history: "_qs)) << screen.storeError().toStdString();
    EXPECT_EQ(shownIds(), QStringList(u"b"_qs));
    EXPECT_EQ(screen.selectedID(), u"b"_qs);
}

} // namespace

} // namespace sorvanta
