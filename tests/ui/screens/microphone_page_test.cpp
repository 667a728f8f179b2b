#include "page_states.h"
#include "support/fake_microphone.h"
#include "support/printing.h"
#include "support/transcribing_test.h"
#include "ui/support/ui_test.h"
#include "unit/audio/fake_audio_player.h"

#include <gmock/gmock.h>

#include <QTest>

namespace sorvanta {

namespace {

using testing::ElementsAre;

/// The page of the microphone screen with the real screen behind it, a microphone and an engine that do as they are
/// told.
class MicrophonePageTest : public TranscribingTest<UiTest> {
protected:
    MicrophonePageTest()
        : screen({.shared = bench.surroundings(),
                  .openPlayer = players.opener(),
                  .makeInput = microphone.input(),
                  .seconds = [this] { return seconds; }})
    {
    }

    void showPage()
    {
        showType("Sorvanta.Screens", "RecordAudioPage",
                 {{"view", QVariant::fromValue(&screen)}, {"width", 940}, {"height", 700}});
    }

    TranscriptionRun &run() override { return *screen.run(); }
    void useModel(const QByteArray &commands)
    {
        bench.installModel("ggml-large-v3-turbo.bin", commands);
        screen.appear();
    }
    /// An open take that has gone on for 84 seconds.
    void record()
    {
        screen.toggleRecording();
        microphone.answer(true);
        seconds += 84;
        waitFor([this] { return screen.recordingDuration() == seconds; });
    }

    FakePlayers players;
    FakeMicrophone microphone;
    double seconds = 0;
    RecordAudioView screen;
};

TEST_F(MicrophonePageTest, showsThatThereIsNoTakeYet)
{
    useModel({});
    showPage();
    EXPECT_EQ(text("recordButton"), "Record");
    EXPECT_FALSE(isShown("pauseButton"));
    EXPECT_EQ(text("heading"), "No recording yet");
    EXPECT_EQ(text("recordingStatusText"), "Press Record to capture microphone audio.");
    EXPECT_EQ(text("levelText"), "Not recording");
    EXPECT_TRUE(isEnabled("recordButton"));
    EXPECT_FALSE(isEnabled("playButton"));
    EXPECT_FALSE(isEnabled("saveButton"));
    EXPECT_FALSE(isEnabled("startButton"));
    EXPECT_FALSE(isShown("statusText"));
}

TEST_F(MicrophonePageTest, saysItsWordsInOrder)
{
    screen.appear();
    showPage();
    EXPECT_THAT(spokenWords(accessible(window.get())),
                ElementsAre("Record From Microphone",
                            "Record audio from your microphone, choose a downloaded model, and generate a transcript "
                            "using whisper.",
                            "Microphone", "Record", "No recording yet", "Press Record to capture microphone audio.",
                            "Audio is captured from your default microphone into a temporary WAV file.", "Level",
                            "Not recording", "Play Recording", "Save Audio", "Model",
                            "No models downloaded. Visit Models Settings to download a model into Application "
                            "Support/Sorvanta/Models.",
                            "Language", "Default is auto-detect. Pick a code to force transcription language.",
                            "Language", "Transcribe"));
    record();
    const QStringList words = spokenWords(accessible(window.get()));
    EXPECT_THAT(words.mid(3, 7),
                ElementsAre("Stop Recording", "Pause", "Recording…", "Recording time: 1:24",
                            "Audio is captured from your default microphone into a temporary WAV file.", "Level",
                            "No voice detected from your microphone"));
    EXPECT_EQ(words.last(), "Recording…");
}

TEST_F(MicrophonePageTest, standsWhereItStandsInTheDrawing)
{
    useModel({});
    showPage(); // 260 to the right of where the window draws it
    record();
    EXPECT_EQ(place("recordButton"), QRectF(78, 136, 146, 32));
    EXPECT_EQ(place("pauseButton").topLeft(), QPointF(232, 136));
    EXPECT_EQ(place("levelBar"), QRectF(94, 265, 752, 6));
    EXPECT_EQ(place("playButton").topLeft(), QPointF(78, 324));
    EXPECT_EQ(place("modelPicker"), QRectF(582, 400, 280, 32));
    EXPECT_EQ(place("languagePicker"), QRectF(582, 457, 280, 32));
    EXPECT_EQ(place("startButton"), QRectF(62, 517, 160, 32));
}

TEST_F(MicrophonePageTest, isRedWhileItRecords)
{
    showPage();
    EXPECT_EQ(pixel(item("recordButton"), 6, 16), color("accent"));
    record();
    EXPECT_EQ(pixel(item("recordButton"), 6, 16), color("dangerFill"));
    screen.togglePause();
    EXPECT_EQ(pixel(item("recordButton"), 6, 16), color("dangerFill"));
    screen.toggleRecording();
    EXPECT_EQ(pixel(item("recordButton"), 6, 16), color("accent"));
}

TEST_F(MicrophonePageTest, wordsAreSmallAndPaleBesideTheHeading)
{
    showPage();
    for (const char *name : {"recordingStatusText", "levelText"}) {
        EXPECT_EQ(item(name)->property("font").value<QFont>().pixelSize(), 12) << name;
        EXPECT_EQ(item(name)->property("color").value<QColor>(), color("text2")) << name;
    }
    EXPECT_EQ(item("heading")->property("font").value<QFont>().pixelSize(), 14);
    EXPECT_EQ(item("heading")->property("color").value<QColor>(), color("text"));
}

TEST_F(MicrophonePageTest, theLevelIsGreenOnlyWhileItRecords)
{
    showPage();
    const auto fill = [this] { return item("levelBar")->childItems().at(1)->property("color").value<QColor>(); };
    EXPECT_EQ(fill(), color("levelIdle"));
    EXPECT_EQ(item("levelBar")->childItems().at(0)->property("color").value<QColor>(), color("levelTrack"));
    record();
    EXPECT_EQ(fill(), color("level"));
    screen.togglePause();
    EXPECT_EQ(fill(), color("levelIdle"));
    screen.togglePause();
    EXPECT_EQ(fill(), color("level"));
    screen.toggleRecording();
    EXPECT_EQ(fill(), color("levelIdle"));
}

TEST_F(MicrophonePageTest, recordsPausesGoesOnAndStopsByItsButtons)
{
    useModel({});
    microphone.power = -8.4F;
    showPage();
    click(item("recordButton"));
    microphone.answer(true);
    seconds = 84;
    waitFor([this] { return text("recordingStatusText") == "Recording time: 1:24"; });
    EXPECT_EQ(text("recordButton"), "Stop Recording");
    EXPECT_EQ(text("pauseButton"), "Pause");
    EXPECT_TRUE(isShown("pauseButton"));
    EXPECT_EQ(text("heading"), "Recording…");
    EXPECT_EQ(text("levelText"), "Listening…");
    EXPECT_EQ(text("statusText"), "Recording…");
    EXPECT_FALSE(isEnabled("playButton"));
    EXPECT_TRUE(item("levelBar")->property("active").toBool());
    EXPECT_NEAR(item("levelBar")->property("level").toDouble(), 0.38, 0.001);

    click(item("pauseButton"));
    EXPECT_EQ(text("pauseButton"), "Resume");
    EXPECT_EQ(text("recordingStatusText"), "Paused at 1:24");
    EXPECT_EQ(text("statusText"), "Recording paused.");
    EXPECT_EQ(item("levelBar")->property("level").toDouble(), 0);
    EXPECT_FALSE(item("levelBar")->property("active").toBool());

    click(item("pauseButton"));
    EXPECT_EQ(text("pauseButton"), "Pause");
    click(item("recordButton"));
    EXPECT_EQ(text("recordButton"), "Record");
    EXPECT_FALSE(isShown("pauseButton"));
    EXPECT_EQ(text("heading"), "Latest recording ready");
    EXPECT_TRUE(text("recordingStatusText").startsWith("Ready to transcribe (microphone_"));
    EXPECT_EQ(text("statusText"), "Recording ready. Transcribe when you're ready.");
    EXPECT_TRUE(isEnabled("playButton"));
    EXPECT_TRUE(isEnabled("saveButton"));
    EXPECT_TRUE(isEnabled("startButton"));
}

TEST_F(MicrophonePageTest, drawsTheLevelBarAsWideAsTheLevel)
{
    showPage();
    record();
    const QQuickItem *bar = item("levelBar");
    EXPECT_EQ(bar->height(), 6);
    EXPECT_EQ(bar->width(), item("heading")->width());
    const auto fillWidth = [bar] { return bar->childItems().at(1)->width(); };
    waitFor([&] { return fillWidth() == 3; });
    microphone.power = -6.0206F;
    seconds += 1;
    waitFor([&] { return std::abs(fillWidth() - bar->width() / 2) < 0.5; });
    microphone.power = 6;
    seconds += 1;
    waitFor([&] { return fillWidth() == bar->width(); });
}

TEST_F(MicrophonePageTest, playsAndSavesByItsButtons)
{
    showPage();
    record();
    screen.toggleRecording();
    click(item("playButton"));
    EXPECT_EQ(text("playButton"), "Pause Playback");
    EXPECT_EQ(text("statusText"), "Playing recording…");
    click(item("playButton"));
    EXPECT_EQ(text("playButton"), "Play Recording");
    click(item("saveButton"));
    EXPECT_EQ(bench.panels.saveRequests.size(), 1);
}

TEST_F(MicrophonePageTest, showsARefusal)
{
    showPage();
    click(item("recordButton"));
    microphone.answer(false);
    EXPECT_EQ(text("errorText"), "Microphone access is required to record.");
    EXPECT_TRUE(isShown("errorText"));
    EXPECT_FALSE(isShown("copyErrorButton"));
}

TEST_F(MicrophonePageTest, showsARunAndItsTranscript)
{
    useModel("print main%3A processing 'a.wav' (1600000 samples, 100.0 sec), 4 threads%0A\n"
             "print [00%3A00%3A00.000 --> 00%3A00%3A42.000]   Good morning from the north end.%0A\n"
             "sleep 60000\n");
    showPage();
    record();
    click(item("startButton"));
    EXPECT_EQ(text("startButton"), "Transcribing…");
    EXPECT_FALSE(isEnabled("startButton"));
    EXPECT_FALSE(isEnabled("recordButton"));
    waitFor([this] { return run().progress() == 0.42; });
    EXPECT_EQ(text("progressText"), "Progress: 42%");
    click(item("stopButton"));
    waitFor([this] { return !run().isTranscribing(); });
    EXPECT_EQ(text("statusText"), "Cancelled");
    EXPECT_TRUE(isShown("transcriptLines"));
}

TEST_F(MicrophonePageTest, isDrivenByTheKeyboard)
{
    useModel({});
    showPage();
    tabTo(item("recordButton"));
    press(Qt::Key_Space);
    microphone.answer(true);
    press(Qt::Key_Tab);
    EXPECT_TRUE(item("pauseButton")->hasActiveFocus());
    press(Qt::Key_Space);
    EXPECT_TRUE(screen.isPaused());
    screen.toggleRecording();
    waitFor([this] { return item("recordButton")->hasActiveFocus(); });
}

// Every state, in the light, in the dark and in a narrow window.

class MicrophonePageState : public MicrophonePageTest {
public:
    // How each is reached, behind a page that is on show.
    void withoutAModel() { }
    void idle() { useModel({}); }
    void refused()
    {
        screen.toggleRecording();
        microphone.answer(false);
    }
    void unstartable()
    {
        microphone.refusal = Error("SoundCapture", 1, "There is no sound server.");
        screen.toggleRecording();
        microphone.answer(true);
    }
    void silent()
    {
        useModel({});
        record();
    }
    void heard()
    {
        microphone.power = -8.4F;
        silent();
    }
    void tooLoud()
    {
        microphone.power = 6;
        silent();
    }
    void paused()
    {
        heard();
        screen.togglePause();
    }
    void interrupted()
    {
        silent();
        microphone.events.interrupted(Error("SoundCapture", 5, "The sound server or the device went away."));
    }
    void outOfRoom()
    {
        silent();
        microphone.recorderEvents.failed(
            Error("NSCocoaErrorDomain", 640,
                  "You can’t save the file “microphone_2026-11-21_19-11_66197a.wav” because the volume “/tmp” is out "
                  "of space."));
    }
    void closed()
    {
        silent();
        screen.toggleRecording();
    }
    void playing()
    {
        closed();
        screen.togglePlayback();
    }
    void unplayable()
    {
        players.refusal = Error("libmpv", -13, "loading failed");
        playing();
    }
    void saved()
    {
        closed();
        screen.saveAudio();
        bench.panels.answer(bench.file("A talk on the north end.wav"));
    }
    void unsaved()
    {
        closed();
        screen.saveAudio();
        bench.panels.answer(bench.file("nowhere/A talk.wav"));
    }
    void preparing()
    {
        transcribe("sleep 60000\n", [this] { return screen.run()->isTranscribing(); });
    }
    void running()
    {
        transcribe(at42Percent + "sleep 60000\n", [this] { return screen.run()->progress() == 0.42; });
    }
    void stopping()
    {
        preparing();
        screen.run()->stopRun(); // before there is a child to be stopped
    }
    void cancelled()
    {
        running();
        screen.run()->stopRun();
        waitFor([this] { return !screen.run()->isTranscribing(); });
    }
    void done()
    {
        transcribe(at42Percent, [this] { return screen.run()->status() == "Done"; });
    }
    void failed()
    {
        transcribe("complain " + QByteArray("a long log of the engine ").repeated(60) + "%0A\nexit 1\n",
                   [this] { return screen.run()->hasError(); });
    }

private:
    template<typename Condition>
    void transcribe(const QByteArray &commands, Condition isReached)
    {
        useModel(commands);
        record();
        screen.transcribe();
        waitFor(isReached);
    }

    const QByteArray at42Percent =
        "print main%3A processing 'a.wav' (1600000 samples, 100.0 sec), 4 threads%0A\n"
        "print [00%3A00%3A00.000 --> 00%3A00%3A42.000]   Good morning from the north end.%0A\n";
};

struct MicrophoneState {
    const char *name;
    void (MicrophonePageState::*reach)();
    const char *buttons; // in their order; those that are off in brackets
    const char *level;
    const char *status;
    const char *error; // how it begins
};

using State = MicrophonePageState;
constexpr auto notRecording = "Not recording";
constexpr auto noVoice = "No voice detected from your microphone";
constexpr auto recordingReady = "Recording ready. Transcribe when you're ready.";
constexpr auto noTakeButtons = "Record, (Play Recording), (Save Audio), (Transcribe)";
constexpr auto takeButtons = "Stop Recording, Pause, (Play Recording), (Save Audio), Transcribe";
constexpr auto closedButtons = "Record, Play Recording, Save Audio, Transcribe";
constexpr auto runButtons = "(Record), Play Recording, Save Audio, (Transcribing…), Stop";

const MicrophoneState microphoneStates[] = {
    {"withoutAModel", &State::withoutAModel, noTakeButtons, notRecording, "", ""},
    {"idle", &State::idle, noTakeButtons, notRecording, "", ""},
    {"refused", &State::refused, noTakeButtons, notRecording, "", "Microphone access is required to record."},
    {"unstartable", &State::unstartable, noTakeButtons, notRecording, "",
     "Could not start recording: There is no sound server."},
    {"silent", &State::silent, takeButtons, noVoice, "Recording…", ""},
    {"heard", &State::heard, takeButtons, "Listening…", "Recording…", ""},
    {"tooLoud", &State::tooLoud, takeButtons, "Listening…", "Recording…", ""},
    {"paused", &State::paused, "Stop Recording, Resume, (Play Recording), (Save Audio), Transcribe", noVoice,
     "Recording paused.", ""},
    {"interrupted", &State::interrupted, takeButtons, noVoice, "Recording…",
     "The sound server or the device went away."},
    {"outOfRoom", &State::outOfRoom, closedButtons, notRecording, recordingReady,
     "You can’t save the file “microphone_"},
    {"closed", &State::closed, closedButtons, notRecording, recordingReady, ""},
    {"playing", &State::playing, "Record, Pause Playback, Save Audio, Transcribe", notRecording, "Playing recording…",
     ""},
    {"unplayable", &State::unplayable, closedButtons, notRecording, recordingReady,
     "Unable to play audio: loading failed"},
    {"saved", &State::saved, closedButtons, notRecording, "Saved recording to A talk on the north end.wav", ""},
    {"unsaved", &State::unsaved, closedButtons, notRecording, recordingReady, "Could not save recording: "},
    {"preparing", &State::preparing, runButtons, notRecording, "Preparing…", ""},
    {"running", &State::running, runButtons, notRecording, "", ""},
    {"stopping", &State::stopping, runButtons, notRecording, "Stopping…", ""},
    {"cancelled", &State::cancelled, closedButtons, notRecording, "Cancelled", ""},
    {"done", &State::done, closedButtons, notRecording, "Done", ""},
    {"failed", &State::failed, closedButtons, notRecording, "", "Whisper failed: a long log of the engine"},
};

class MicrophonePageStates : public PageStates<MicrophonePageState>,
                             public testing::WithParamInterface<MicrophoneState> { };

INSTANTIATE_TEST_SUITE_P(Each, MicrophonePageStates, testing::ValuesIn(microphoneStates),
                         [](const auto &state) { return std::string(state.param.name); });

TEST_P(MicrophonePageStates, showsItsButtonsAndWords)
{
    const MicrophoneState &state = GetParam();
    screen.appear();
    showPage();
    (this->*state.reach)();
    EXPECT_EQ(shownButtons({"recordButton", "pauseButton", "playButton", "saveButton", "startButton", "stopButton"}),
              QString::fromUtf8(state.buttons));
    EXPECT_EQ(text("levelText"), QString::fromUtf8(state.level));
    EXPECT_EQ(ifShown("statusText"), QString::fromUtf8(state.status));
    const auto error = QString::fromUtf8(state.error);
    EXPECT_EQ(ifShown("errorText").left(error.size()), error);
    EXPECT_EQ(isShown("errorText"), !error.isEmpty());
    lookAtAll(QString("microphone-%1").arg(state.name));
}

} // namespace

} // namespace sorvanta
