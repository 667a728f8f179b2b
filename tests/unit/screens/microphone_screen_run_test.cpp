#include "microphone_screen_test.h"

#include "app/viewer/transcript_window_model.h"
#include "app/viewer/transcript_window_view.h"
#include "support/engine_scripts.h"
#include "support/file_content.h"

#include <QDir>
#include <QFile>

using namespace sorvanta;
using testing::ElementsAre;

namespace {

class MicrophoneScreenRun : public MicrophoneScreenTest { };

// The history

TEST_F(MicrophoneScreenRun, aStoppedTakeIsInTheHistoryWithoutAText)
{
    useModel({});
    screen->language()->setLanguage(u"  DE "_qs);
    const QString take = recordTake();
    ASSERT_EQ(bench.history.entries().size(), 1);
    const TranscriptionHistoryEntry &entry = bench.history.entries().first();
    EXPECT_EQ(entry.text, QString());
    EXPECT_EQ(entry.srtPath, std::nullopt);
    EXPECT_EQ(entry.sourceLabel, take);
    EXPECT_EQ(entry.model, u"Base"_qs);
    EXPECT_EQ(entry.language, u"de"_qs);
    EXPECT_FALSE(entry.diarization);
    ASSERT_TRUE(entry.recordingPath);
    EXPECT_NE(*entry.recordingPath, take);
    EXPECT_EQ(contentOf(*entry.recordingPath), "a take");
}

TEST_F(MicrophoneScreenRun, aTakeWithoutAModelIsOfAnUnknownOne)
{
    recordTake();
    EXPECT_EQ(bench.history.entries().first().model, u"Unknown model"_qs);
    EXPECT_EQ(bench.history.entries().first().language, u"auto"_qs);
}

TEST_F(MicrophoneScreenRun, aTakeWhoseFileIsGoneIsNotInTheHistory)
{
    begin();
    QFile::remove(microphone.path);
    screen->toggleRecording();
    EXPECT_TRUE(bench.history.entries().isEmpty());
    EXPECT_EQ(run().status(), u"Recording ready. Transcribe when you're ready."_qs);
}

TEST_F(MicrophoneScreenRun, aTranscriptTakesTheEntryOfItsTake)
{
    useModel(twoLines);
    const QString take = recordTake();
    screen->transcribe();
    waitForStatus(u"Done"_qs);
    ASSERT_EQ(bench.history.entries().size(), 1);
    const TranscriptionHistoryEntry &entry = bench.history.entries().first();
    EXPECT_EQ(entry.text, u"- One\nTwo"_qs);
    EXPECT_EQ(entry.sourceLabel, take);
    EXPECT_EQ(contentOf(entry.recordingPath.value_or(QString())), "a take");
    ASSERT_TRUE(entry.srtPath);
    EXPECT_EQ(contentOf(*entry.srtPath), "1\n00:00:00,000 --> 00:00:15,000\n- One\n\n"
                                         "2\n00:00:15,000 --> 00:00:30,000\nTwo\n");
    EXPECT_EQ(QDir(bench.history.recordingsDirectory()).entryList(QDir::Files).size(), 1);

    recordTake();
    EXPECT_EQ(bench.history.entries().size(), 2) << "each take has one";
}

TEST_F(MicrophoneScreenRun, aRunWithoutWordsLeavesTheEntryOfTheTake)
{
    useModel("print [00%3A00%3A00.000 --> 00%3A00%3A15.000]   %0A\n");
    recordTake();
    screen->transcribe();
    waitForStatus(u"Done"_qs);
    ASSERT_EQ(bench.history.entries().size(), 1);
    EXPECT_EQ(bench.history.entries().first().text, QString());
}

TEST_F(MicrophoneScreenRun, saysWhenTheHistoryCannotBeSaved)
{
    begin();
    QDir(bench.history.recordingsDirectory()).removeRecursively();
    QFile blocker(bench.history.recordingsDirectory());
    ASSERT_TRUE(blocker.open(QIODevice::WriteOnly));
    screen->toggleRecording();
    EXPECT_TRUE(bench.history.errorMessage().value_or(QString()).startsWith(u"Unable to save history: "_qs));
    EXPECT_EQ(run().status(), u"Recording ready. Transcribe when you're ready."_qs);
}

// The run

TEST_F(MicrophoneScreenRun, needsATake)
{
    useModel({});
    screen->transcribe();
    EXPECT_EQ(error(), u"Please record audio first."_qs);
    EXPECT_FALSE(run().isTranscribing());
}

TEST_F(MicrophoneScreenRun, needsAModel)
{
    recordTake();
    EXPECT_FALSE(screen->canStart());
    screen->transcribe();
    EXPECT_EQ(error(), u"Please select a downloaded model."_qs);
    EXPECT_FALSE(run().isTranscribing());
}

TEST_F(MicrophoneScreenRun, givesTheTakeToTheEngineAsItStands)
{
    useModel("arguments\n");
    screen->language()->setLanguage(u"fr"_qs);
    const QString take = recordTake();
    EXPECT_TRUE(screen->canStart());
    screen->transcribe();
    EXPECT_TRUE(run().isTranscribing()) << "at once, before the preparation";
    EXPECT_EQ(run().status(), u"Preparing…"_qs);
    EXPECT_EQ(screen->startLabel(), u"Transcribing…"_qs);
    EXPECT_FALSE(screen->canStart());
    EXPECT_FALSE(screen->canRecord());
    QStringList statuses;
    const auto connection =
        QObject::connect(&run(), &TranscriptionRun::statusChanged, screen.get(), [&] { statuses << run().status(); });
    waitForStatus(u"Done"_qs);
    QObject::disconnect(connection);
    EXPECT_EQ(statuses, QStringList{u"Done"_qs}) << "the preparation says nothing";
    EXPECT_TRUE(run().rawOutput().contains(take));
    EXPECT_TRUE(run().rawOutput().contains(u"fr"_qs));
    EXPECT_TRUE(QFileInfo::exists(take));
    EXPECT_EQ(screen->startLabel(), u"Transcribe"_qs);
}

TEST_F(MicrophoneScreenRun, endsAnOpenTakeAndEntersItBeforeTheRunBegins)
{
    useModel("sleep 300\n");
    begin();
    seconds = 3;
    EXPECT_TRUE(screen->canStart());
    QStringList statuses;
    qsizetype enteredBefore = -1;
    const QObject listener;
    QObject::connect(&run(), &TranscriptionRun::statusChanged, &listener, [&] { statuses << run().status(); });
    QObject::connect(&run(), &TranscriptionRun::isTranscribingChanged, &listener, [&] {
        if (run().isTranscribing())
            enteredBefore = bench.history.entries().size();
    });
    screen->transcribe();
    EXPECT_FALSE(screen->isRecording());
    EXPECT_TRUE(run().isTranscribing());
    EXPECT_EQ(enteredBefore, 1);
    EXPECT_EQ(screen->recordingDuration(), 3);
    waitForStatus(u"Done"_qs);
    EXPECT_THAT(statuses,
                ElementsAre(u"Recording ready. Transcribe when you're ready."_qs, u"Preparing…"_qs, u"Done"_qs));
}

TEST_F(MicrophoneScreenRun, endsAnOpenTakeAlsoIfItCannotBegin)
{
    begin();
    screen->transcribe();
    EXPECT_FALSE(screen->isRecording());
    EXPECT_EQ(bench.history.entries().size(), 1);
    EXPECT_EQ(error(), u"Please select a downloaded model."_qs);
}

TEST_F(MicrophoneScreenRun, canBeStoppedDuringThePreparation)
{
    useModel("sleep 500\n");
    recordTake();
    screen->transcribe();
    run().stopRun();
    EXPECT_EQ(run().status(), u"Stopping…"_qs);
    waitFor([this] { return !run().isTranscribing(); });
    EXPECT_EQ(run().status(), u"Cancelled"_qs);
    EXPECT_EQ(error(), u"none"_qs);
    EXPECT_EQ(bench.history.entries().first().text, QString());
}

TEST_F(MicrophoneScreenRun, takesNoNewTakeMeanwhile)
{
    useModel("sleep 300\n");
    recordTake();
    screen->toggleRecording();
    const auto late = microphone.answer;
    screen->transcribe();
    late(true);
    EXPECT_FALSE(screen->isRecording()) << "also if the answer was waited for";
    microphone.calls.clear();
    screen->toggleRecording();
    screen->togglePause();
    EXPECT_EQ(microphone.calls, QStringList());
    waitForStatus(u"Done"_qs);
}

TEST_F(MicrophoneScreenRun, saysWhatTheEngineFailedWith)
{
    useModel("complain bad%0A\nexit 1\n");
    recordTake();
    screen->transcribe();
    waitFor([this] { return run().hasError(); });
    EXPECT_EQ(run().errorText(), u"Whisper failed: bad"_qs);
    EXPECT_EQ(run().status(), QString());
}

TEST_F(MicrophoneScreenRun, choosesTheModel)
{
    EXPECT_EQ(screen->model()->modelPath(), std::nullopt);
    EXPECT_EQ(screen->model()->hint(),
              u"No models downloaded. Visit Models Settings to download a model into Application "
              u"Support/Sorvanta/Models."_qs);
    useModel({});
    EXPECT_EQ(screen->model()->modelName(), u"Base"_qs);
    EXPECT_EQ(screen->model()->hint(), u"Need another model? Open Models Settings to download it."_qs);
}

// Saving

TEST_F(MicrophoneScreenRun, savesNothingWithoutATake)
{
    screen->saveAudio();
    EXPECT_TRUE(bench.panels.saveRequests.isEmpty());
}

TEST_F(MicrophoneScreenRun, savesACopyWhereTheUserSays)
{
    const QString take = recordTake();
    screen->saveAudio();
    ASSERT_EQ(bench.panels.saveRequests.size(), 1);
    EXPECT_EQ(bench.panels.saveRequests.first().name, QFileInfo(take).fileName());
    EXPECT_EQ(bench.panels.saveRequests.first().extensions, QStringList{u"wav"_qs});
    const QString place = bench.file(u"mine.wav"_qs);
    bench.panels.answer(place);
    EXPECT_EQ(run().status(), u"Saved recording to mine.wav"_qs);
    EXPECT_EQ(contentOf(place), "a take");
    EXPECT_TRUE(QFileInfo::exists(take));
}

TEST_F(MicrophoneScreenRun, savesOverAFileThatIsThere)
{
    recordTake();
    const QString place = bench.file(u"mine.wav"_qs);
    QFile file(place);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("something longer than a take");
    file.close();
    screen->saveAudio();
    bench.panels.answer(place);
    EXPECT_EQ(contentOf(place), "a take");
}

TEST_F(MicrophoneScreenRun, doesNotRemoveTheTakeWhenItIsSavedOverItself)
{
    const QString take = recordTake();
    screen->saveAudio();
    bench.panels.answer(take);
    EXPECT_EQ(contentOf(take), "a take");
    EXPECT_EQ(run().status(), u"Saved recording to "_qs + QFileInfo(take).fileName());
}

TEST_F(MicrophoneScreenRun, leavesTheFileThatIsThereIfTheTakeIsGone)
{
    const QString take = recordTake();
    const QString place = bench.file(u"mine.wav"_qs);
    QFile file(place);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("an older take");
    file.close();
    QFile::remove(take);
    screen->saveAudio();
    bench.panels.answer(place);
    EXPECT_TRUE(error().startsWith(u"Could not save recording: "_qs)) << error().toStdString();
    EXPECT_EQ(contentOf(place), "an older take");
}

TEST_F(MicrophoneScreenRun, leavesTheFileThatIsThereIfTheCopyFails)
{
    const QString take = recordTake();
    const QString place = bench.file(u"mine.wav"_qs);
    ASSERT_TRUE(QFile::rename(take, place));
    ASSERT_TRUE(QDir().mkpath(take)); // which cannot be copied
    screen->saveAudio();
    bench.panels.answer(place);
    EXPECT_EQ(error(),
              u"Could not save recording: The file “%1” couldn’t be opened."_qs.arg(QFileInfo(take).fileName()));
    EXPECT_EQ(contentOf(place), "a take");
}

TEST_F(MicrophoneScreenRun, savesNothingIfThePanelIsDeclined)
{
    recordTake();
    screen->saveAudio();
    bench.panels.answer(std::nullopt);
    EXPECT_EQ(run().status(), u"Recording ready. Transcribe when you're ready."_qs);
    EXPECT_EQ(error(), u"none"_qs);
}

TEST_F(MicrophoneScreenRun, saysWhySavingFails)
{
    recordTake();
    screen->saveAudio();
    bench.panels.answer(bench.file(u"missing/mine.wav"_qs));
    EXPECT_TRUE(error().startsWith(u"Could not save recording: "_qs)) << error().toStdString();
    EXPECT_GT(error().size(), 30);
    EXPECT_EQ(run().status(), u"Recording ready. Transcribe when you're ready."_qs);
}

// Playback

TEST_F(MicrophoneScreenRun, playsTheTake)
{
    const QString take = recordTake();
    players.calls.clear();
    screen->togglePlayback();
    EXPECT_EQ(players.takeCalls(), (QStringList{u"open "_qs + take, u"play"_qs}));
    EXPECT_EQ(screen->playLabel(), u"Pause Playback"_qs);
    EXPECT_EQ(screen->playSymbol(), u"pause.fill"_qs);
    EXPECT_EQ(run().status(), u"Playing recording…"_qs);
    screen->togglePlayback();
    EXPECT_EQ(screen->playLabel(), u"Play Recording"_qs);
}

TEST_F(MicrophoneScreenRun, fallsSilentWhenANewTakeIsAskedFor)
{
    recordTake();
    screen->togglePlayback();
    screen->toggleRecording();
    EXPECT_FALSE(screen->playback().hasPlayer());
    EXPECT_EQ(screen->playback().playbackTime(), 0);
}

TEST_F(MicrophoneScreenRun, playsNothingWithoutATake)
{
    screen->togglePlayback();
    EXPECT_EQ(players.calls, QStringList());
    EXPECT_EQ(error(), u"none"_qs);
}

TEST_F(MicrophoneScreenRun, saysWhyATakeCannotBePlayed)
{
    recordTake();
    players.refusal = Error(u"libmpv"_qs, -13, u"loading failed"_qs);
    screen->togglePlayback();
    EXPECT_EQ(error(), u"Unable to play audio: loading failed"_qs);
}

TEST_F(MicrophoneScreenRun, theViewerFollowsAndPlays)
{
    useModel(twoLines);
    const TranscriptWindowModel &viewer = screen->pane()->viewer()->model();
    EXPECT_FALSE(viewer.isPlaybackAvailable());
    recordTake();
    EXPECT_TRUE(viewer.isPlaybackAvailable());
    screen->transcribe();
    waitForStatus(u"Done"_qs);
    screen->pane()->openFullView();
    EXPECT_EQ(viewer.transcript(), u"- One\nTwo"_qs);
    EXPECT_EQ(viewer.counts(), u"3 words · 9 chars"_qs);
    ASSERT_EQ(viewer.segments().size(), 2);
    EXPECT_EQ(viewer.segments().last().startSeconds, 15);
    TranscriptWindowView &window = *screen->pane()->viewer()->transcriptWindow();
    window.togglePlay();
    EXPECT_TRUE(viewer.isPlaying());
    EXPECT_TRUE(screen->playback().isPlaying());
    EXPECT_EQ(viewer.playbackDuration(), 10);
    window.slideTo(4);
    EXPECT_EQ(viewer.currentTime(), 4);
    EXPECT_EQ(screen->playback().playbackTime(), 4);
    window.togglePlay();
    EXPECT_FALSE(viewer.isPlaying());
    run().setStripDashes(true);
    EXPECT_EQ(viewer.transcript(), u"One\nTwo"_qs);
    EXPECT_EQ(viewer.segments().first().text, u"One"_qs);
    begin();
    EXPECT_EQ(viewer.transcript(), QString());
    EXPECT_EQ(viewer.currentTime(), 0);
}

TEST_F(MicrophoneScreenRun, showsTheTranscriptInThePane)
{
    useModel(twoLines);
    recordTake();
    EXPECT_FALSE(screen->pane()->isShown());
    screen->transcribe();
    waitForStatus(u"Done"_qs);
    EXPECT_TRUE(screen->pane()->isShown());
    EXPECT_EQ(run().displayedTranscript(), u"- One\nTwo"_qs);
    run().setStripDashes(true);
    EXPECT_EQ(run().displayedTranscript(), u"One\nTwo"_qs);
}

} // namespace
