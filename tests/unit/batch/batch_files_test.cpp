#include "batch_screen_test.h"

#include "platform/file_types.h"
#include "support/cramped_folder.h"

#include <QDir>
#include <QFileInfo>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTemporaryDir>

using namespace sorvanta;
using testing::ElementsAre;

namespace {

class BatchFiles : public BatchScreenTest {
protected:
    QStringList chosen() const
    {
        QStringList paths;
        for (const QUrl &url : screen->files()->urls())
            paths << url.toLocalFile();
        return paths;
    }
    static QList<QUrl> files(const QStringList &paths)
    {
        QList<QUrl> urls;
        for (const QString &path : paths)
            urls << QUrl::fromLocalFile(path);
        return urls;
    }
    /// An empty file with a name of these bytes.
    QUrl fileWithBrokenName(const QByteArray &name) const
    {
        const QByteArray path = QFile::encodeName(bench.file(QString())) + name;
        FILE *const file = std::fopen(path.constData(), "w");
        EXPECT_TRUE(file);
        if (file)
            std::fclose(file);
        return QUrl::fromEncoded("file://" + path.toPercentEncoding("/"));
    }
    void runInTheBackground()
    {
        start({u"/music/a.wav"_qs}, "print [x] One%0A\nsleep 60000\n");
        waitFor([this] { return !run().rawOutput().isEmpty(); });
    }
};

TEST_F(BatchFiles, theScreenBeginsWithTheInitialValues)
{
    EXPECT_EQ(chosen(), QStringList());
    EXPECT_FALSE(screen->model()->selectedModelID());
    EXPECT_EQ(screen->language()->language(), u"auto"_qs);
    expectNoTraceOfARun(run());
    EXPECT_EQ(run().currentFileIndex(), 0);
    EXPECT_EQ(run().totalFilesCount(), 0);
    EXPECT_EQ(run().fileLine(), QString());
    EXPECT_EQ(run().tempConvertedURLs(), QStringList());
    EXPECT_EQ(screen->results()->count(), 0);
    EXPECT_FALSE(screen->results()->selectedResultID());
    EXPECT_FALSE(screen->stripDashes());
    EXPECT_EQ(screen->pane()->search()->searchText(), QString());
    EXPECT_FALSE(screen->pane()->showLogsSheet());
    EXPECT_FALSE(screen->areResultsShown());
    EXPECT_EQ(screen->startLabel(), u"Transcribe Files"_qs);
    EXPECT_TRUE(screen->canChange());
    EXPECT_FALSE(screen->canStart());
    EXPECT_FALSE(screen->canStop());
}

TEST_F(BatchFiles, thePanelIsForManyAudioAndMovieFiles)
{
    screen->chooseFiles();
    ASSERT_EQ(bench.panels.filesRequests.size(), 1);
    EXPECT_EQ(bench.panels.filesRequests[0].extensions, mediaExtensions());
    EXPECT_EQ(bench.panels.requests.size(), 0) << "not the panel for one file";
}

TEST_F(BatchFiles, thePanelsFilesAreTakenInTheirOrder)
{
    choose({u"/m/b.wav"_qs, u"/m/a.mp4"_qs});
    choose({u"/m/c.wav"_qs});
    EXPECT_THAT(chosen(), ElementsAre(u"/m/b.wav"_qs, u"/m/a.mp4"_qs, u"/m/c.wav"_qs));
    EXPECT_EQ(run().totalFilesCount(), 3);
}

TEST_F(BatchFiles, aDeclinedPanelChangesNothing)
{
    transcribe(threeFiles, twoLines);
    choose({});
    EXPECT_EQ(chosen(), threeFiles);
    EXPECT_EQ(screen->results()->count(), 3);
    EXPECT_EQ(run().status(), u"Done"_qs);
}

TEST_F(BatchFiles, thePanelMayBeAnsweredWhenTheScreenIsGone)
{
    screen->chooseFiles();
    screen.reset();
    bench.panels.answerFiles({u"/m/b.wav"_qs});
    makeScreen();
    EXPECT_EQ(chosen(), QStringList());
}

TEST_F(BatchFiles, theSameFileTwiceLeavesOneRow)
{
    choose({u"/m/a.wav"_qs, u"/m/a.wav"_qs});
    choose({u"/m/a.wav"_qs});
    EXPECT_THAT(chosen(), ElementsAre(u"/m/a.wav"_qs));
    EXPECT_EQ(screen->files()->rowCount(), 1);
    EXPECT_EQ(run().totalFilesCount(), 1);
}

TEST_F(BatchFiles, filesNamedAlikeInDifferentFoldersAreTwo)
{
    choose({u"/m/a.wav"_qs, u"/n/a.wav"_qs});
    EXPECT_EQ(screen->files()->countText(), u"2 files ready"_qs);
}

TEST_F(BatchFiles, anAdditionTakesTheResultsAway)
{
    transcribe(threeFiles, twoLines);
    screen->pane()->search()->setSearchText(u"One"_qs);
    screen->pane()->setShowLogsSheet(true);
    run().setError(u"old"_qs);
    choose({u"/music/d.wav"_qs});
    EXPECT_EQ(screen->results()->count(), 0);
    EXPECT_FALSE(screen->results()->selectedResultID());
    EXPECT_FALSE(screen->areResultsShown());
    EXPECT_EQ(screen->pane()->search()->searchText(), QString());
    EXPECT_FALSE(screen->pane()->showLogsSheet());
    EXPECT_FALSE(screen->pane()->hasText());
    expectNoTraceOfARun(run());
    EXPECT_EQ(run().currentFileIndex(), 0);
    EXPECT_EQ(run().totalFilesCount(), 4);
}

TEST_F(BatchFiles, aKnownFileAddedAgainTakesTheResultsAwayToo)
{
    transcribe(threeFiles, twoLines);
    choose({u"/music/b.wav"_qs});
    EXPECT_EQ(screen->results()->count(), 0);
    EXPECT_EQ(chosen(), threeFiles);
    EXPECT_EQ(run().status(), QString());
}

TEST_F(BatchFiles, anAdditionDuringABatchWaitsForTheNextOne)
{
    runInTheBackground();
    choose({u"/music/b.wav"_qs});
    EXPECT_THAT(chosen(), ElementsAre(u"/music/a.wav"_qs, u"/music/b.wav"_qs));
    EXPECT_EQ(screen->results()->count(), 1);
    EXPECT_TRUE(run().isTranscribing());
    EXPECT_EQ(run().transcript(), u"One"_qs);
    EXPECT_EQ(run().totalFilesCount(), 2) << "that of the files selected";
    EXPECT_EQ(run().fileLine(), u"File 1 of 2: a.wav"_qs);
    run().stopRun();
    waitForEnd();
    EXPECT_EQ(screen->results()->count(), 1);
}

TEST_F(BatchFiles, aDropAddsItsAudioAndMovieFiles)
{
    const auto dropped = files({u"/d/notes.txt"_qs, u"/d/talk.MP4"_qs, u"/d/song.mp3"_qs, u"/d/song.mp3"_qs});
    EXPECT_TRUE(screen->acceptsDrop(dropped, {u"text/uri-list"_qs}));
    EXPECT_TRUE(screen->dropFiles(dropped));
    EXPECT_THAT(chosen(), ElementsAre(u"/d/talk.MP4"_qs, u"/d/song.mp3"_qs));
}

TEST_F(BatchFiles, aDropOfNeitherKindLeavesAllAsItIs)
{
    transcribe(threeFiles, twoLines);
    const QList<QUrl> dropped = files({u"/d/notes.txt"_qs, u"/d/none"_qs}) + QList<QUrl>{QUrl(u"https://x/a.mp3"_qs)};
    EXPECT_FALSE(screen->acceptsDrop(dropped, {u"text/uri-list"_qs, u"image/png"_qs}));
    EXPECT_FALSE(screen->dropFiles(dropped));
    EXPECT_EQ(screen->results()->count(), 3);
}

TEST_F(BatchFiles, aFolderIsNoFileWhateverItsName)
{
    const QString folder = bench.file(u"album.mp3"_qs);
    ASSERT_TRUE(QDir().mkpath(folder));
    const QString plain = bench.file(u"album"_qs);
    ASSERT_TRUE(QDir().mkpath(plain));
    EXPECT_FALSE(screen->acceptsDrop(files({folder, plain}), {}));
    EXPECT_FALSE(screen->dropFiles(files({folder, plain})));
    EXPECT_EQ(chosen(), QStringList());
}

TEST_F(BatchFiles, aDropDuringABatchTakesNothing)
{
    runInTheBackground();
    const auto dropped = files({u"/d/song.mp3"_qs});
    EXPECT_FALSE(screen->acceptsDrop(dropped, {u"audio/mpeg"_qs}));
    EXPECT_FALSE(screen->dropFiles(dropped));
    screen->dropData("RIFF");
    EXPECT_THAT(chosen(), ElementsAre(u"/music/a.wav"_qs));
    EXPECT_THAT(bench.temporaryFiles(), ElementsAre());
}

TEST_F(BatchFiles, droppedDataBecomesAFileOfTheBatch)
{
    screen->dropData("RIFF data");
    screen->dropData("RIFF data");
    const QStringList left = bench.temporaryFiles();
    ASSERT_EQ(left.size(), 2);
    static const QRegularExpression uuid(u"^[0-9A-F]{8}-[0-9A-F]{4}-[0-9A-F]{4}-[0-9A-F]{4}-[0-9A-F]{12}$"_qs);
    for (const QString &name : left)
        EXPECT_TRUE(uuid.match(name).hasMatch()) << name.toStdString();
    ASSERT_EQ(chosen().size(), 2);
    QFile file(chosen().first());
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(file.readAll(), "RIFF data");
    EXPECT_EQ(QFileInfo(file).permissions() & (QFile::ReadGroup | QFile::ReadOther), QFile::Permissions());
}

TEST_F(BatchFiles, droppedDataStaysForAnotherRunAndGoesWithTheFiles)
{
    const QString sound = movie(u"sound"_qs);
    QFile file(sound);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    screen->dropData(file.readAll());
    useModel(twoLines);
    screen->start();
    waitForEnd();
    EXPECT_EQ(run().status(), u"Done"_qs);
    EXPECT_EQ(bench.temporaryFiles().size(), 1) << "the converted copy has gone";
    screen->clearAll();
    EXPECT_EQ(bench.temporaryFiles().size(), 1);
    screen->clearFiles();
    EXPECT_THAT(bench.temporaryFiles(), ElementsAre());
}

TEST_F(BatchFiles, droppedDataGoesWithTheScreen)
{
    screen->dropData("RIFF data");
    screen.reset();
    EXPECT_THAT(bench.temporaryFiles(), ElementsAre());
}

TEST_F(BatchFiles, droppedDataThatCannotBeKeptIsDroppedSilently)
{
    QTemporaryDir folder;
    qputenv("TMPDIR", crampedFolder(folder.path()).toUtf8());
    screen->dropData("data");
    EXPECT_EQ(chosen(), QStringList());
    EXPECT_FALSE(run().error());
    EXPECT_EQ(run().status(), QString());
}

TEST_F(BatchFiles, droppedDataThatCouldNotBeHadIsDroppedSilently)
{
    transcribe(threeFiles, twoLines);
    screen->dropData({});
    EXPECT_EQ(chosen(), threeFiles);
    EXPECT_EQ(screen->results()->count(), 3);
    EXPECT_FALSE(run().error());
    EXPECT_THAT(bench.temporaryFiles(), ElementsAre());
}

TEST_F(BatchFiles, knowsTheDataThatItTakes)
{
    EXPECT_EQ(screen->mediaFormat({u"text/plain"_qs, u"audio/mpeg"_qs}), u"audio/mpeg"_qs);
    EXPECT_EQ(screen->mediaFormat({u"text/plain"_qs}), QString());
    EXPECT_TRUE(screen->acceptsDrop({}, {u"video/mp4"_qs}));
}

TEST_F(BatchFiles, aNameWithALineBreakIsOneLineAndIsTranscribed)
{
    transcribe({u"/music/one\ntwo.wav"_qs}, "arguments\n");
    EXPECT_EQ(screen->files()->data(screen->files()->index(0), SelectedFiles::NameRole), u"one two.wav"_qs);
    EXPECT_EQ(screen->selectedName(), u"one two.wav"_qs);
    EXPECT_EQ(run().fileLine(), u"File 1 of 1: one two.wav"_qs);
    EXPECT_TRUE(result(0).rawOutput().contains(u"/music/one\ntwo.wav"_qs));
    EXPECT_EQ(status(0), FileStatus::done);
}

TEST_F(BatchFiles, aMovieWhoseNameIsNoUtf8IsToldAsOneThatCannotBeConverted)
{
    const QUrl movie = fileWithBrokenName("no\xff utf8.mp4");
    EXPECT_TRUE(screen->dropFiles({movie, movie, fileWithBrokenName("no\xfe utf8.mp4")}));
    EXPECT_EQ(chosen().size(), 2) << "two names that look alike are two";
    useModel(twoLines);
    screen->start();
    waitForEnd();
    ASSERT_TRUE(run().error());
    EXPECT_TRUE(run().error()->startsWith(u"Could not convert no"_qs)) << run().error()->toStdString();
    EXPECT_TRUE(run().error()->endsWith(u" utf8.mp4 for transcription."_qs)) << run().error()->toStdString();
    EXPECT_TRUE(bench.temporaryFiles().isEmpty());
}

TEST_F(BatchFiles, aSoundWhoseNameIsNoUtf8ReachesTheEngineUnderANameThatIsNotThere)
{
    EXPECT_TRUE(screen->dropFiles({fileWithBrokenName("no\xff utf8.wav")}));
    useModel("arguments\n");
    screen->start();
    waitForEnd();
    const QString given = result(0).rawOutput().section(u'\n', 3, 3);
    EXPECT_TRUE(given.endsWith(u"\uFFFD utf8.wav"_qs)) << given.toStdString();
    EXPECT_FALSE(QFile::exists(given)) << "which the engine tells";
    EXPECT_EQ(status(0), FileStatus::done);
    EXPECT_TRUE(screen->selectedName().endsWith(u" utf8.wav"_qs));
}

TEST_F(BatchFiles, clearFilesForgetsFilesAndResults)
{
    transcribe(threeFiles, twoLines);
    screen->clearFiles();
    EXPECT_EQ(chosen(), QStringList());
    EXPECT_EQ(screen->results()->count(), 0);
    EXPECT_EQ(run().status(), QString());
    EXPECT_EQ(run().totalFilesCount(), 0);
    EXPECT_FALSE(screen->canStart());
}

TEST_F(BatchFiles, clearAllForgetsTheResultsAndTheSameFilesCanBeRunAgain)
{
    transcribe(threeFiles, twoLines);
    run().setError(u"old"_qs);
    screen->pane()->search()->setSearchText(u"One"_qs);
    screen->clearAll();
    EXPECT_EQ(chosen(), threeFiles);
    EXPECT_EQ(screen->results()->count(), 0);
    EXPECT_FALSE(screen->results()->selectedResultID());
    EXPECT_EQ(run().status(), QString());
    EXPECT_FALSE(run().error());
    EXPECT_FALSE(run().progress());
    EXPECT_EQ(run().totalFilesCount(), 3);
    EXPECT_EQ(screen->pane()->search()->searchText(), QString());
    screen->start();
    waitForEnd();
    EXPECT_EQ(run().status(), u"Done"_qs);
    EXPECT_EQ(screen->results()->count(), 3);
}

TEST_F(BatchFiles, nothingIsClearedDuringABatch)
{
    runInTheBackground();
    screen->clearAll();
    screen->clearFiles();
    EXPECT_THAT(chosen(), ElementsAre(u"/music/a.wav"_qs));
    EXPECT_EQ(screen->results()->count(), 1);
    EXPECT_TRUE(run().isTranscribing());
    EXPECT_FALSE(screen->canChange());
}

TEST_F(BatchFiles, mayStartWithFilesAndAModelOnly)
{
    QSignalSpy changed(screen.get(), &BatchProcessingView::canStartChanged);
    choose(threeFiles);
    EXPECT_FALSE(screen->canStart()) << "no model";
    changed.clear();
    useModel({});
    EXPECT_GT(changed.count(), 0);
    EXPECT_TRUE(screen->canStart());
    changed.clear();
    screen->clearFiles();
    EXPECT_GT(changed.count(), 0);
    EXPECT_FALSE(screen->canStart()) << "no files";
}

TEST_F(BatchFiles, theModelChoiceFollowsTheModels)
{
    bench.installModel(u"ggml-small.bin"_qs);
    const QString base = bench.installModel(u"ggml-base.bin"_qs);
    screen->appear();
    EXPECT_EQ(screen->model()->selectedModelID(), u"base"_qs);
    QFile::remove(base);
    bench.models.refreshStatuses();
    EXPECT_EQ(screen->model()->selectedModelID(), u"small"_qs);
}

} // namespace
