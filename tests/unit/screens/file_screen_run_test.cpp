#include "file_screen_test.h"

#include "support/waiting.h"

#include <QSignalSpy>
#include <QThreadPool>

using namespace sorvanta;
using testing::ElementsAre;

namespace {

using FileScreenRun = FileScreenTest;

TEST_F(FileScreenRun, asksForAFileFirst)
{
    screen->start();
    EXPECT_EQ(run().error(), u"Please choose an audio file first."_qs);
    EXPECT_EQ(run().status(), QString());
}

TEST_F(FileScreenRun, asksForAModelThen)
{
    choose(u"/music/a.wav"_qs);
    screen->start();
    EXPECT_EQ(run().error(), u"Please select a downloaded model."_qs);
    EXPECT_EQ(run().status(), QString());
}

TEST_F(FileScreenRun, aModelWhoseFileHasGoneIsNotStarted)
{
    const QString model = bench.installModel(u"ggml-base.bin"_qs);
    screen->appear();
    choose(u"/music/a.wav"_qs);
    QFile::remove(model);
    bench.models.refreshStatuses();
    screen->start();
    EXPECT_EQ(run().error(), u"Please select a downloaded model."_qs);
}

TEST_F(FileScreenRun, saysEachStepOfAFileThatGoesAsItStands)
{
    transcribe(u"/music/talk.MP3"_qs, twoLines);
    EXPECT_THAT(statuses, ElementsAre(u"Preparing file…"_qs, u"Audio detected, no conversion needed."_qs,
                                      u"Starting transcription…"_qs, u"Preparing…"_qs, u"Done"_qs));
    EXPECT_EQ(run().transcript(), u"- One\nTwo"_qs);
    EXPECT_EQ(run().progress(), 1.0);
    EXPECT_EQ(run().etaText(), u"Done"_qs);
}

TEST_F(FileScreenRun, handsOnFileModelAndLanguage)
{
    const QString model = bench.installModel(u"ggml-base.bin"_qs, "arguments\n");
    screen->appear();
    screen->language()->setLanguage(u"  DE "_qs);
    choose(u"/music/a talk.wav"_qs);
    screen->start();
    waitForStatus(u"Done"_qs);
    EXPECT_EQ(run().rawOutput(), u"-m\n%1\n-f\n/music/a talk.wav\n-l\nde\n"_qs.arg(model));
}

TEST_F(FileScreenRun, theModelIsTheOneOfThePressAndTheLanguageTheOneAfterThePreparation)
{
    const QString base = bench.installModel(u"ggml-base.bin"_qs, "arguments\n");
    bench.installModel(u"ggml-small.bin"_qs, "arguments\n");
    screen->appear();
    choose(u"/music/a.wav"_qs);
    screen->start();
    screen->model()->choose(1);
    screen->language()->setLanguage(u"fr"_qs);
    waitForStatus(u"Done"_qs);
    EXPECT_EQ(run().rawOutput(), u"-m\n%1\n-f\n/music/a.wav\n-l\nfr\n"_qs.arg(base));
}

TEST_F(FileScreenRun, convertsAMovieAndRemovesWhatItMade)
{
    const QString movie = bench.file(u"talk.mp4"_qs);
    writeWav(movie, 1.0);
    useModel("arguments\n" + bench.engine.awaitGate());
    choose(movie);
    screen->start();
    waitFor([this] { return run().isTranscribing() && run().rawOutput().endsWith(u"auto\n"_qs); });
    const QStringList left = bench.temporaryFiles();
    ASSERT_EQ(left.size(), 1);
    EXPECT_TRUE(left[0].endsWith(u".wav"_qs));
    EXPECT_TRUE(run().rawOutput().contains(u"-f\n%1/%2\n"_qs.arg(bench.temporaryFolder(), left[0])));
    bench.engine.openGate();
    waitForStatus(u"Done"_qs);
    EXPECT_THAT(statuses, ElementsAre(u"Preparing file…"_qs, u"Converting talk.mp4 to wav audio…"_qs,
                                      u"Conversion finished, starting transcription…"_qs, u"Starting transcription…"_qs,
                                      u"Preparing…"_qs, u"Done"_qs));
    EXPECT_THAT(bench.temporaryFiles(), ElementsAre());
    EXPECT_TRUE(QFile::exists(movie));
}

TEST_F(FileScreenRun, removesWhatItMadeAfterAFailureAndAfterAStop)
{
    const QString movie = bench.file(u"talk.mp4"_qs);
    writeWav(movie, 1.0);
    useModel("exit 3\n");
    choose(movie);
    screen->start();
    waitFor([this] { return run().hasError(); });
    EXPECT_THAT(bench.temporaryFiles(), ElementsAre());

    useModel("print x%0A\nsleep 60000\n");
    screen->start();
    waitFor([this] { return run().rawOutput() == u"x\n"_qs; });
    EXPECT_EQ(bench.temporaryFiles().size(), 1);
    run().stopRun();
    waitForStatus(u"Cancelled"_qs);
    EXPECT_THAT(bench.temporaryFiles(), ElementsAre());
}

TEST_F(FileScreenRun, aMovieWithoutSoundLeavesTheOldTextOnShow)
{
    transcribe(u"/music/a.wav"_qs, twoLines);
    const QString movie = bench.file(u"movie.mp4"_qs);
    writeSilentMovie(movie);
    choose(movie);
    statuses.clear();
    screen->start();
    EXPECT_FALSE(run().isTranscribing());
    EXPECT_TRUE(screen->canStart()) << "nothing has begun yet";
    EXPECT_EQ(screen->startLabel(), u"Transcribe"_qs);
    waitFor([this] { return run().hasError(); });
    QTest::qWait(100);
    EXPECT_THAT(statuses,
                ElementsAre(u"Preparing file…"_qs, u"Converting movie.mp4 to wav audio…"_qs, u"Conversion failed."_qs));
    EXPECT_EQ(run().error(), u"Could not convert movie.mp4 to audio. The file might not contain an audio track."_qs);
    EXPECT_FALSE(run().isTranscribing());
    EXPECT_EQ(run().displayedTranscript(), u"- One\nTwo"_qs);
    EXPECT_TRUE(run().hasShownText());
    EXPECT_THAT(bench.temporaryFiles(), ElementsAre());
    EXPECT_EQ(bench.history.entries().size(), 1) << "only the first run is there";
}

TEST_F(FileScreenRun, aFileWithoutExtensionIsConverted)
{
    const QString path = bench.file(u"noise"_qs);
    writeWav(path, 0.5);
    transcribe(path, twoLines);
    EXPECT_TRUE(statuses.contains(u"Converting noise to wav audio…"_qs));
}

TEST_F(FileScreenRun, dataThatWasDroppedIsTranscribed)
{
    const QString path = bench.file(u"sound"_qs);
    writeWav(path, 0.5);
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    useModel(twoLines);
    screen->dropData(file.readAll());
    screen->start();
    waitForStatus(u"Done"_qs);
    EXPECT_EQ(run().transcript(), u"- One\nTwo"_qs);
    EXPECT_EQ(bench.temporaryFiles().size(), 1) << "the dropped data is still there for another run";
}

TEST_F(FileScreenRun, aSecondRunKeepsTheTextUntilItBegins)
{
    transcribe(u"/music/a.wav"_qs, twoLines);
    const QString movie = bench.file(u"long.mp4"_qs);
    writeWav(movie, 1.0);
    useModel("sleep 300\n");
    choose(movie);
    screen->start();
    EXPECT_EQ(run().rawOutput().isEmpty(), false);
    EXPECT_EQ(run().displayedTranscript(), u"- One\nTwo"_qs);
    QString atTheBegin;
    QString beforeTheBegin;
    QObject::connect(&run(), &TranscriptionRun::statusChanged, &run(), [&] {
        if (run().status() == u"Starting transcription…"_qs)
            beforeTheBegin = run().displayedTranscript();
        else if (run().status() == u"Preparing…"_qs)
            atTheBegin = run().displayedTranscript() + u"(none)"_qs;
    });
    waitForStatus(u"Done"_qs);
    EXPECT_EQ(beforeTheBegin, u"- One\nTwo"_qs);
    EXPECT_EQ(atTheBegin, u"(none)"_qs);
}

TEST_F(FileScreenRun, isNotStartedWhileItRuns)
{
    useModel(twoLines + "sleep 60000\n");
    choose(u"/music/a.wav"_qs);
    QSignalSpy labels(screen.get(), &TranscriptFromFileView::startLabelChanged);
    screen->start();
    EXPECT_TRUE(screen->canStart()) << "the preparation does not count";
    waitFor([this] { return !run().rawOutput().isEmpty(); });
    EXPECT_FALSE(screen->canStart());
    EXPECT_EQ(screen->startLabel(), u"Transcribing…"_qs);
    EXPECT_EQ(labels.count(), 1);
    run().stopRun();
    EXPECT_EQ(screen->startLabel(), u"Transcribing…"_qs) << "until the engine has ended";
    waitForStatus(u"Cancelled"_qs);
    EXPECT_TRUE(screen->canStart());
    EXPECT_EQ(screen->startLabel(), u"Transcribe"_qs);
    EXPECT_EQ(labels.count(), 2);
}

TEST_F(FileScreenRun, aStopKeepsThePartialTextAndNothingReachesTheHistory)
{
    useModel(twoLines + "sleep 60000\n");
    choose(u"/music/a.wav"_qs);
    screen->start();
    waitFor([this] { return run().transcript() == u"- One\nTwo"_qs; });
    run().stopRun();
    EXPECT_EQ(run().status(), u"Stopping…"_qs);
    waitForStatus(u"Cancelled"_qs);
    EXPECT_EQ(run().displayedTranscript(), u"- One\nTwo"_qs);
    EXPECT_FALSE(run().error());
    EXPECT_TRUE(bench.history.entries().isEmpty());
}

TEST_F(FileScreenRun, aFailureOfTheEngineShowsItsWholeLog)
{
    useModel("complain error%3A failed%0A\nexit 1\n");
    choose(u"/music/a.wav"_qs);
    screen->start();
    waitFor([this] { return run().hasError(); });
    EXPECT_EQ(run().error(), u"Whisper failed: error: failed\n"_qs);
    EXPECT_EQ(run().status(), QString());
    EXPECT_TRUE(bench.history.entries().isEmpty());
    EXPECT_TRUE(screen->canStart());
}

TEST_F(FileScreenRun, aMissingEngineIsSaid)
{
    QFile::remove(bench.engine.enginePath());
    useModel({});
    choose(u"/music/a.wav"_qs);
    screen->start();
    waitFor([this] { return run().hasError(); });
    EXPECT_EQ(run().error(), u"whisper-cli not found in bundle at sorvanta_extra_data/whisper.cpp/build/bin"_qs);
}

TEST_F(FileScreenRun, asksAgainWithTheOldErrorGoneOnceARunBegins)
{
    useModel("exit 1\n");
    choose(u"/music/a.wav"_qs);
    screen->start();
    waitFor([this] { return run().hasError(); });
    useModel(twoLines);
    screen->start();
    EXPECT_TRUE(run().hasError()) << "it stays until the run begins";
    waitForStatus(u"Done"_qs);
    EXPECT_FALSE(run().hasError());
}

TEST_F(FileScreenRun, aSecondPressDuringThePreparationStartsASecondOneAndTheLaterRunWins)
{
    const QString movie = bench.file(u"talk.mp4"_qs);
    writeWav(movie, 2.0);
    bench.installModel(u"ggml-base.bin"_qs,
                       "print [x] base%0A\n" + bench.engine.awaitGate() + "print [x] base again%0A\n");
    bench.installModel(u"ggml-small.bin"_qs,
                       "print [x] small%0A\n" + bench.engine.awaitGate() + "print [x] small again%0A\n");
    screen->appear();
    choose(movie);
    screen->start();
    screen->model()->choose(1);
    ASSERT_EQ(screen->model()->selectedModelID(), u"small"_qs);
    ASSERT_TRUE(screen->canStart());
    screen->start();
    const auto haveBothBegun = [this] { return statuses.count(u"Preparing…"_qs) == 2; };
    waitFor(haveBothBegun);
    EXPECT_EQ(statuses.count(u"Conversion finished, starting transcription…"_qs), 2);
    bench.engine.openGate();
    waitForStatus(u"Done"_qs);
    const QString text = run().transcript();
    EXPECT_TRUE(text == u"base\nbase again"_qs || text == u"small\nsmall again"_qs) << text.toStdString();
    EXPECT_EQ(statuses.count(u"Done"_qs), 1);
    EXPECT_EQ(bench.history.entries().size(), 1);
    QTest::qWait(200);
    EXPECT_EQ(run().transcript(), text);
    EXPECT_THAT(bench.temporaryFiles(), ElementsAre());
}

TEST_F(FileScreenRun, theScreenMayGoInMidRun)
{
    const QString movie = bench.file(u"talk.mp4"_qs);
    writeWav(movie, 1.0);
    useModel("print x%0A\nsleep 60000\n");
    choose(movie);
    screen->start();
    waitFor([this] { return !run().rawOutput().isEmpty(); });
    screen.reset();
    QTest::qWait(50);
    EXPECT_THAT(bench.temporaryFiles(), ElementsAre());
}

TEST_F(FileScreenRun, theScreenMayGoInMidPreparation)
{
    const QString movie = bench.file(u"talk.mp4"_qs);
    writeWav(movie, 30.0);
    useModel(twoLines);
    choose(movie);
    screen->start();
    screen.reset();
    EXPECT_TRUE(waitUntil([this] { return QThreadPool::globalInstance()->activeThreadCount() == 0; }));
    QTest::qWait(50);
    EXPECT_THAT(bench.temporaryFiles(), ElementsAre());
}

TEST_F(FileScreenRun, twoScreensRunAtOnceAndDoNotKnowOfEachOther)
{
    useModel("print [x] first%0A\nsleep 300\n");
    const auto first = std::move(screen);
    makeScreen();
    first->model()->refresh();
    screen->appear();
    choose(u"/music/b.wav"_qs);
    EXPECT_FALSE(first->hasFile());
    screen->start();
    waitForStatus(u"Done"_qs);
    EXPECT_EQ(run().transcript(), u"first"_qs);
    EXPECT_EQ(first->run()->transcript(), QString());
    EXPECT_EQ(first->run()->status(), QString());
}

} // namespace
