#include "file_page_test.h"

#include <QAccessible>

namespace sorvanta {

namespace {

class FilePageExport : public FilePageTest {
protected:
    ExportMenuEntry *entry(qsizetype index)
    {
        return qobject_cast<ExportMenuEntry *>(screen.exportMenu()->entries().at(index));
    }
    void showFinished(const QByteArray &commands, int width = 940, int height = 700)
    {
        showPage(width, height);
        start(commands);
        waitFor([this] { return run().status() == "Done"; });
        settle();
    }
};

const QByteArray twoLines = "print [00%3A00%3A00.000 --> 00%3A00%3A10.000]   Good morning.%0A\n"
                            "print [00%3A00%3A10.000 --> 00%3A00%3A42.000]   - How are you?%0A\n";

TEST_F(FilePageExport, theRowOfActionsComesAndGoesWithTheText)
{
    showPage();
    EXPECT_FALSE(isShown("exportMenu"));
    start(bench.engine.awaitGate() + at42Percent);
    waitFor([this] { return run().isTranscribing(); });
    EXPECT_FALSE(isShown("exportMenu"));
    bench.engine.openGate();
    waitFor([this] { return run().progress() == 0.42; });
    EXPECT_TRUE(isShown("exportMenu"));
    EXPECT_TRUE(item("exportMenu")->isEnabled()) << "while the run goes on";
    run().beginRun();
    EXPECT_FALSE(isShown("exportMenu"));
}

TEST_F(FilePageExport, theRowStandsUnderTheTranscriptWithinThePage)
{
    showFinished(twoLines);
    EXPECT_EQ(place("exportMenu").top(), place(item("transcriptLines")).bottom() + 1 + 8);
    EXPECT_EQ(place("fullViewButton").left(), place("startButton").left());
    EXPECT_EQ(place("exportMenu").bottom(), 700 - 16) << "the transcript takes the rest of the page";
    EXPECT_EQ(item("exportMenu")->height(), 32);
    savePicture("file-done-export");
    click(item("exportMenu"));
    settle();
    savePicture("file-done-export-open");
    setDark(true);
    savePicture("file-done-export-open-dark");
}

TEST_F(FilePageExport, inASmallWindowTheRowIsScrolledTo)
{
    showFinished(twoLines, 460, 480);
    tabTo(item("exportMenu"));
    EXPECT_GE(place("exportMenu").top(), 0);
    EXPECT_LE(place("exportMenu").bottom(), 480);
    EXPECT_GE(item("transcriptLines")->height(), 158);
    press(Qt::Key_Space);
    settle();
    savePicture("file-small-export-open");
    setDark(true);
    savePicture("file-small-export-open-dark");
}

TEST_F(FilePageExport, aSaveIsReportedInTheStatus)
{
    showFinished(twoLines);
    pressAccessibly(item("exportMenu"));
    settle();
    press(Qt::Key_Down);
    press(Qt::Key_Down);
    press(Qt::Key_Return);
    ASSERT_EQ(bench.panels.saveRequests.size(), 1);
    EXPECT_EQ(bench.panels.saveRequests.first().name, "Harbour walk interview_transcription.srt");
    bench.panels.answer(bench.file("walk.srt"));
    EXPECT_EQ(text("statusText"), "Saved SRT to walk.srt");
    EXPECT_TRUE(isShown("statusText"));
    EXPECT_FALSE(isShown("errorText"));
}

TEST_F(FilePageExport, aFailureIsReportedBesideTheButtonThatCopiesIt)
{
    showFinished(twoLines);
    entry(0)->choose();
    bench.panels.answer("/nowhere/walk.txt");
    EXPECT_EQ(text("errorText"), "Could not save TXT: The folder “nowhere” doesn’t exist.");
    EXPECT_TRUE(isShown("errorText"));
    EXPECT_EQ(text("statusText"), "Done");
    savePicture("file-export-failed");
}

TEST_F(FilePageExport, subtitlesAreOfferedOnceThereIsATimedLine)
{
    showFinished("print Only words.%0A\n");
    EXPECT_TRUE(item("exportMenu")->isEnabled());
    for (const int index : {1, 2, 3})
        EXPECT_FALSE(entry(index)->isEnabled());
    start(twoLines);
    waitFor([this] { return run().hasSegments(); });
    for (const int index : {1, 2, 3})
        EXPECT_TRUE(entry(index)->isEnabled());
}

} // namespace

} // namespace sorvanta
