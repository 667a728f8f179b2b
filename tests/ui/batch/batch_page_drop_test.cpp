#include "batch_page_test.h"
#include "ui/support/dropping.h"

#include <QElapsedTimer>

#include <cstdio>

namespace sorvanta {

namespace {

using testing::ElementsAre;

class BatchPageDrop : public Dropping<BatchPageTest> {
protected:
    BatchPageDrop() { showPage(); }

    QPoint middleOfCard() const { return place("dropCard").center().toPoint(); }
};

TEST_F(BatchPageDrop, takesAllAudioAndMovieFiles)
{
    const auto data = files({"/d/notes.txt", "/d/talk.mov", "/d/song.mp3", "/d/talk.mov"});
    ASSERT_TRUE(enter(*data, middleOfCard()));
    EXPECT_EQ(drop(*data, middleOfCard()), Qt::CopyAction) << "a file is never moved away";
    EXPECT_THAT(texts("selectedFileName"), ElementsAre("talk.mov", "song.mp3"));
}

TEST_F(BatchPageDrop, takesTwoThousandFilesAtOnce)
{
    QStringList paths;
    for (int i = 0; i < 2000; ++i)
        paths << QString("/d/A recording with a name of some length, number %1.wav").arg(i);
    const auto data = files(paths);
    ASSERT_TRUE(enter(*data, middleOfCard()));
    QElapsedTimer clock;
    clock.start();
    EXPECT_EQ(drop(*data, middleOfCard()), Qt::CopyAction);
    std::printf("2,000 files dropped in %lld ms\n", static_cast<long long>(clock.elapsed()));
    EXPECT_EQ(text("fileCount"), "2000 files ready");
    EXPECT_EQ(text("moreFiles"), "…and 1995 more");
}

TEST_F(BatchPageDrop, refusesFilesOfNeitherKind)
{
    const auto data = files({"/d/notes.txt", "/d/picture.png"});
    EXPECT_FALSE(enter(*data, middleOfCard()));
    EXPECT_EQ(drop(*data, middleOfCard()), Qt::IgnoreAction);
    EXPECT_TRUE(screen.files()->isEmpty());
}

TEST_F(BatchPageDrop, isTheWholeSectionAndNotThePage)
{
    const auto data = files({"/d/song.mp3"});
    EXPECT_TRUE(enter(*data, place("filesLabel").center().toPoint())) << "its label too";
    leave();
    EXPECT_TRUE(enter(*data, place("dropCard").bottomRight().toPoint() - QPoint(4, 4)));
    leave();
    EXPECT_FALSE(enter(*data, place("startButton").center().toPoint()));
    EXPECT_FALSE(enter(*data, QPoint(470, 40)));
}

TEST_F(BatchPageDrop, takesNothingWhileABatchRuns)
{
    const auto data = files({"/d/song.mp3"});
    ASSERT_TRUE(enter(*data, middleOfCard()));
    start(fiveFiles, inTheSecond);
    EXPECT_EQ(drop(*data, middleOfCard()), Qt::IgnoreAction) << "it began while the file was over the card";
    EXPECT_FALSE(enter(*data, middleOfCard()));
    EXPECT_EQ(screen.files()->count(), 5);
}

TEST_F(BatchPageDrop, putsRawAudioIntoATemporaryFile)
{
    QMimeData data;
    data.setData("text/plain", "a song");
    data.setData("audio/x-wav", "RIFF raw");
    ASSERT_TRUE(enter(data, middleOfCard()));
    EXPECT_EQ(drop(data, middleOfCard()), Qt::CopyAction);
    ASSERT_EQ(bench.temporaryFiles().size(), 1);
    EXPECT_THAT(texts("selectedFileName"), ElementsAre(bench.temporaryFiles().first()));
}

TEST_F(BatchPageDrop, showsThatAFileIsOverIt)
{
    const QQuickItem *card = item("dropCard");
    EXPECT_EQ(pixel(card, 300, 76), color("card"));
    const auto data = files({"/d/song.mp3"});
    ASSERT_TRUE(enter(*data, middleOfCard()));
    EXPECT_EQ(pixel(card, 300, 76), color("accentSoft"));
    leave();
    EXPECT_EQ(pixel(card, 300, 76), color("card"));
}

} // namespace

} // namespace sorvanta
