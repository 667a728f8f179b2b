#include "file_screen_test.h"

#include "platform/file_types.h"
#include "support/cramped_folder.h"

#include <QClipboard>
#include <QDir>
#include <QFileInfo>
#include <QGuiApplication>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTemporaryDir>

using namespace sorvanta;
using testing::ElementsAre;

namespace {

using FileScreenChoice = FileScreenTest;

QList<QUrl> files(const QStringList &paths)
{
    QList<QUrl> urls;
    for (const QString &path : paths)
        urls << QUrl::fromLocalFile(path);
    return urls;
}

TEST_F(FileScreenChoice, beginsWithoutAFileAndWithAutoDetection)
{
    EXPECT_FALSE(screen->selectedFile());
    EXPECT_FALSE(screen->hasFile());
    EXPECT_EQ(screen->fileLabel(), u"No file selected"_qs);
    EXPECT_FALSE(screen->model()->selectedModelID());
    EXPECT_EQ(screen->language()->language(), u"auto"_qs);
    EXPECT_EQ(screen->startLabel(), u"Transcribe"_qs);
    EXPECT_FALSE(screen->canStart());
    expectNoTraceOfARun(run());
    EXPECT_FALSE(run().transcriptionStart());
    EXPECT_FALSE(run().stripDashes());
    EXPECT_EQ(statuses, QStringList());
}

TEST_F(FileScreenChoice, asksForOneAudioOrMovieFile)
{
    screen->chooseFile();
    ASSERT_EQ(bench.panels.requests.size(), 1);
    EXPECT_EQ(bench.panels.requests[0].extensions, mediaExtensions());
    for (const QString extension : {"wav", "mp3", "m4a", "flac", "mp4", "mov", "mkv"})
        EXPECT_TRUE(bench.panels.requests[0].extensions.contains(extension)) << extension.toStdString();
    EXPECT_FALSE(bench.panels.requests[0].extensions.contains(u"txt"_qs));
    EXPECT_FALSE(screen->hasFile()) << "before the answer";
}

TEST_F(FileScreenChoice, takesTheFileOfThePanel)
{
    QSignalSpy changed(screen.get(), &TranscriptFromFileView::selectedFileChanged);
    choose(u"/music/Harbour walk.m4a"_qs);
    EXPECT_EQ(screen->selectedFile(), u"/music/Harbour walk.m4a"_qs);
    EXPECT_EQ(screen->fileLabel(), u"Harbour walk.m4a"_qs);
    EXPECT_EQ(changed.count(), 1);
}

TEST_F(FileScreenChoice, aDeclinedPanelChangesNothing)
{
    choose(u"/music/a.m4a"_qs);
    run().setStatus(u"Done"_qs);
    run().setError(u"old"_qs);
    screen->chooseFile();
    bench.panels.answer(std::nullopt);
    EXPECT_EQ(screen->selectedFile(), u"/music/a.m4a"_qs);
    EXPECT_EQ(run().status(), u"Done"_qs);
    EXPECT_EQ(run().error(), u"old"_qs);
}

TEST_F(FileScreenChoice, choosingClearsTranscriptStatusAndError)
{
    transcribe(u"/music/a.wav"_qs, twoLines);
    run().setError(u"old"_qs);
    QSignalSpy textChanged(&run(), &TranscriptionRun::transcriptChanged);
    choose(u"/music/b.wav"_qs);
    EXPECT_EQ(run().transcript(), QString());
    EXPECT_EQ(run().status(), QString());
    EXPECT_FALSE(run().error());
    EXPECT_EQ(textChanged.count(), 1);
    EXPECT_EQ(run().displayedTranscript(), u"- One\nTwo"_qs) << "what is shown comes from the output, which stays";
    choose(u"/music/c.wav"_qs);
    EXPECT_EQ(textChanged.count(), 1) << "there was nothing left to clear";
}

TEST_F(FileScreenChoice, theViewerShowsHowLongTheChosenFileIs)
{
    const QString two = bench.file(u"two.wav"_qs);
    const QString three = bench.file(u"three.wav"_qs);
    writeWav(two, 2);
    writeWav(three, 3);
    const TranscriptWindowModel &viewer = screen->pane()->viewer()->model();
    choose(two);
    waitFor([&viewer] { return viewer.playbackDuration() == 2; });
    choose(three);
    waitFor([&viewer] { return viewer.playbackDuration() == 3; });
    choose(u"/music/gone.wav"_qs);
    waitFor([&viewer] { return viewer.playbackDuration() == 0; });
}

TEST_F(FileScreenChoice, aFileChosenDuringARunDoesNotLoseTheRunsTextAndIsToldAsItsSource)
{
    useModel(twoLines + bench.engine.awaitGate());
    choose(u"/music/a.wav"_qs);
    screen->start();
    waitFor([this] { return run().transcript() == u"- One\nTwo"_qs; });
    choose(u"/music/b.wav"_qs);
    EXPECT_EQ(run().transcript(), QString());
    bench.engine.openGate();
    waitForStatus(u"Done"_qs);
    EXPECT_EQ(run().transcript(), u"- One\nTwo"_qs);
    ASSERT_EQ(bench.history.entries().size(), 1);
    EXPECT_EQ(bench.history.entries().first().sourceLabel, u"/music/b.wav"_qs);
}

TEST_F(FileScreenChoice, aPanelAnsweredAfterTheScreenHasGoneIsOfNoConsequence)
{
    screen->chooseFile();
    screen.reset();
    bench.panels.answer(u"/music/a.wav"_qs);
    makeScreen();
    EXPECT_FALSE(screen->hasFile());
}

TEST_F(FileScreenChoice, ofThreeDroppedFilesTheFirstAudioOrMovieIsTaken)
{
    const auto dropped = files({u"/d/notes.txt"_qs, u"/d/talk.MP4"_qs, u"/d/song.mp3"_qs});
    EXPECT_TRUE(screen->acceptsDrop(dropped, {u"text/uri-list"_qs}));
    run().setError(u"old"_qs);
    EXPECT_TRUE(screen->dropFiles(dropped));
    EXPECT_EQ(screen->selectedFile(), u"/d/talk.MP4"_qs);
    EXPECT_FALSE(run().error());
}

TEST_F(FileScreenChoice, aDropOfNeitherKindIsRefused)
{
    const auto dropped = files({u"/d/notes.txt"_qs, u"/d/picture.png"_qs, u"/d/noextension"_qs});
    EXPECT_FALSE(screen->acceptsDrop(dropped, {u"text/uri-list"_qs, u"image/png"_qs}));
    EXPECT_FALSE(screen->dropFiles(dropped));
    EXPECT_FALSE(screen->acceptsDrop({}, {}));
    EXPECT_FALSE(screen->hasFile());
}

TEST_F(FileScreenChoice, aFileThatIsNotOnThisMachineIsRefused)
{
    const QList<QUrl> dropped{QUrl(u"https://example.invalid/a.mp3"_qs)};
    EXPECT_FALSE(screen->acceptsDrop(dropped, {u"text/uri-list"_qs}));
    EXPECT_FALSE(screen->dropFiles(dropped));
}

TEST_F(FileScreenChoice, aFolderIsRefusedWhateverItsName)
{
    const QString folder = bench.file(u"album.mp3"_qs);
    ASSERT_TRUE(QDir().mkpath(folder));
    EXPECT_FALSE(screen->acceptsDrop(files({folder}), {u"text/uri-list"_qs}));
    EXPECT_FALSE(screen->dropFiles(files({folder})));
    EXPECT_TRUE(screen->dropFiles(files({folder, u"/d/song.mp3"_qs})));
    EXPECT_EQ(screen->selectedFile(), u"/d/song.mp3"_qs);
}

TEST_F(FileScreenChoice, knowsTheDataThatItTakes)
{
    EXPECT_EQ(screen->mediaFormat({u"text/plain"_qs, u"audio/mpeg"_qs, u"video/mp4"_qs}), u"audio/mpeg"_qs);
    EXPECT_EQ(screen->mediaFormat({u"video/mp4"_qs, u"audio/mpeg"_qs}), u"video/mp4"_qs);
    EXPECT_EQ(screen->mediaFormat({u"text/plain"_qs, u"application/audio/x"_qs}), QString());
    EXPECT_TRUE(screen->acceptsDrop({}, {u"audio/x-wav"_qs}));
}

TEST_F(FileScreenChoice, droppedDataGoesToATemporaryFileThatLivesAsLongAsTheScreen)
{
    run().setError(u"old"_qs);
    screen->dropData("RIFF data");
    const QStringList left = bench.temporaryFiles();
    ASSERT_EQ(left.size(), 1);
    static const QRegularExpression uuid(u"^[0-9A-F]{8}-[0-9A-F]{4}-[0-9A-F]{4}-[0-9A-F]{4}-[0-9A-F]{12}$"_qs);
    EXPECT_TRUE(uuid.match(left[0]).hasMatch()) << left[0].toStdString();
    EXPECT_EQ(screen->selectedFile(), bench.temporaryFolder() + u'/' + left[0]);
    EXPECT_EQ(screen->fileLabel(), left[0]);
    EXPECT_FALSE(run().error());
    QFile file(*screen->selectedFile());
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(file.readAll(), "RIFF data");
    EXPECT_EQ(QFileInfo(file).permissions() & (QFile::ReadGroup | QFile::ReadOther), QFile::Permissions());
    screen.reset();
    EXPECT_THAT(bench.temporaryFiles(), ElementsAre());
}

TEST_F(FileScreenChoice, droppedDataThatCannotBeKeptIsSaidInTheError)
{
    QTemporaryDir folder;
    qputenv("TMPDIR", crampedFolder(folder.path()).toUtf8());
    screen->dropData("data");
    EXPECT_FALSE(screen->hasFile());
    ASSERT_TRUE(run().error());
    EXPECT_FALSE(run().error()->isEmpty());
}

TEST_F(FileScreenChoice, droppedDataThatCouldNotBeHadChangesNothing)
{
    choose(u"/music/a.wav"_qs);
    run().setError(u"old"_qs);
    screen->dropData({});
    EXPECT_EQ(screen->selectedFile(), u"/music/a.wav"_qs);
    EXPECT_EQ(run().error(), u"old"_qs);
    EXPECT_EQ(bench.temporaryFiles(), QStringList());
}

TEST_F(FileScreenChoice, mayStartWithAFileAndAModelOnly)
{
    QSignalSpy changed(screen.get(), &TranscriptFromFileView::canStartChanged);
    const QString model = bench.installModel(u"ggml-base.bin"_qs);
    screen->appear();
    EXPECT_GT(changed.count(), 0);
    EXPECT_FALSE(screen->canStart()) << "no file";
    changed.clear();
    choose(u"/music/a.wav"_qs);
    EXPECT_GT(changed.count(), 0);
    EXPECT_TRUE(screen->canStart());
    changed.clear();
    QFile::remove(model);
    screen->appear();
    EXPECT_GT(changed.count(), 0);
    EXPECT_FALSE(screen->canStart()) << "no model";
}

TEST_F(FileScreenChoice, choosesItsModelWhenItComesOnShow)
{
    bench.installModel(u"ggml-small.bin"_qs);
    bench.installModel(u"ggml-base.bin"_qs);
    EXPECT_FALSE(screen->model()->selectedModelID());
    screen->appear();
    EXPECT_EQ(screen->model()->selectedModelID(), u"base"_qs);
}

TEST_F(FileScreenChoice, aModelRemovedElsewhereMovesTheChoiceToTheFirstOneLeft)
{
    bench.installModel(u"ggml-tiny.bin"_qs);
    bench.installModel(u"ggml-base.bin"_qs);
    bench.installModel(u"ggml-small.bin"_qs);
    screen->appear();
    screen->model()->choose(screen->model()->names().indexOf(u"Small"_qs));
    ASSERT_EQ(screen->model()->selectedModelID(), u"small"_qs);
    for (const ModelInfo &model : modelCatalogue()) {
        if (model.id == u"small"_qs)
            bench.models.deleteLocalCopy(model);
    }
    EXPECT_EQ(screen->model()->selectedModelID(), bench.models.downloadedModels().first().first.id);
    EXPECT_EQ(screen->model()->names().size(), 2);
}

TEST_F(FileScreenChoice, theErrorGoesToTheClipboardWordForWord)
{
    QGuiApplication::clipboard()->setText(u"before"_qs);
    screen->copyError();
    EXPECT_EQ(QGuiApplication::clipboard()->text(), u"before"_qs) << "there is no error";
    run().setError(u"Whisper failed: “a”\nsecond line 🙂"_qs);
    screen->copyError();
    EXPECT_EQ(QGuiApplication::clipboard()->text(), u"Whisper failed: “a”\nsecond line 🙂"_qs);
}

} // namespace
