#include "screens/meeting/meeting_recorder_view.h"
#include "shown_texts.h"
#include "support/printing.h"
#include "support/screen_workbench.h"
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
class MeetingPage : public UiTest {
protected:
    MeetingPage()
    {
        MeetingRecorderView::Surroundings surroundings{.models = bench.models,
                                                       .history = bench.history,
                                                       .panels = bench.panels,
                                                       .resourceFolder = bench.engine.resourceFolder(),
                                                       .recorder = sound.surroundings()};
        surroundings.recorder.openPlayer = players.opener();
        screen = std::make_unique<MeetingRecorderView>(surroundings);
    }
    ~MeetingPage() override
    {
        // The page looks at the screen until its end.
        delete root;
        root = nullptr;
    }

    void showPage(int width = 940, int height = 700)
    {
        showType("Sorvanta.Screens", "MeetingRecorderPage",
                 {{"view", QVariant::fromValue(screen.get())}, {"width", width}, {"height", height}});
    }
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
    template<typename Condition>
    void waitFor(Condition condition)
    {
        ASSERT_TRUE(QTest::qWaitFor(condition, 20000));
    }
    QString text(const QString &objectName) const { return item(objectName)->property("text").toString(); }
    bool isShown(const QString &objectName) const { return item(objectName)->isVisible(); }
    QRectF place(const QString &objectName) const
    {
        const QQuickItem *shown = item(objectName);
        return shown->mapRectToScene(QRectF(0, 0, shown->width(), shown->height()));
    }

    ScreenWorkbench bench;
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
    savePicture("meeting-recording");
    click(item("pauseButton"));
    EXPECT_EQ(text("pauseButton"), "Resume");
    EXPECT_EQ(text("recordStatus"), "Recording paused.");
    EXPECT_EQ(text("headline"), "Recording system audio… 0:00");
    savePicture("meeting-paused");
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
    QTest::qWait(20);
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
    savePicture("meeting-ready");
    click(item("saveButton"));
    EXPECT_EQ(bench.panels.saveRequests.size(), 1);
    players.duration = 75;
    click(item("playButton"));
    EXPECT_EQ(text("playButton"), "Pause Playback");
    EXPECT_TRUE(isShown("playbackSlider"));
    EXPECT_EQ(text("positionText"), "0:00");
    EXPECT_EQ(text("durationText"), "1:15");
    savePicture("meeting-playing");
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
    QTest::qWait(50); // the rows find their places
    EXPECT_LT(place("headline").bottom(), place("errorText").top());
    EXPECT_LT(place("errorText").bottom(), place("languagePicker").top());
    savePicture("meeting-error");
}

TEST_F(MeetingPage, aRunShowsItsRows)
{
    useModel(at42Percent);
    recordAndStop();
    showPage();
    EXPECT_FALSE(isShown("progressBar"));
    click(item("transcribeButton"));
    EXPECT_EQ(text("transcribeButton"), "Transcribing…");
    EXPECT_TRUE(item("transcribeButton")->property("busy").toBool());
    EXPECT_FALSE(item("transcribeButton")->isEnabled());
    EXPECT_EQ(text("statusText"), "Converting…");
    waitFor([this] { return screen->run()->progress() == 0.42; });
    EXPECT_TRUE(isShown("progressBar"));
    EXPECT_EQ(text("progressText"), "Progress: 42%");
    EXPECT_TRUE(isShown("transcriptLines"));
    savePicture("meeting-transcribing");
    root->setProperty("contentY", root->property("contentHeight").toDouble() - root->height());
    savePicture("meeting-transcribing-below");
    setDark(true);
    savePicture("meeting-transcribing-below-dark");
}

TEST_F(MeetingPage, isDarkInTheDark)
{
    useModel();
    record(true);
    showPage();
    setDark(true);
    EXPECT_EQ(pixel(item("recordButton"), 6, 16), color("dangerFill"));
    savePicture("meeting-recording-dark");
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

class MeetingPageLayout : public MeetingPage, public testing::WithParamInterface<std::pair<int, int>> {
protected:
    void expectThatNothingOverlaps()
    {
        QTest::qWait(50);
        const auto texts = shownTexts(window->contentItem(), QRectF(-1e6, 0, 2e6, root->height()));
        EXPECT_GT(texts.size(), 5);
        for (qsizetype i = 0; i < texts.size(); ++i) {
            EXPECT_GE(texts[i].place.left(), 0) << texts[i].text.toStdString();
            EXPECT_LE(texts[i].place.right(), root->width()) << texts[i].text.toStdString();
            for (qsizetype j = i + 1; j < texts.size(); ++j)
                EXPECT_TRUE((texts[i].place & texts[j].place).isEmpty())
                    << texts[i].text.toStdString() << " | " << texts[j].text.toStdString();
        }
    }
};

TEST_P(MeetingPageLayout, holdsAllThatASessionBrings)
{
    const auto [width, height] = GetParam();
    const QString name = QStringLiteral("meeting-layout-%1").arg(width);
    showPage(width - 260, height);
    expectThatNothingOverlaps();
    savePicture(name + "-idle");
    useModel("complain " + QByteArray("a long log ").repeated(40) + "%0A\nexit 1\n");
    record(true);
    expectThatNothingOverlaps();
    sound.play(500, 0.3);
    screen->toggleRecording();
    waitFor([this] { return !screen->recorder().systemURL(); });
    players.duration = 4000;
    screen->playLatest();
    expectThatNothingOverlaps();
    screen->transcribe();
    waitFor([this] { return screen->run()->hasError(); });
    expectThatNothingOverlaps();
    savePicture(name + "-full");
    root->setProperty("contentY", std::max(0.0, root->property("contentHeight").toDouble() - root->height()));
    expectThatNothingOverlaps();
}

INSTANTIATE_TEST_SUITE_P(Sizes, MeetingPageLayout,
                         testing::Values(std::pair(1200, 700), std::pair(760, 520), std::pair(1920, 1080)));

} // namespace

} // namespace sorvanta
