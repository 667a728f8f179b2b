#include "meeting_screen_test.h"

#include "app/viewer/transcript_window_model.h"
#include "app/viewer/transcript_window_view.h"
#include "support/file_content.h"

#include <QFileInfo>

using namespace sorvanta;
using testing::ElementsAre;

namespace {

using MeetingScreenPlayback = MeetingScreenTest;

TEST_F(MeetingScreenPlayback, playsPausesAndResumesWithItsWords)
{
    const QString file = recordAndStop();
    screen->playLatest();
    EXPECT_THAT(players.takeCalls(), ElementsAre(u"open "_qs + file, u"play"_qs));
    EXPECT_EQ(screen->recordStatus(), u"Playing latest recording…"_qs);
    EXPECT_EQ(screen->playLabel(), u"Pause Playback"_qs);
    EXPECT_EQ(screen->playSymbol(), u"pause.fill"_qs);
    screen->playLatest();
    EXPECT_EQ(screen->recordStatus(), u"Playback paused."_qs);
    EXPECT_EQ(screen->playLabel(), u"Resume Playback"_qs);
    EXPECT_EQ(screen->playSymbol(), u"play.fill"_qs);
    screen->playLatest();
    EXPECT_EQ(screen->recordStatus(), u"Playing latest recording…"_qs);
    players.reachEnd();
    EXPECT_EQ(screen->playLabel(), u"Play Latest"_qs);
    EXPECT_EQ(screen->recordStatus(), u"Playing latest recording…"_qs) << "the end changes no words";
    EXPECT_FALSE(screen->isPlaybackShown());
}

TEST_F(MeetingScreenPlayback, withoutARecordingSaysNothing)
{
    screen->playLatest();
    EXPECT_EQ(players.opened, 0);
    EXPECT_EQ(screen->recordStatus(), QString());
    EXPECT_FALSE(run().hasError());
}

TEST_F(MeetingScreenPlayback, playsTheRawFileDuringARecording)
{
    record();
    EXPECT_TRUE(screen->hasOutput());
    screen->playLatest();
    EXPECT_THAT(players.takeCalls(), ElementsAre(u"open "_qs + *recorder().outputURL(), u"play"_qs));
}

TEST_F(MeetingScreenPlayback, aFailureToOpenIsAnError)
{
    recordAndStop();
    players.refusal = Error(u"libmpv"_qs, -13, u"loading failed."_qs);
    screen->playLatest();
    EXPECT_EQ(error(), u"Unable to play audio: loading failed."_qs);
    EXPECT_EQ(screen->recordStatus(), u"Captured audio. Use Transcribe below."_qs);
}

TEST_F(MeetingScreenPlayback, aFailureThatComesAgainIsSaidAgain)
{
    recordAndStop();
    players.refusal = Error(u"libmpv"_qs, -13, u"loading failed."_qs);
    screen->playLatest();
    screen->transcribe();
    EXPECT_EQ(error(), u"Please select a downloaded model."_qs);
    screen->playLatest();
    EXPECT_EQ(error(), u"Unable to play audio: loading failed."_qs);
}

TEST_F(MeetingScreenPlayback, aNewFilePausesWhatPlays)
{
    record();
    sound.play(500, 0.3);
    screen->playLatest();
    screen->toggleRecording();
    EXPECT_TRUE(recorder().playback().isRunning());
    waitForFinal();
    EXPECT_FALSE(recorder().playback().isRunning());
    EXPECT_TRUE(recorder().playback().isPlaybackPaused());
}

TEST_F(MeetingScreenPlayback, aNewFileResumesWhatIsPaused)
{
    record();
    sound.play(500, 0.3);
    screen->playLatest();
    screen->playLatest();
    screen->toggleRecording();
    waitForFinal();
    EXPECT_TRUE(recorder().playback().isRunning()) << "it is toggled, whichever way";
}

TEST_F(MeetingScreenPlayback, theSliderShowsThePositionAndMovesIt)
{
    recordAndStop();
    players.duration = 75.4;
    EXPECT_FALSE(screen->isPlaybackShown());
    screen->playLatest();
    EXPECT_TRUE(screen->isPlaybackShown());
    EXPECT_EQ(screen->sliderEnd(), 75.4);
    EXPECT_EQ(screen->durationText(), u"1:15"_qs);
    EXPECT_EQ(screen->positionText(), u"0:00"_qs);
    bool wasSeeking = false;
    const QObject listener;
    QObject::connect(screen.get(), &MeetingRecorderView::playbackChanged, &listener,
                     [&] { wasSeeking = wasSeeking || screen->isSeeking(); });
    players.takeCalls();
    screen->moveSlider(62.1);
    EXPECT_TRUE(wasSeeking);
    EXPECT_FALSE(screen->isSeeking());
    EXPECT_THAT(players.takeCalls(), ElementsAre(u"seek 62.1"_qs, u"play"_qs));
    EXPECT_EQ(screen->sliderPosition(), 62.1);
    EXPECT_EQ(screen->positionText(), u"1:02"_qs);
    players.position = 80;
    waitFor([this] { return recorder().playback().playbackTime() == 80; });
    EXPECT_EQ(screen->sliderPosition(), 75.4) << "never beyond the end";
}

TEST_F(MeetingScreenPlayback, theViewerFollowsAndPlaysWithoutWords)
{
    useModel(twoLines);
    const TranscriptWindowModel &viewer = screen->pane()->viewer()->model();
    EXPECT_FALSE(viewer.isPlaybackAvailable());
    recordAndStop();
    EXPECT_TRUE(viewer.isPlaybackAvailable());
    screen->transcribe();
    waitForStatus(u"Done"_qs);
    screen->pane()->openFullView();
    EXPECT_EQ(viewer.transcript(), u"- One\nTwo"_qs);
    EXPECT_EQ(viewer.counts(), u"3 words · 9 chars"_qs);
    EXPECT_EQ(viewer.segments().size(), 2);
    TranscriptWindowView &window = *screen->pane()->viewer()->transcriptWindow();
    window.togglePlay();
    EXPECT_TRUE(viewer.isPlaying());
    EXPECT_EQ(viewer.playbackDuration(), 10);
    EXPECT_EQ(screen->recordStatus(), u"Captured audio. Use Transcribe below."_qs);
    window.togglePlay();
    EXPECT_FALSE(viewer.isPlaying()) << "paused";
    EXPECT_TRUE(recorder().playback().isPlaybackPaused());
    window.slideTo(4);
    EXPECT_EQ(viewer.currentTime(), 4);
    EXPECT_EQ(screen->positionText(), u"0:04"_qs);
    EXPECT_EQ(screen->recordStatus(), u"Captured audio. Use Transcribe below."_qs);
}

// Saving.

TEST_F(MeetingScreenPlayback, savesTheRecordingWhereTheUserWants)
{
    const QString file = recordAndStop();
    screen->saveAudio();
    ASSERT_EQ(bench.panels.saveRequests.size(), 1);
    EXPECT_EQ(bench.panels.saveRequests[0].name, QFileInfo(file).fileName());
    EXPECT_EQ(bench.panels.saveRequests[0].extensions, QStringList{u"m4a"_qs});
    const QString place = bench.file(u"kept.m4a"_qs);
    bench.panels.answer(place);
    EXPECT_EQ(screen->recordStatus(), u"Saved recording to kept.m4a"_qs);
    EXPECT_EQ(contentOf(place), contentOf(file));
}

TEST_F(MeetingScreenPlayback, savesOverAFileThatIsThere)
{
    recordAndStop();
    QFile old(bench.file(u"kept.m4a"_qs));
    ASSERT_TRUE(old.open(QIODevice::WriteOnly));
    old.write("old");
    old.close();
    screen->saveAudio();
    bench.panels.answer(old.fileName());
    EXPECT_EQ(screen->recordStatus(), u"Saved recording to kept.m4a"_qs);
    EXPECT_GT(QFileInfo(old.fileName()).size(), 100);
}

TEST_F(MeetingScreenPlayback, aRecordingThatIsGoneTakesNothingWithIt)
{
    QFile::remove(recordAndStop());
    QFile old(bench.file(u"kept.m4a"_qs));
    ASSERT_TRUE(old.open(QIODevice::WriteOnly));
    old.write("old");
    old.close();
    screen->saveAudio();
    bench.panels.answer(old.fileName());
    EXPECT_TRUE(error().startsWith(u"Could not save recording: "_qs)) << error().toStdString();
    EXPECT_EQ(QFileInfo(old.fileName()).size(), 3);
}

TEST_F(MeetingScreenPlayback, savedInItsOwnPlaceTheRecordingIsStillThere)
{
    const QString file = recordAndStop();
    screen->saveAudio();
    bench.panels.answer(file);
    EXPECT_TRUE(QFile::exists(file));
    EXPECT_FALSE(run().hasError());
}

TEST_F(MeetingScreenPlayback, aPanelThatIsDeclinedSavesNothing)
{
    recordAndStop();
    screen->saveAudio();
    bench.panels.answer(std::nullopt);
    EXPECT_EQ(screen->recordStatus(), u"Captured audio. Use Transcribe below."_qs);
    EXPECT_FALSE(run().hasError());
}

TEST_F(MeetingScreenPlayback, withoutARecordingThereIsNothingToSave)
{
    screen->saveAudio();
    EXPECT_EQ(bench.panels.saveRequests.size(), 0);
}

TEST_F(MeetingScreenPlayback, aSaveThatFailsSaysWhy)
{
    recordAndStop();
    screen->saveAudio();
    bench.panels.answer(u"/nowhere/kept.m4a"_qs);
    EXPECT_TRUE(error().startsWith(u"Could not save recording: "_qs));
    EXPECT_GT(error().size(), 30);
    EXPECT_EQ(screen->recordStatus(), u"Captured audio. Use Transcribe below."_qs);
}

TEST_F(MeetingScreenPlayback, aPlaceThatCannotBeClearedIsAFailureToo)
{
    recordAndStop();
    const QString folder = bench.file(u"full"_qs);
    QDir().mkpath(folder + u"/inner"_qs);
    screen->saveAudio();
    bench.panels.answer(folder);
    EXPECT_TRUE(error().startsWith(u"Could not save recording: "_qs));
    EXPECT_TRUE(QFile::exists(folder + u"/inner"_qs));
}

} // namespace
