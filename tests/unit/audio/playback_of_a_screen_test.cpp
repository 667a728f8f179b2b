#include "audio/playback_controller.h"
#include "unit/audio/listening_test.h"

#include <QSignalSpy>

using namespace sorvanta;

namespace {

/// A controller with the real player.
class PlaybackOfAScreen : public ListeningTest {
protected:
    std::unique_ptr<PlaybackController> controllerOf(const PlaybackSettings &settings)
    {
        return std::make_unique<PlaybackController>(settings,
                                                    PlaybackController::Hooks{
                                                        .file = [this] { return file; },
                                                        .setError = [this](const QString &text) { error = text; },
                                                        .updateActiveSegment = [this](double time) { marks << time; },
                                                        .clearActiveSegment = [this] { ++clearings; },
                                                    });
    }

    std::optional<QString> file;
    QString error;
    QList<double> marks;
    int clearings = 0;
};

class PlaybackOfEachScreen : public PlaybackOfAScreen, public testing::WithParamInterface<PlaybackSettings (*)()> { };

INSTANTIATE_TEST_SUITE_P(Screens, PlaybackOfEachScreen,
                         testing::Values(filePlayback, microphonePlayback, meetingPlayback, historyPlayback));

TEST_P(PlaybackOfEachScreen, isHeardFromTheStartAgainAfterTheEnd)
{
    file = makeNoise(u"a.wav"_qs, 1.5);
    const SoundReference sound(*file);
    const auto controller = controllerOf(GetParam()());
    SoundRecording recording;
    for (int i = 0; i < 2; ++i) {
        const auto before = soundSpans(recording.samples()).size();
        controller->togglePlayback();
        waitFor([&] { return controller->playbackTime() > 0.5; });
        EXPECT_NEAR(controller->playbackDuration(), 1.5, 0.001);
        waitFor([&] { return !controller->isPlaying(); });
        EXPECT_EQ(controller->playbackTime(), 0);
        recording.hear(0.4);
        const auto &heard = recording.samples();
        const auto spans = soundSpans(heard);
        ASSERT_GT(spans.size(), before);
        EXPECT_NEAR(sound.beginOf(heard, spans[before]).value_or(-1), 0, 0.03);
        EXPECT_NEAR(sound.endOf(heard, spans.back()).value_or(-1), 1.5, 0.03);
    }
    EXPECT_EQ(error, QString());
}

TEST_P(PlaybackOfEachScreen, saysWhyWithoutASoundServer)
{
    server.kill();
    file = makeNoise(u"a.wav"_qs, 5);
    const auto controller = controllerOf(GetParam()());
    controller->togglePlayback();
    waitFor([this] { return !error.isEmpty(); });
    EXPECT_EQ(error, u"Unable to play audio: audio output initialization failed"_qs);
    EXPECT_FALSE(controller->isPlaying());
    EXPECT_FALSE(controller->hasPlayer());
}

TEST_P(PlaybackOfEachScreen, hasLibmpvsWordsForAFileThatCannotBeOpened)
{
    file = folder.write(u"a.wav"_qs, "no sound at all\n");
    const auto controller = controllerOf(GetParam()());
    controller->togglePlayback();
    waitFor([&] { return !controller->hasPlayer(); });
    EXPECT_FALSE(controller->isPlaying());
    EXPECT_EQ(error,
              GetParam()().reportsFailureToOpen ? u"Unable to play audio: unrecognized file format"_qs : QString());
}

TEST_F(PlaybackOfAScreen, resumesOnTheFileScreenWhereThePlayerWasReleased)
{
    file = makeNoise(u"a.mp3"_qs, 20);
    const SoundReference sound(*file);
    const auto controller = controllerOf(filePlayback());
    controller->seekPlayback(11.5);
    waitFor([&] { return controller->playbackTime() == 11.5; });
    EXPECT_FALSE(controller->isPlaying());
    EXPECT_EQ(marks, QList<double>{11.5});
    controller->stopPlayback(false);
    SoundRecording recording;
    controller->togglePlayback();
    hearSpans(recording, 1, 0.5);
    const auto &heard = recording.samples();
    EXPECT_NEAR(sound.beginOf(heard, soundSpans(heard).front()).value_or(-1), 11.5, 0.03)
        << "and nothing of the beginning is heard before";
}

TEST_F(PlaybackOfAScreen, marksTheSegmentOnEachTickOfTheFileScreen)
{
    file = makeNoise(u"a.wav"_qs, 2);
    const auto controller = controllerOf(filePlayback());
    controller->togglePlayback();
    waitFor([this] { return clearings == 1; });
    EXPECT_GE(marks.size(), 4);
    EXPECT_TRUE(std::is_sorted(marks.begin(), marks.end()));
    EXPECT_GT(marks.last(), 1);
}

TEST_F(PlaybackOfAScreen, goesOnInTheHistoryWhereTheSliderWasLetGo)
{
    file = makeNoise(u"a.wav"_qs, 20);
    const SoundReference sound(*file);
    const auto controller = controllerOf(historyPlayback());
    SoundRecording recording;
    controller->togglePlayback();
    hearSpans(recording, 1, 0.5);
    controller->beginScrubbing();
    recording.hear(0.4);
    for (const double position : {3.0, 9.0, 14.25})
        controller->seekPlayback(position);
    recording.hear(0.5);
    const auto before = soundSpans(recording.samples());
    EXPECT_LT(before.back().end, recording.seconds() - 0.5) << "it is silent meanwhile";
    controller->endScrubbing();
    hearSpans(recording, before.size() + 1, 0.5);
    const auto &heard = recording.samples();
    EXPECT_NEAR(sound.beginOf(heard, soundSpans(heard)[before.size()]).value_or(-1), 14.25, 0.03);
    waitFor([&] { return controller->playbackTime() > 14.25; });
    EXPECT_TRUE(controller->isPlaying());
}

} // namespace
