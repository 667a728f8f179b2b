#include "page_states.h"
#include "screens/meeting/meeting_recorder_view.h"
#include "support/printing.h"
#include "support/transcribing_test.h"
#include "ui/support/ui_test.h"
#include "unit/audio/fake_audio_player.h"
#include "unit/meeting/fake_sound.h"

#include <gmock/gmock.h>

#include <QTest>

namespace sorvanta {

namespace {

using testing::ElementsAre;

/// An engine that is through 42 of 100 seconds and goes on for long.
const QByteArray at42Percent =
    "print main%3A processing 'a.wav' (1600000 samples, 100.0 sec), 4 threads%0A\n"
    "print [00%3A00%3A00.000 --> 00%3A00%3A10.000]   Good morning, everybody is here now.%0A\n"
    "print [00%3A00%3A10.000 --> 00%3A00%3A42.000]   - Then let us begin with the minutes.%0A\n"
    "sleep 60000\n";

/// The page of the meeting screen with the real screen behind it, over a machine that the test plays.
class MeetingPage : public TranscribingTest<UiTest> {
protected:
    MeetingPage()
    {
        MeetingRecorderView::Surroundings surroundings{.shared = bench.surroundings(),
                                                       .recorder = sound.surroundings()};
        surroundings.recorder.openPlayer = players.opener();
        screen = std::make_unique<MeetingRecorderView>(surroundings);
    }
    /// A recording is finished in the background, and its folder stays until then.
    void TearDown() override
    {
        UiTest::TearDown();
        screen->disappear();
        const ScreenAudioRecorder &recorder = screen->recorder();
        waitFor([&recorder] { return recorder.isStarting() || !recorder.systemURL(); });
    }

    void showPage(int width = 940, int height = 700)
    {
        showType("Sorvanta.Screens", "MeetingRecorderPage",
                 {{"view", QVariant::fromValue(screen.get())}, {"width", width}, {"height", height}});
    }
    TranscriptionRun &run() override { return *screen->run(); }
    void useModel(const QByteArray &commands = {})
    {
        bench.installModel("ggml-base.bin", commands);
        screen->appear();
    }
    void record(bool includeMic = false)
    {
        screen->setIncludeMic(includeMic);
        screen->toggleRecording();
        sound.answerOpening({.hasDisplay = true});
        if (includeMic)
            sound.answerMic(true);
    }
    void recordAndStop()
    {
        record();
        sound.play(500, 0.3);
        screen->toggleRecording();
        waitFor([this] { return !screen->recorder().systemURL(); });
    }

    FakeSound sound;
    FakePlayers players;
    std::unique_ptr<MeetingRecorderView> screen;
};

TEST_F(MeetingPage, anIdlePageSaysItsWordsInOrder)
{
    screen->appear();
    showPage();
    EXPECT_THAT(
        spokenWords(accessible(window.get())),
        ElementsAre("Record Meeting (System Audio)",
                    "Capture “what you hear” using Apple’s ScreenCaptureKit (no virtual devices). Only audio is "
                    "captured—no screen frames. macOS will still ask for Screen Recording permission because Apple "
                    "gates system-audio access behind it.",
                    "Include microphone (your voice)",
                    "When on, mixes your microphone into the recording. Requires mic permission.",
                    "Record System Audio + Microphone", "Play Latest", "Save Audio",
                    "Press Record to capture system output audio.", "Model",
                    "No models downloaded. Visit Models Settings to download a model into Application "
                    "Support/Sorvanta/Models.",
                    "Language", "Default is auto-detect. Pick a code to force transcription language.", "Language",
                    "Transcribe"));
    EXPECT_FALSE(item("playButton")->isEnabled());
    EXPECT_FALSE(item("saveButton")->isEnabled());
    EXPECT_FALSE(item("transcribeButton")->isEnabled());
    EXPECT_FALSE(isShown("pauseButton"));
    EXPECT_FALSE(isShown("playbackSlider"));
    EXPECT_FALSE(isShown("errorText"));
}

TEST_F(MeetingPage, theSwitchAndTheScreenFollowEachOther)
{
    showPage();
    EXPECT_TRUE(item("includeMicSwitch")->property("checked").toBool());
    click(item("includeMicSwitch"));
    EXPECT_FALSE(screen->includeMic());
    EXPECT_EQ(text("recordButton"), "Record System Audio");
    pressAccessibly(item("includeMicSwitch"));
    EXPECT_TRUE(screen->includeMic());
    screen->setIncludeMic(false);
    EXPECT_FALSE(item("includeMicSwitch")->property("checked").toBool());
}

TEST_F(MeetingPage, theSwitchIsNeverDisabled)
{
    record();
    showPage();
    EXPECT_TRUE(item("includeMicSwitch")->isEnabled());
}

TEST_F(MeetingPage, whileItStartsTheButtonWaits)
{
    showPage();
    pressAccessibly(item("recordButton"));
    EXPECT_FALSE(item("recordButton")->isEnabled());
    EXPECT_EQ(text("recordStatus"), "Starting…");
    EXPECT_FALSE(isShown("pauseButton"));
}

TEST_F(MeetingPage, aRecordingIsRedAndCanBePaused)
{
    useModel();
    showPage();
    const QColor idle = pixel(item("recordButton"), 6, 16);
    record();
    EXPECT_EQ(text("recordButton"), "Stop Recording");
    EXPECT_NE(pixel(item("recordButton"), 6, 16), idle);
    EXPECT_EQ(pixel(item("recordButton"), 6, 16), color("dangerFill"));
    EXPECT_EQ(idle, color("accent"));
    EXPECT_TRUE(isShown("pauseButton"));
    EXPECT_TRUE(item("playButton")->isEnabled());
    EXPECT_TRUE(item("saveButton")->isEnabled());
    EXPECT_EQ(text("headline"), "Recording system audio… 0:00");
    EXPECT_EQ(text("recordStatus"), "Recording system audio.");
    click(item("pauseButton"));
    EXPECT_EQ(text("pauseButton"), "Resume");
    EXPECT_EQ(text("recordStatus"), "Recording paused.");
    EXPECT_EQ(text("headline"), "Recording system audio… 0:00");
}

TEST_F(MeetingPage, theButtonsStandInTheirOrder)
{
    record();
    showPage();
    EXPECT_LT(place("recordButton").right(), place("pauseButton").left());
    EXPECT_LT(place("pauseButton").right(), place("playButton").left());
    EXPECT_LT(place("playButton").right(), place("saveButton").left());
}

TEST_F(MeetingPage, theFocusGoesOnWhenThePauseButtonGoes)
{
    record();
    showPage();
    tabTo(item("pauseButton"));
    screen->toggleRecording();
    settle();
    EXPECT_TRUE(item("recordButton")->hasActiveFocus());
}

TEST_F(MeetingPage, aFinishedRecordingCanBePlayedSavedAndTranscribed)
{
    useModel();
    recordAndStop();
    showPage();
    EXPECT_TRUE(text("headline").startsWith("Latest recording ready: meeting_"));
    EXPECT_EQ(text("recordStatus"), "Captured audio. Use Transcribe below.");
    EXPECT_TRUE(item("transcribeButton")->isEnabled());
    click(item("saveButton"));
    EXPECT_EQ(bench.panels.saveRequests.size(), 1);
    players.duration = 75;
    click(item("playButton"));
    EXPECT_EQ(text("playButton"), "Pause Playback");
    EXPECT_TRUE(isShown("playbackSlider"));
    EXPECT_EQ(text("positionText"), "0:00");
    EXPECT_EQ(text("durationText"), "1:15");
}

TEST_F(MeetingPage, theSliderGoesInTenthsOfASecond)
{
    recordAndStop();
    showPage();
    players.duration = 10;
    screen->playLatest();
    QQuickItem *slider = item("playbackSlider");
    EXPECT_EQ(slider->property("from").toDouble(), 0);
    EXPECT_EQ(slider->property("to").toDouble(), 10);
    EXPECT_EQ(slider->property("stepSize").toDouble(), 0.1);
    players.takeCalls();
    slider->forceActiveFocus();
    press(Qt::Key_Right);
    EXPECT_THAT(players.takeCalls(), ElementsAre("seek 0.1", "play"));
    click(slider);
    EXPECT_NEAR(screen->sliderPosition(), 5, 0.2);
    EXPECT_NEAR(screen->sliderPosition() * 10, std::round(screen->sliderPosition() * 10), 1e-6);
}

TEST_F(MeetingPage, anErrorStandsInRedInTheRecordingBlock)
{
    showPage();
    screen->toggleRecording();
    sound.answerOpening({});
    EXPECT_EQ(text("errorText"), "No display found to capture audio from.");
    EXPECT_TRUE(isShown("errorText"));
    EXPECT_FALSE(isShown("copyErrorButton"));
    EXPECT_EQ(item("errorText")->property("color").value<QColor>(), color("danger"));
    settle(); // the rows find their places
    EXPECT_LT(place("headline").bottom(), place("errorText").top());
    EXPECT_LT(place("errorText").bottom(), place("languagePicker").top());
}

TEST_F(MeetingPage, aRunShowsItsRows)
{
    useModel(at42Percent);
    recordAndStop();
    showPage();
    QStringList statuses;
    QObject::connect(&run(), &RunState::statusChanged, root, [&] { statuses << text("statusText"); });
    EXPECT_FALSE(isShown("progressBar"));
    click(item("transcribeButton"));
    EXPECT_EQ(text("transcribeButton"), "Transcribing…");
    EXPECT_TRUE(item("transcribeButton")->property("busy").toBool());
    EXPECT_FALSE(item("transcribeButton")->isEnabled());
    waitFor([this] { return run().progress() == 0.42; });
    EXPECT_TRUE(isShown("progressBar"));
    EXPECT_EQ(text("progressText"), "Progress: 42%");
    EXPECT_TRUE(isShown("transcriptLines"));
    EXPECT_THAT(statuses, ElementsAre("Converting…", "Preparing…"));
}

TEST_F(MeetingPage, isDarkInTheDark)
{
    useModel();
    record(true);
    showPage();
    setDark(true);
    EXPECT_EQ(pixel(item("recordButton"), 6, 16), color("dangerFill"));
}

TEST_F(MeetingPage, everyButtonIsPressedByAScreenReader)
{
    recordAndStop();
    showPage();
    pressAccessibly(item("recordButton"));
    sound.answerOpening({.hasDisplay = true});
    EXPECT_TRUE(screen->isRecording());
    pressAccessibly(item("pauseButton"));
    EXPECT_TRUE(screen->recorder().isPaused());
    pressAccessibly(item("playButton"));
    EXPECT_EQ(players.opened, 1);
    pressAccessibly(item("saveButton"));
    EXPECT_EQ(bench.panels.saveRequests.size(), 1);
}

// Every state, in the light, in the dark and in a narrow window.

class MeetingPageState : public MeetingPage {
public:
    // How each is reached, behind a page that is on show.
    void withoutAModel() { }
    void idle() { useModel(); }
    void withoutTheMicrophone()
    {
        useModel();
        screen->setIncludeMic(false);
    }
    void starting()
    {
        useModel();
        screen->toggleRecording();
    }
    void unstartable()
    {
        starting();
        sound.answerOpening({});
    }
    void refused()
    {
        starting();
        sound.answerOpening({.failure = Error(systemSoundErrorDomain, systemSoundDeclined, "Access denied.")});
    }
    void recording()
    {
        useModel();
        record();
        sound.play(500, 0.3);
    }
    void recordingWithoutTheMicrophone()
    {
        starting();
        sound.answerOpening({.hasDisplay = true});
        sound.answerMic(false);
    }
    void paused()
    {
        recording();
        screen->togglePause();
    }
    void playedWhileRecording()
    {
        players.duration = 4000;
        recording();
        screen->playLatest();
    }
    void finishing()
    {
        recording();
        screen->toggleRecording();
    }
    void ready()
    {
        useModel();
        recordAndStop();
    }
    void unmixed()
    {
        sound.micSeconds = -1;
        useModel();
        record(true);
        sound.play(500, 0.3);
        screen->toggleRecording();
        waitFor([this] { return run().hasError(); });
    }
    void playing()
    {
        players.duration = 75;
        ready();
        screen->playLatest();
        screen->moveSlider(30);
    }
    void playbackPaused()
    {
        playing();
        screen->playLatest();
    }
    void unplayable()
    {
        players.refusal = Error("libmpv", -13, "loading failed");
        ready();
        screen->playLatest();
    }
    void saved()
    {
        ready();
        screen->saveAudio();
        bench.panels.answer(bench.file("The minutes of the north end.m4a"));
    }
    void unsaved()
    {
        ready();
        screen->saveAudio();
        bench.panels.answer(bench.file("nowhere/The minutes.m4a"));
    }
    void converting()
    {
        useModel(at42Percent);
        recordAndStop();
        screen->transcribe();
    }
    void preparing()
    {
        transcribe("sleep 60000\n", [this] { return run().status() == "Preparing…"; });
    }
    void running()
    {
        transcribe(at42Percent, [this] { return run().progress() == 0.42; });
    }
    void stopping()
    {
        transcribe("ignore-stop\n" + at42Percent, [this] { return run().progress() == 0.42; });
        run().stopRun();
    }
    void cancelled()
    {
        running();
        run().stopRun();
        waitFor([this] { return !run().isTranscribing(); });
    }
    void done()
    {
        transcribe(QByteArray(at42Percent).replace("sleep 60000", "exit 0"),
                   [this] { return run().status() == "Done"; });
    }
    void failed()
    {
        transcribe("complain " + QByteArray("a long log of the engine ").repeated(60) + "%0A\nexit 1\n",
                   [this] { return run().hasError(); });
    }

private:
    template<typename Condition>
    void transcribe(const QByteArray &commands, Condition isReached)
    {
        useModel(commands);
        recordAndStop();
        screen->transcribe();
        waitFor(isReached);
    }
};

struct MeetingState {
    const char *name;
    void (MeetingPageState::*reach)();
    const char *buttons; // in their order; those that are off in brackets
    const char *headline; // how it begins
    const char *recordStatus;
    const char *status;
    const char *error; // how it begins
};

using State = MeetingPageState;
constexpr auto pressRecord = "Press Record to capture system output audio.";
constexpr auto recordingHeadline = "Recording system audio… 0:00";
constexpr auto rawHeadline = "Latest recording ready: meeting-system-";
constexpr auto finalHeadline = "Latest recording ready: meeting_";
constexpr auto captured = "Captured audio. Use Transcribe below.";
constexpr auto noOutputButtons = "Record System Audio + Microphone, (Play Latest), (Save Audio), (Transcribe)";
constexpr auto recordingButtons = "Stop Recording, Pause, Play Latest, Save Audio, Transcribe";
constexpr auto readyButtons = "Record System Audio, Play Latest, Save Audio, Transcribe";
constexpr auto runButtons = "Record System Audio, Play Latest, Save Audio, (Transcribing…), Stop";

const MeetingState meetingStates[] = {
    {"withoutAModel", &State::withoutAModel, noOutputButtons, pressRecord, "", "", ""},
    {"idle", &State::idle, noOutputButtons, pressRecord, "", "", ""},
    {"withoutTheMicrophone", &State::withoutTheMicrophone,
     "Record System Audio, (Play Latest), (Save Audio), (Transcribe)", pressRecord, "", "", ""},
    {"starting", &State::starting, "(Record System Audio + Microphone), (Play Latest), (Save Audio), (Transcribe)",
     pressRecord, "Starting…", "", ""},
    {"unstartable", &State::unstartable, noOutputButtons, pressRecord, "", "",
     "No display found to capture audio from."},
    {"refused", &State::refused, noOutputButtons, pressRecord, "", "",
     "Screen Recording permission is required to capture system audio. Open System Settings → Privacy & Security → "
     "Screen Recording and enable this app."},
    {"recording", &State::recording, recordingButtons, recordingHeadline, "Recording system audio.", "", ""},
    {"recordingWithoutTheMicrophone", &State::recordingWithoutTheMicrophone, recordingButtons, recordingHeadline,
     "Recording system audio.", "", "Microphone capture unavailable. Recording system audio only. Microphone "},
    {"paused", &State::paused, "Stop Recording, Resume, Play Latest, Save Audio, Transcribe", recordingHeadline,
     "Recording paused.", "", ""},
    {"playedWhileRecording", &State::playedWhileRecording,
     "Stop Recording, Pause, Pause Playback, Save Audio, Transcribe", recordingHeadline, "Playing latest recording…",
     "", ""},
    {"finishing", &State::finishing, readyButtons, rawHeadline, captured, "", ""},
    {"ready", &State::ready, readyButtons, finalHeadline, captured, "", ""},
    {"unmixed", &State::unmixed, "Record System Audio + Microphone, Play Latest, Save Audio, Transcribe", rawHeadline,
     captured, "", "Could not mix microphone audio. System audio only was captured."},
    {"playing", &State::playing, "Record System Audio, Pause Playback, Save Audio, Transcribe", finalHeadline,
     "Playing latest recording…", "", ""},
    {"playbackPaused", &State::playbackPaused, "Record System Audio, Resume Playback, Save Audio, Transcribe",
     finalHeadline, "Playback paused.", "", ""},
    {"unplayable", &State::unplayable, readyButtons, finalHeadline, captured, "",
     "Unable to play audio: loading failed"},
    {"saved", &State::saved, readyButtons, finalHeadline, "Saved recording to The minutes of the north end.m4a", "",
     ""},
    {"unsaved", &State::unsaved, readyButtons, finalHeadline, captured, "", "Could not save recording: "},
    {"converting", &State::converting, runButtons, finalHeadline, captured, "Converting…", ""},
    {"preparing", &State::preparing, runButtons, finalHeadline, captured, "Preparing…", ""},
    {"running", &State::running, runButtons, finalHeadline, captured, "", ""},
    {"stopping", &State::stopping, runButtons, finalHeadline, captured, "", ""},
    {"cancelled", &State::cancelled, readyButtons, finalHeadline, captured, "Cancelled", ""},
    {"done", &State::done, readyButtons, finalHeadline, captured, "Done", ""},
    {"failed", &State::failed, readyButtons, finalHeadline, captured, "", "Whisper failed: a long log of the engine"},
};

class MeetingPageStates : public PageStates<MeetingPageState>, public testing::WithParamInterface<MeetingState> { };

INSTANTIATE_TEST_SUITE_P(Each, MeetingPageStates, testing::ValuesIn(meetingStates),
                         [](const auto &state) { return std::string(state.param.name); });

TEST_P(MeetingPageStates, showsItsButtonsAndWords)
{
    const MeetingState &state = GetParam();
    screen->appear();
    showPage();
    (this->*state.reach)();
    EXPECT_EQ(
        shownButtons({"recordButton", "pauseButton", "playButton", "saveButton", "transcribeButton", "stopButton"}),
        QString::fromUtf8(state.buttons));
    EXPECT_TRUE(text("headline").startsWith(QString::fromUtf8(state.headline))) << text("headline").toStdString();
    EXPECT_EQ(ifShown("recordStatus"), QString::fromUtf8(state.recordStatus));
    EXPECT_EQ(ifShown("statusText"), QString::fromUtf8(state.status));
    const auto error = QString::fromUtf8(state.error);
    EXPECT_EQ(ifShown("errorText").left(error.size()), error);
    EXPECT_EQ(isShown("errorText"), !error.isEmpty());
    EXPECT_EQ(isShown("playbackSlider"), players.opened > 0);
    EXPECT_TRUE(item("includeMicSwitch")->isEnabled());
    lookAtAll(QString("meeting-%1").arg(state.name));
}

} // namespace

} // namespace sorvanta
