#include "file_page_test.h"
#include "ui/support/dropping.h"

namespace sorvanta {

namespace {

class FilePageDrop : public Dropping<FilePageTest> {
protected:
    FilePageDrop() { showPage(); }

    QPoint middleOfCard() const { return place("dropCard").center().toPoint(); }
};

TEST_F(FilePageDrop, takesTheFirstAudioOrMovieOfThreeFiles)
{
    run().setError("old");
    const auto data = files({"/d/notes.txt", "/d/talk.mov", "/d/song.mp3"});
    EXPECT_EQ(enterAndDrop(*data, middleOfCard()), Qt::CopyAction) << "a file is never moved away";
    EXPECT_EQ(screen.selectedFile(), "/d/talk.mov");
    EXPECT_EQ(text("fileName"), "talk.mov");
    EXPECT_FALSE(isShown("errorText"));
}

TEST_F(FilePageDrop, refusesFilesOfNeitherKind)
{
    const auto data = files({"/d/notes.txt", "/d/picture.png"});
    EXPECT_FALSE(enter(*data, middleOfCard()));
    EXPECT_EQ(drop(*data, middleOfCard()), Qt::IgnoreAction);
    EXPECT_FALSE(screen.hasFile());
}

TEST_F(FilePageDrop, isTheWholeSectionAndNotThePage)
{
    const auto data = files({"/d/song.mp3"});
    EXPECT_TRUE(enter(*data, place("fileLabel").center().toPoint())) << "its label too";
    leave();
    EXPECT_TRUE(enter(*data, place("dropCard").bottomRight().toPoint() - QPoint(4, 4)));
    leave();
    EXPECT_FALSE(enter(*data, place("startButton").center().toPoint()));
    EXPECT_FALSE(enter(*data, QPoint(470, 40)));
    EXPECT_FALSE(screen.hasFile());
}

TEST_F(FilePageDrop, showsThatAFileIsOverIt)
{
    const QQuickItem *card = item("dropCard");
    EXPECT_EQ(pixel(card, 300, 70), color("card"));
    const auto data = files({"/d/song.mp3"});
    ASSERT_TRUE(enter(*data, middleOfCard()));
    EXPECT_EQ(pixel(card, 300, 70), color("accentSoft"));
    leave();
    EXPECT_EQ(pixel(card, 300, 70), color("card"));
}

TEST_F(FilePageDrop, putsRawAudioIntoATemporaryFile)
{
    QMimeData data;
    data.setData("text/plain", "a song");
    data.setData("audio/x-wav", "RIFF raw");
    EXPECT_EQ(enterAndDrop(data, middleOfCard()), Qt::CopyAction);
    ASSERT_EQ(bench.temporaryFiles().size(), 1);
    ASSERT_EQ(screen.selectedFile(), bench.temporaryFolder() + '/' + bench.temporaryFiles().first());
    QFile file(*screen.selectedFile());
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(file.readAll(), "RIFF raw");
}

TEST_F(FilePageDrop, refusesRawDataOfAnotherKind)
{
    QMimeData data;
    data.setData("image/png", "picture");
    EXPECT_FALSE(enter(data, middleOfCard()));
    EXPECT_EQ(bench.temporaryFiles(), QStringList());
}

} // namespace

} // namespace sorvanta
