#include "shown_texts.h"
#include "support/fake_microphone.h"
#include "support/printing.h"
#include "support/screen_workbench.h"
#include "ui/support/ui_test.h"
#include "unit/audio/fake_audio_player.h"

#include <gmock/gmock.h>

#include <QTest>

namespace sorvanta {

namespace {

struct Size {
    int width;
    int height;
};

constexpr Size chief = {940, 700};
constexpr Size small = {640, 480};

/// The page of the microphone screen with the real screen behind it, a microphone and an engine that do as they are
/// told.
class MicrophonePageTest : public UiTest {
protected:
    MicrophonePageTest()
        : screen({.models = bench.models,
                  .history = bench.history,
                  .panels = bench.panels,
                  .resourceFolder = bench.engine.resourceFolder(),
                  .openPlayer = players.opener(),
                  .makeInput = microphone.input(),
                  .seconds = [this] { return seconds; }})
    {
    }
    ~MicrophonePageTest() override
    {
        // The page looks at the screen until its end.
        delete root;
        root = nullptr;
    }

    void showPage(Size size = chief)
    {
        showType("Sorvanta.Screens", "RecordAudioPage",
                 {{"view", QVariant::fromValue(&screen)}, {"width", size.width}, {"height", size.height}});
    }

    TranscriptionRun &run() { return *screen.run(); }
    template<typename Condition>
    void waitFor(Condition condition)
    {
        ASSERT_TRUE(QTest::qWaitFor(condition, 20000)) << (run().status() + run().errorText()).toStdString();
    }
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
    QString text(const QString &objectName) const { return item(objectName)->property("text").toString(); }
    bool isShown(const QString &objectName) const { return item(objectName)->isVisible(); }
    bool isEnabled(const QString &objectName) const { return item(objectName)->isEnabled(); }
    QRectF place(const QString &objectName) const
    {
        const QQuickItem *shown = item(objectName);
        return shown->mapRectToScene(QRectF(0, 0, shown->width(), shown->height()));
    }

    ScreenWorkbench bench;
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
    const auto texts = shownTexts(window->contentItem(), QRectF(0, 0, 940, 700));
    QStringList words;
    for (const auto &shown : texts)
        words << shown.text;
    EXPECT_THAT(words, testing::IsSupersetOf({QString("Record From Microphone"),
                                              QString("Record audio from your microphone, choose a downloaded model, "
                                                      "and generate a transcript using whisper."),
                                              QString("Microphone"),
                                              QString("Audio is captured from your default microphone into a "
                                                      "temporary WAV file."),
                                              QString("Play Recording"), QString("Save Audio"), QString("Model"),
                                              QString("Language")}));
    savePicture("microphone-idle");
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
    QTest::qWait(200);
    savePicture("microphone-recording");

    click(item("pauseButton"));
    EXPECT_EQ(text("pauseButton"), "Resume");
    EXPECT_EQ(text("recordingStatusText"), "Paused at 1:24");
    EXPECT_EQ(text("statusText"), "Recording paused.");
    EXPECT_EQ(item("levelBar")->property("level").toDouble(), 0);
    EXPECT_FALSE(item("levelBar")->property("active").toBool());
    QTest::qWait(200);
    savePicture("microphone-paused");

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
    savePicture("microphone-ready");
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
    savePicture("microphone-playing");
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
    savePicture("microphone-refused");
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
    QTest::qWait(300);
    savePicture("microphone-running");
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

// Every state in both sizes, in the light and in the dark.

class MicrophonePageLayout : public MicrophonePageTest, public testing::WithParamInterface<std::tuple<Size, bool>> {
protected:
    void show(const QString &name)
    {
        const auto [size, isDark] = GetParam();
        showPage(size);
        setDark(isDark);
        QTest::qWait(250);
        const auto texts = shownTexts(window->contentItem(), QRectF(-1e6, 0, 2e6, root->height()));
        EXPECT_GT(texts.size(), 5);
        for (qsizetype i = 0; i < texts.size(); ++i) {
            EXPECT_GE(texts[i].place.left(), 0) << texts[i].text.toStdString();
            EXPECT_LE(texts[i].place.right(), root->width()) << texts[i].text.toStdString();
            for (qsizetype j = i + 1; j < texts.size(); ++j)
                EXPECT_TRUE((texts[i].place & texts[j].place).isEmpty())
                    << texts[i].text.toStdString() << " | " << texts[j].text.toStdString();
        }
        savePicture(QString("microphone-%1-%2%3").arg(name).arg(size.width).arg(isDark ? "-dark" : ""));
    }
};

INSTANTIATE_TEST_SUITE_P(SizesAndSchemes, MicrophonePageLayout,
                         testing::Combine(testing::Values(chief, small), testing::Bool()), [](const auto &suite) {
                             return std::to_string(std::get<Size>(suite.param).width)
                                    + (std::get<bool>(suite.param) ? "dark" : "light");
                         });

TEST_P(MicrophonePageLayout, withoutATakeAndAModel)
{
    show("empty");
}

TEST_P(MicrophonePageLayout, duringATake)
{
    useModel({});
    microphone.power = -8.4F;
    record();
    show("take");
}

TEST_P(MicrophonePageLayout, withATakeThatIsReady)
{
    useModel({});
    record();
    screen.toggleRecording();
    show("closed");
}

} // namespace

} // namespace sorvanta
