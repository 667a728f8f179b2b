#include "file_page_test.h"

#include <QAccessible>
#include <QClipboard>
#include <QFont>
#include <QGuiApplication>

namespace sorvanta {

namespace {

using testing::ElementsAre;

using FilePageRows = FilePageTest;

TEST_F(FilePageRows, anIdlePageSaysItsWordsInOrder)
{
    screen.appear();
    showPage();
    EXPECT_THAT(spokenWords(accessible(window.get())),
                ElementsAre("Transcript Audio From File",
                            "Upload an audio file, choose a downloaded model, and generate a transcript using whisper.",
                            "Audio File", "Choose File…", "No file selected",
                            "Drag & drop an audio/video file here or use the picker.", "Model",
                            "No models downloaded. Visit Models Settings to download a model into "
                            "Application Support/Sorvanta/Models.",
                            "Language", "Default is auto-detect. Pick a code to force transcription language.",
                            "Language", "Transcribe"));
    EXPECT_FALSE(item("startButton")->isEnabled());
}

TEST_F(FilePageRows, aModelBringsItsPickerAndAnotherHint)
{
    bench.installModel("ggml-base.bin");
    bench.installModel("ggml-tiny.bin");
    showPage();
    EXPECT_FALSE(isShown("modelPicker"));
    screen.appear();
    EXPECT_TRUE(isShown("modelPicker"));
    EXPECT_EQ(item("modelPicker")->property("displayText").toString(), "Base");
    EXPECT_TRUE(
        spokenWords(accessible(window.get())).contains("Need another model? Open Models Settings to download it."));
    EXPECT_EQ(item("languagePicker")->property("displayText").toString(), "Auto-detect (auto)");
    EXPECT_EQ(item("languagePicker")->property("count").toInt(), 101);
}

TEST_F(FilePageRows, thePickersFollowTheScreenAndTheScreenFollowsThem)
{
    bench.installModel("ggml-base.bin");
    bench.installModel("ggml-tiny.bin");
    screen.appear();
    showPage();
    tabTo(item("modelPicker"));
    press(Qt::Key_Down);
    EXPECT_EQ(screen.model()->selectedModelID(), "tiny");
    screen.model()->choose(0);
    EXPECT_EQ(item("modelPicker")->property("displayText").toString(), "Base");
    tabTo(item("languagePicker"));
    press(Qt::Key_Down);
    EXPECT_EQ(screen.language()->language(), "af");
    screen.language()->setLanguage("de");
    EXPECT_EQ(item("languagePicker")->property("displayText").toString(), "German (de)");
}

TEST_F(FilePageRows, thePickerShowsTheChosenModelWhateverOthersComeAndGo)
{
    bench.installModel("ggml-base.bin");
    bench.installModel("ggml-tiny.bin");
    screen.appear();
    showPage();
    screen.model()->choose(1);
    const QString large = bench.installModel("ggml-large-v3.bin");
    screen.appear();
    EXPECT_EQ(item("modelPicker")->property("count").toInt(), 3);
    EXPECT_EQ(item("modelPicker")->property("displayText").toString(), "Tiny");
    QFile::remove(large);
    screen.appear();
    EXPECT_EQ(item("modelPicker")->property("count").toInt(), 2);
    EXPECT_EQ(item("modelPicker")->property("displayText").toString(), "Tiny");
}

TEST_F(FilePageRows, theStartButtonWaitsForAFileAndAModel)
{
    useModel({});
    showPage();
    EXPECT_FALSE(item("startButton")->isEnabled());
    choose("/music/Harbour walk interview.m4a");
    EXPECT_TRUE(item("startButton")->isEnabled());
    EXPECT_EQ(text("startButton"), "Transcribe");
    EXPECT_EQ(text("fileName"), "Harbour walk interview.m4a");
    savePicture("02-file-idle-page");
}

TEST_F(FilePageRows, beforeARunThereIsNoRowBelowTheButton)
{
    showPage();
    for (const char *row : {"statusText", "errorText", "copyErrorButton", "progressBar", "progressText",
                            "remainingText", "stopButton", "transcriptLines"})
        EXPECT_FALSE(isShown(row)) << row;
}

TEST_F(FilePageRows, duringARunWithoutProgressTheStatusSpeaks)
{
    showPage();
    start("sleep 60000\n");
    EXPECT_TRUE(isShown("statusText"));
    EXPECT_EQ(text("statusText"), "Preparing file…");
    EXPECT_FALSE(isShown("stopButton")) << "the run has not begun";
    waitFor([this] { return run().isTranscribing(); });
    EXPECT_TRUE(isShown("statusText"));
    EXPECT_EQ(text("statusText"), "Preparing…");
    EXPECT_TRUE(isShown("progressBar"));
    EXPECT_TRUE(item("progressBar")->property("indeterminate").toBool());
    EXPECT_FALSE(isShown("progressText"));
    EXPECT_FALSE(isShown("remainingText"));
    EXPECT_TRUE(isShown("stopButton"));
    EXPECT_FALSE(isShown("transcriptLines"));
    EXPECT_EQ(text("startButton"), "Transcribing…");
    EXPECT_FALSE(item("startButton")->isEnabled());
}

TEST_F(FilePageRows, withProgressTheProgressRowSpeaks)
{
    showPage();
    start(at42Percent);
    waitFor([this] { return run().progress() == 0.42; });
    EXPECT_FALSE(isShown("statusText"));
    EXPECT_FALSE(item("progressBar")->property("indeterminate").toBool());
    EXPECT_DOUBLE_EQ(item("progressBar")->property("value").toDouble(), 0.42);
    EXPECT_TRUE(isShown("progressText"));
    EXPECT_EQ(text("progressText"), "Progress: 42%");
    EXPECT_TRUE(isShown("remainingText"));
    EXPECT_TRUE(text("remainingText").startsWith("ETA: ")) << text("remainingText").toStdString();
    for (const char *name : {"progressText", "remainingText"}) {
        EXPECT_EQ(item(name)->property("color").value<QColor>(), color("text2")) << name;
        EXPECT_EQ(item(name)->property("font").value<QFont>().pixelSize(), 12) << name;
    }
    EXPECT_EQ(item("stopButton")->property("labelColor").value<QColor>(), color("danger"));
    EXPECT_TRUE(isShown("transcriptLines"));
}

TEST_F(FilePageRows, theStopButtonStops)
{
    showPage();
    start(at42Percent);
    waitFor([this] { return run().lines()->count() == 2; });
    settle(); // the row takes its place
    click(item("stopButton"));
    waitFor([this] { return run().status() == "Cancelled"; });
    EXPECT_EQ(text("statusText"), "Cancelled");
    EXPECT_TRUE(isShown("statusText"));
    EXPECT_FALSE(isShown("stopButton"));
    EXPECT_FALSE(isShown("errorText"));
    EXPECT_TRUE(isShown("transcriptLines"));
    EXPECT_TRUE(item("startButton")->isEnabled());
}

TEST_F(FilePageRows, afterARunTheStatusAndTheTextStay)
{
    showPage();
    start("print [x] One%0A\n");
    waitFor([this] { return run().status() == "Done"; });
    EXPECT_EQ(text("statusText"), "Done");
    EXPECT_TRUE(isShown("statusText"));
    EXPECT_FALSE(isShown("progressBar"));
    EXPECT_TRUE(isShown("transcriptLines"));
    EXPECT_FALSE(isShown("noTranscript"));
}

TEST_F(FilePageRows, anErrorStandsBesideTheButtonThatCopiesIt)
{
    showPage();
    start("complain no such model%0A\nexit 2\n");
    waitFor([this] { return run().hasError(); });
    settle();
    EXPECT_TRUE(isShown("errorText"));
    EXPECT_EQ(text("errorText"), "Whisper failed: no such model");
    EXPECT_EQ(item("errorText")->property("color").value<QColor>(), color("danger"));
    EXPECT_FALSE(isShown("statusText"));
    EXPECT_EQ(text("copyErrorButton"), "Copy Error");
    click(item("copyErrorButton"));
    EXPECT_EQ(QGuiApplication::clipboard()->text(), "Whisper failed: no such model\n");
    EXPECT_EQ(accessible(item("errorText"))->role(), QAccessible::AlertMessage);
}

TEST_F(FilePageRows, theRowsStandInTheirOrder)
{
    showPage();
    start(at42Percent);
    waitFor([this] { return run().progress() == 0.42; });
    run().setError("An error beside a run.");
    settle();
    const auto heading = item("fileName"); // between title and pickers
    QStringList order{"chooseFileButton", "modelPicker", "languagePicker", "startButton",
                      "errorText",        "stopButton",  "transcriptLines"};
    for (qsizetype i = 1; i < order.size(); ++i)
        EXPECT_LE(place(order[i - 1]).bottom(), place(order[i]).top()) << order[i].toStdString();
    EXPECT_LT(place("chooseFileButton").right(), place(heading).left());
    EXPECT_LT(place("progressBar").right(), place("progressText").left());
    EXPECT_LE(place("progressText").right(), place("remainingText").left());
    EXPECT_LT(place("remainingText").right(), place("stopButton").left());
    const double textEnd = place("errorText").left() + item("errorText")->property("contentWidth").toDouble();
    EXPECT_NEAR(place("copyErrorButton").left() - textEnd, 8, 1);

    run().setError({});
    run().stopRun();
    waitFor([this] { return run().status() == "Cancelled"; });
    settle();
    EXPECT_LE(place("startButton").bottom(), place("statusText").top());
    EXPECT_LE(place("statusText").bottom(), place("transcriptLines").top());
}

TEST_F(FilePageRows, theErrorAndItsButtonShareTheFirstBaseline)
{
    showPage();
    const auto baseline = [this](const QQuickItem *shown) {
        return place(shown).top() + shown->property("baselineOffset").toDouble();
    };
    for (const QString &error : {QString("Short."), QString("A long error. ").repeated(60)}) {
        run().setError(error);
        settle();
        const QQuickItem *label = nullptr;
        for (QQuickItem *part : item("copyErrorButton")->findChildren<QQuickItem *>()) {
            if (part->property("text").toString() == "Copy Error" && part->inherits("QQuickText"))
                label = part;
        }
        ASSERT_NE(label, nullptr);
        EXPECT_NEAR(baseline(item("errorText")), baseline(label), 1.5) << error.size();
    }
}

struct Control {
    const char *objectName;
    QAccessible::Role role;
    const char *name;
};

class FilePageControl : public FilePageTest, public testing::WithParamInterface<Control> { };

TEST_P(FilePageControl, tellsItsRoleAndItsName)
{
    showPage();
    start(at42Percent);
    waitFor([this] { return run().progress() == 0.42; });
    run().setError("An error.");
    QAccessibleInterface *control = accessible(item(GetParam().objectName));
    EXPECT_EQ(control->role(), GetParam().role);
    EXPECT_EQ(control->text(QAccessible::Name), GetParam().name);
    EXPECT_FALSE(control->state().invisible);
}

INSTANTIATE_TEST_SUITE_P(, FilePageControl,
                         testing::Values(Control{"chooseFileButton", QAccessible::Button, "Choose File…"},
                                         Control{"modelPicker", QAccessible::ComboBox, "Model"},
                                         Control{"languagePicker", QAccessible::ComboBox, "Language"},
                                         Control{"startButton", QAccessible::Button, "Transcribing…"},
                                         Control{"copyErrorButton", QAccessible::Button, "Copy Error"},
                                         Control{"progressBar", QAccessible::ProgressBar, "Progress"},
                                         Control{"stopButton", QAccessible::Button, "Stop"},
                                         Control{"transcriptLines", QAccessible::List, "Transcript"}));

TEST_F(FilePageRows, everyButtonIsPressedByAScreenReader)
{
    useModel(at42Percent);
    showPage();
    pressAccessibly(item("startButton"));
    EXPECT_FALSE(run().hasError()) << "a disabled button is not pressed";
    pressAccessibly(item("chooseFileButton"));
    ASSERT_EQ(bench.panels.requests.size(), 1);
    bench.panels.answer("/music/a.wav");
    pressAccessibly(item("startButton"));
    waitFor([this] { return run().progress() == 0.42; });
    pressAccessibly(item("stopButton"));
    waitFor([this] { return run().status() == "Cancelled"; });
    run().setError("An error.");
    pressAccessibly(item("copyErrorButton"));
    EXPECT_EQ(QGuiApplication::clipboard()->text(), "An error.");
}

} // namespace

} // namespace sorvanta
