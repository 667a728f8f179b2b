#include "file_page_test.h"
#include "shown_texts.h"

namespace sorvanta {

namespace {

struct Size {
    int width;
    int height;
};

class FilePageLayout : public FilePageTest, public testing::WithParamInterface<Size> {
protected:
    void show() { showPage(GetParam().width - 260, GetParam().height); }

    void expectThatNothingOverlaps()
    {
        settle();
        sorvanta::expectThatNothingOverlaps(root);
    }
    void expectThatNothingOverlapsAllTheWayDown()
    {
        expectThatNothingOverlaps();
        const double end = root->property("contentHeight").toDouble() - root->height();
        if (end <= 0)
            return;
        root->setProperty("contentY", end);
        expectThatNothingOverlaps();
    }
};

TEST_P(FilePageLayout, withoutAModelAndAFile)
{
    show();
    expectThatNothingOverlapsAllTheWayDown();
}

TEST_P(FilePageLayout, withAVeryLongFileName)
{
    useModel({});
    choose("/music/" + QString("A very long name of a recording ").repeated(12) + ".m4a");
    show();
    expectThatNothingOverlapsAllTheWayDown();
    EXPECT_LE(place("fileName").right(), root->width() - 24);
    EXPECT_TRUE(item("fileName")->property("truncated").toBool());
}

TEST_P(FilePageLayout, duringARun)
{
    show();
    start(at42Percent);
    waitFor([this] { return run().progress() == 0.42; });
    expectThatNothingOverlapsAllTheWayDown();
    EXPECT_GE(item("transcriptLines")->height(), 158);
    EXPECT_GE(item("progressBar")->width(), 100);
}

TEST_P(FilePageLayout, withAVeryLongError)
{
    show();
    start("print [x] One%0A\n" + failingWithLog(60));
    waitFor([this] { return run().hasError(); });
    EXPECT_GT(text("errorText").size(), 4000);
    expectThatNothingOverlapsAllTheWayDown();
    EXPECT_LE(place("copyErrorButton").right(), root->width() - 24);
    EXPECT_TRUE(isShown("transcriptLines"));
    EXPECT_LE(item("errorView")->height(), 162) << "the rest is scrolled to";
}

TEST_P(FilePageLayout, withAVeryLongWordInTheError)
{
    show();
    run().setError("Whisper failed: " + QString("/a/path/without/blanks").repeated(60));
    expectThatNothingOverlapsAllTheWayDown();
}

INSTANTIATE_TEST_SUITE_P(, FilePageLayout, testing::Values(Size{1200, 700}, Size{720, 480}, Size{1920, 1080}));

using FilePagePlaces = FilePageTest;

TEST_F(FilePagePlaces, areThoseOfTheDrawing)
{
    useModel({});
    choose("/music/Harbour walk interview.m4a");
    showPage(); // 260 to the right of where the window draws it
    EXPECT_EQ(place("dropCard"), QRectF(62, 120, 816, 80));
    EXPECT_EQ(place("chooseFileButton").topLeft(), QPointF(142, 132));
    EXPECT_EQ(place("modelPicker"), QRectF(582, 228, 280, 32));
    EXPECT_EQ(place("languagePicker"), QRectF(582, 285, 280, 32));
    EXPECT_EQ(place("startButton"), QRectF(62, 345, 160, 32));
    EXPECT_EQ(item("screenSubtitle")->property("color").value<QColor>(), color("text2"));
    start(at42Percent);
    waitFor([this] { return run().progress() == 0.42; });
    settle();
    EXPECT_EQ(place("startButton"), QRectF(62, 345, 160, 32)) << "rows appear, nothing moves";
    EXPECT_EQ(place("stopButton"), QRectF(806, 389, 72, 32));
    EXPECT_EQ(place("progressBar"), QRectF(62, 402, 516, 6));
    EXPECT_EQ(place("progressText").left(), 594);
    EXPECT_EQ(place("remainingText").left(), 694);
}

} // namespace

} // namespace sorvanta
