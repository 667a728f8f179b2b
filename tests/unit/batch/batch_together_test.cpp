#include "batch_screen_test.h"

#include "screens/file/transcript_from_file_view.h"
#include "screens/history/history_view.h"
#include "unit/audio/fake_audio_player.h"

using namespace sorvanta;
using testing::UnorderedElementsAre;

namespace {

/// A batch beside the other screens.
class BatchTogether : public BatchScreenTest {
protected:
    QStringList sources() const
    {
        QStringList paths;
        for (const TranscriptionHistoryEntry &entry : bench.history.entries())
            paths << entry.sourceLabel;
        return paths;
    }

    FakePlayers players;
    TranscriptFromFileView file{{.shared = bench.surroundings(), .openPlayer = players.opener()}};
    HistoryView history{{.history = bench.history, .panels = bench.panels, .openPlayer = players.opener()}};
};

TEST_F(BatchTogether, aFileRunGoesOnAndAllResultsAreKept)
{
    useModel(twoLines + bench.engine.awaitGate());
    file.appear();
    file.chooseFile();
    bench.panels.answer(u"/music/alone.wav"_qs);
    choose(threeFiles);
    screen->start();
    file.start();
    waitFor([&] { return file.run()->isTranscribing(); });
    EXPECT_TRUE(run().isTranscribing());
    bench.engine.openGate();
    waitFor([&] { return !file.run()->isTranscribing(); });
    waitForEnd();
    EXPECT_EQ(file.run()->status(), u"Done"_qs);
    EXPECT_EQ(run().status(), u"Done"_qs);
    EXPECT_THAT(sources(), UnorderedElementsAre(u"/music/a.wav"_qs, u"/music/b.wav"_qs, u"/music/c.wav"_qs,
                                                u"/music/alone.wav"_qs));
}

TEST_F(BatchTogether, aStopOfTheOneLeavesTheOtherAlone)
{
    useModel(twoLines + bench.engine.awaitGate());
    file.appear();
    file.chooseFile();
    bench.panels.answer(u"/music/alone.wav"_qs);
    choose(threeFiles);
    screen->start();
    file.start();
    waitFor([&] { return run().hasActiveProcess() && file.run()->hasActiveProcess(); });
    run().stopRun();
    waitForEnd();
    bench.engine.openGate();
    waitFor([&] { return !file.run()->isTranscribing(); });
    EXPECT_EQ(run().status(), u"Cancelled"_qs);
    EXPECT_EQ(file.run()->status(), u"Done"_qs);
    EXPECT_THAT(sources(), UnorderedElementsAre(u"/music/alone.wav"_qs));
}

TEST_F(BatchTogether, aViewerPlaysAndTheHistoryIsSearchedWhileEachFileJoinsIt)
{
    const QString heard = bench.file(u"heard.wav"_qs);
    writeWav(heard, 1.0);
    useModel(twoLines);
    file.appear();
    file.chooseFile();
    bench.panels.answer(heard);
    file.start();
    waitFor([&] { return file.run()->status() == u"Done"_qs; });
    file.pane()->openFullView();
    TranscriptWindowModel &viewer = file.pane()->viewer()->model();
    file.playback().togglePlayback();
    ASSERT_TRUE(viewer.isPlaying());

    history.appear();
    history.setSearchText(u"B.WAV"_qs);
    EXPECT_EQ(history.rows()->count(), 0);
    useModel(twoLines + "only c.wav\n" + bench.engine.awaitGate());
    choose(threeFiles);
    screen->start();
    waitFor([&] { return status(1) == FileStatus::done; });
    EXPECT_EQ(history.rows()->count(), 1) << "the file that the search asks for, as soon as it is there";
    players.position = 0.5;
    waitFor([&] { return viewer.currentTime() == 0.5; });
    EXPECT_TRUE(run().isTranscribing());
    bench.engine.openGate();
    waitForEnd();

    EXPECT_EQ(run().status(), u"Done"_qs);
    EXPECT_EQ(history.rows()->count(), 1);
    history.setSearchText(u"two"_qs);
    EXPECT_EQ(history.rows()->count(), 4);
    EXPECT_TRUE(viewer.isPlaying());
    EXPECT_EQ(viewer.transcript(), u"- One\nTwo"_qs) << "the file screen's own";
    EXPECT_EQ(players.opened, 1);
    file.pane()->viewer()->closeTranscriptWindow();
}

} // namespace
