#include "batch_page_test.h"

#include <QAccessible>

namespace sorvanta {

namespace {

using testing::ElementsAre;

using BatchPageRows = BatchPageTest;

TEST_F(BatchPageRows, anIdlePageSaysItsWordsInOrder)
{
    screen.appear();
    showPage();
    EXPECT_THAT(spokenWords(accessible(window.get())),
                ElementsAre("Batch Transcription",
                            "Select multiple audio/video files, choose a downloaded model, and transcribe them "
                            "sequentially with whisper.",
                            "Audio Files", "No files selected",
                            "Drag & drop audio/video files here or use the picker (multiple supported).",
                            "Choose Files…",
                            "No models downloaded. Visit Models Settings to download a model into "
                            "Application Support/Sorvanta/Models.",
                            "Language", "Default is auto-detect. Pick a code to force transcription language.",
                            "Language", "Transcribe Files"));
    EXPECT_FALSE(item("startButton")->isEnabled());
    savePicture("04-batch-idle");
}

TEST_F(BatchPageRows, aModelBringsItsRow)
{
    screen.appear();
    showPage();
    EXPECT_TRUE(isShown("noModels"));
    EXPECT_FALSE(isShown("modelPicker"));
    useModel({});
    EXPECT_FALSE(isShown("noModels"));
    EXPECT_TRUE(isShown("modelPicker"));
    EXPECT_EQ(item("modelPicker")->property("displayText").toString(), "Large V3 Turbo");
    EXPECT_TRUE(
        spokenWords(accessible(window.get())).contains("Need another model? Open Models Settings to download it."));
    EXPECT_EQ(item("languagePicker")->property("count").toInt(), 101);
}

TEST_F(BatchPageRows, theFilesAreNamedAndCounted)
{
    showPage();
    EXPECT_EQ(text("fileCount"), "No files selected");
    EXPECT_FALSE(isShown("clearFilesButton"));
    choose({"/m/1.wav"});
    EXPECT_EQ(text("fileCount"), "1 file ready");
    EXPECT_TRUE(isShown("clearFilesButton"));
    EXPECT_FALSE(isShown("moreFiles"));
    choose({"/m/2.wav", "/m/3.wav", "/m/4.wav", "/m/5.wav", "/m/6.wav"});
    EXPECT_EQ(text("fileCount"), "6 files ready");
    EXPECT_THAT(texts("selectedFileName"), ElementsAre("1.wav", "2.wav", "3.wav", "4.wav", "5.wav"));
    EXPECT_EQ(text("moreFiles"), "…and 1 more");
    EXPECT_TRUE(isShown("moreFiles"));
    click(item("clearFilesButton"));
    EXPECT_EQ(text("fileCount"), "No files selected");
    EXPECT_THAT(texts("selectedFileName"), ElementsAre());
}

TEST_F(BatchPageRows, thePickerIsOpenedByItsButton)
{
    showPage();
    click(item("chooseFilesButton"));
    ASSERT_EQ(bench.panels.filesRequests.size(), 1);
    bench.panels.answerFiles({"/m/1.wav"});
    EXPECT_EQ(text("fileCount"), "1 file ready");
}

TEST_F(BatchPageRows, beforeABatchThereIsNoRowBelowTheButton)
{
    showPage();
    for (const char *row : {"statusText", "errorText", "copyErrorButton", "fileLine", "progressBar", "progressText",
                            "remainingText", "waitingText", "stopButton", "resultList", "exportAllMenu",
                            "clearAllButton", "transcriptLines", "selectedName", "noSelection"})
        EXPECT_FALSE(isShown(row)) << row;
}

TEST_F(BatchPageRows, aRefusedStartIsSaidInRed)
{
    showPage();
    screen.start();
    EXPECT_TRUE(isShown("errorText"));
    EXPECT_EQ(text("errorText"), "Please choose at least one audio file first.");
    EXPECT_EQ(item("errorText")->property("color").value<QColor>(), color("danger"));
    EXPECT_FALSE(isShown("copyErrorButton"));
    EXPECT_FALSE(isShown("resultList"));
}

TEST_F(BatchPageRows, untilThereIsProgressTheStatusSpeaks)
{
    showPage();
    start(fiveFiles, inTheSecond);
    EXPECT_TRUE(isShown("statusText"));
    EXPECT_EQ(text("statusText"), "Preparing…");
    EXPECT_EQ(item("statusText")->property("color").value<QColor>(), color("warning"));
    EXPECT_TRUE(isShown("progressBar"));
    EXPECT_TRUE(item("progressBar")->property("indeterminate").toBool());
    EXPECT_FALSE(isShown("progressText"));
    EXPECT_FALSE(isShown("remainingText"));
    EXPECT_TRUE(isShown("waitingText"));
    EXPECT_EQ(text("waitingText"), "Preparing…");
    EXPECT_TRUE(isShown("stopButton"));
    EXPECT_EQ(text("fileLine"), "File 1 of 5: Town council 3 March.m4a");
    EXPECT_EQ(text("startButton"), "Transcribing…");
    EXPECT_FALSE(item("startButton")->isEnabled());
    EXPECT_FALSE(item("chooseFilesButton")->isEnabled());
    EXPECT_FALSE(item("clearFilesButton")->isEnabled());
    EXPECT_FALSE(item("clearAllButton")->isEnabled());
}

TEST_F(BatchPageRows, withProgressTheProgressRowSpeaks)
{
    showPage();
    start(fiveFiles, inTheSecond);
    waitFor([this] { return run().progress() == (1 + 0.42) / 5; });
    EXPECT_FALSE(isShown("statusText"));
    EXPECT_FALSE(isShown("waitingText"));
    EXPECT_FALSE(item("progressBar")->property("indeterminate").toBool());
    EXPECT_DOUBLE_EQ(item("progressBar")->property("value").toDouble(), 1.42 / 5);
    EXPECT_EQ(text("progressText"), "Progress: 28%");
    EXPECT_TRUE(text("remainingText").startsWith("ETA: "));
    EXPECT_EQ(text("fileLine"), "File 2 of 5: Lecture 04 – Rivers and weirs.mp3");
    EXPECT_EQ(item("fileLine")->property("color").value<QColor>(), color("text2"));
    EXPECT_LT(place("fileLine").bottom(), place("progressBar").top());
    EXPECT_TRUE(item("startButton")->property("busy").toBool());
    settle();
    savePicture("04-batch-running");
    setDark(true);
    settle();
    savePicture("04-batch-running-dark");
}

TEST_F(BatchPageRows, theStopButtonStopsOnce)
{
    showPage();
    // It takes its time to end.
    start(fiveFiles, "ignore-stop\n" + twoOfFive + "only Lecture\n" + bench.engine.awaitGate());
    waitFor([this] { return run().progress() == (1 + 0.42) / 5; });
    settle();
    EXPECT_TRUE(item("stopButton")->isEnabled());
    click(item("stopButton"));
    EXPECT_TRUE(run().isStopping());
    EXPECT_FALSE(item("stopButton")->isEnabled());
    bench.engine.openGate();
    waitFor([this] { return !run().isTranscribing(); });
    EXPECT_FALSE(isShown("stopButton"));
    EXPECT_FALSE(isShown("progressBar"));
    EXPECT_FALSE(isShown("fileLine"));
    EXPECT_EQ(text("statusText"), "Cancelled");
    EXPECT_TRUE(isShown("statusText"));
}

TEST_F(BatchPageRows, afterTheBatchItsEndIsSaidAndTheBarIsGone)
{
    showPage();
    transcribe({"/m/1.wav", "/m/2.wav"}, twoOfFive);
    EXPECT_EQ(text("statusText"), "Done");
    EXPECT_TRUE(isShown("statusText"));
    for (const char *row : {"fileLine", "progressBar", "stopButton", "errorText"})
        EXPECT_FALSE(isShown(row)) << row;
    EXPECT_EQ(text("startButton"), "Transcribe Files");
    EXPECT_FALSE(item("startButton")->property("busy").toBool());
    EXPECT_TRUE(item("startButton")->isEnabled());
}

TEST_F(BatchPageRows, aFailureIsSaidWithItsWholeLog)
{
    showPage();
    transcribe(fiveFiles, twoOfFive);
    EXPECT_FALSE(isShown("statusText"));
    EXPECT_TRUE(isShown("errorText"));
    EXPECT_TRUE(text("errorText").startsWith("Whisper failed: "));
    EXPECT_TRUE(text("errorText").endsWith("error: failed to decode"));
    EXPECT_FALSE(isShown("progressBar"));
}

TEST_F(BatchPageRows, theControlsOfAssistiveTechnologyAct)
{
    showPage();
    useModel(twoOfFive);
    pressAccessibly(item("chooseFilesButton"));
    bench.panels.answerFiles({"/m/1.wav"});
    pressAccessibly(item("startButton"));
    EXPECT_TRUE(run().isTranscribing());
    waitFor([this] { return !run().isTranscribing(); });
    pressAccessibly(item("clearAllButton"));
    EXPECT_EQ(screen.results()->count(), 0);
    pressAccessibly(item("clearFilesButton"));
    EXPECT_TRUE(screen.files()->isEmpty());
}

} // namespace

} // namespace sorvanta
