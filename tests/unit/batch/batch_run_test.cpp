#include "batch_screen_test.h"

#include "support/waiting.h"

#include <QSignalSpy>
#include <QThreadPool>

using namespace sorvanta;
using testing::ElementsAre;

namespace {

using BatchRunTest = BatchScreenTest;

TEST_F(BatchRunTest, asksForFilesFirstAndForAModelThen)
{
    run().setStatus(u"as it was"_qs);
    screen->start();
    EXPECT_EQ(run().error(), u"Please choose at least one audio file first."_qs);
    EXPECT_EQ(run().status(), u"as it was"_qs);
    EXPECT_EQ(screen->results()->count(), 0);

    choose(threeFiles);
    run().setStatus(u"as it was"_qs);
    screen->start();
    EXPECT_EQ(run().error(), u"Please select a downloaded model."_qs);
    EXPECT_EQ(run().status(), u"as it was"_qs);
    EXPECT_EQ(screen->results()->count(), 0) << "none made";
    EXPECT_FALSE(run().isTranscribing());
}

TEST_F(BatchRunTest, beginsWithOnePendingResultForEachFileAndFreshFields)
{
    transcribe(threeFiles, twoLines);
    const QUuid before = result(0).id;
    useModel("sleep 60000\n");
    run().setError(u"old"_qs);
    screen->start();
    EXPECT_TRUE(run().isTranscribing());
    EXPECT_EQ(run().status(), u"Preparing…"_qs);
    EXPECT_FALSE(run().error());
    EXPECT_FALSE(run().progress());
    EXPECT_EQ(run().etaText(), u"Estimating…"_qs);
    EXPECT_FALSE(run().totalDuration());
    EXPECT_TRUE(run().transcriptionStart());
    EXPECT_FALSE(run().isStopping());
    EXPECT_FALSE(run().hasActiveProcess());
    EXPECT_EQ(run().transcript(), QString());
    EXPECT_EQ(run().rawOutput(), QString());
    EXPECT_EQ(run().totalFilesCount(), 3);
    EXPECT_EQ(run().currentFileIndex(), 0);
    EXPECT_EQ(run().fileLine(), u"File 1 of 3: a.wav"_qs);
    EXPECT_EQ(screen->startLabel(), u"Transcribing…"_qs);
    EXPECT_FALSE(screen->canStart());
    EXPECT_TRUE(screen->canStop());
    ASSERT_EQ(screen->results()->count(), 3);
    for (qsizetype row = 0; row < 3; ++row) {
        EXPECT_EQ(result(row).url.toLocalFile(), threeFiles[row]);
        EXPECT_EQ(status(row), FileStatus::pending);
        EXPECT_EQ(result(row).rawOutput(), QString());
    }
    EXPECT_NE(result(0).id, before) << "a new start replaces the results";
    EXPECT_EQ(screen->results()->selectedResultID(), result(0).id);
}

TEST_F(BatchRunTest, saysEachStepInItsOrder)
{
    const QString clip = movie(u"talk.mp4"_qs);
    transcribe({u"/music/a.mp3"_qs, clip}, twoLines);
    EXPECT_THAT(statuses, ElementsAre(u"Preparing…"_qs, u"Audio detected, no conversion needed for a.mp3."_qs,
                                      u"Transcribing a.mp3 (1/2)"_qs, u"Converting talk.mp4 to wav audio…"_qs,
                                      u"Conversion finished for talk.mp4, starting transcription…"_qs,
                                      u"Transcribing talk.mp4 (2/2)"_qs, u"Done"_qs));
}

TEST_F(BatchRunTest, allWentWell)
{
    transcribe(threeFiles, twoLines);
    EXPECT_EQ(run().status(), u"Done"_qs);
    EXPECT_FALSE(run().error());
    EXPECT_EQ(run().progress(), 1.0);
    EXPECT_EQ(run().etaText(), u"Done"_qs);
    EXPECT_FALSE(run().isStopping());
    EXPECT_FALSE(run().hasActiveProcess());
    EXPECT_TRUE(screen->canChange());
    EXPECT_TRUE(screen->canStart());
    EXPECT_FALSE(screen->canStop());
    for (qsizetype row = 0; row < 3; ++row) {
        EXPECT_EQ(status(row), FileStatus::done);
        EXPECT_EQ(result(row).transcript(), u"- One\nTwo"_qs);
        EXPECT_FALSE(result(row).error);
    }
    EXPECT_EQ(run().transcript(), u"- One\nTwo"_qs);
    EXPECT_EQ(run().rawOutput(), result(2).rawOutput());
}

TEST_F(BatchRunTest, anErrorThatStandsAtTheEndKeepsTheStatusFromSayingDone)
{
    start({u"/music/a.wav"_qs}, twoLines + bench.engine.awaitGate());
    waitFor([this] { return result(0).hasTranscript; });
    run().setError(u"Could not save TXT: no."_qs);
    bench.engine.openGate();
    waitForEnd();
    EXPECT_EQ(run().status(), u"Transcribing a.wav (1/1)"_qs);
    EXPECT_EQ(run().error(), u"Could not save TXT: no."_qs);
    EXPECT_EQ(run().progress(), 1.0);
    EXPECT_EQ(status(0), FileStatus::done);
    EXPECT_EQ(bench.history.entries().size(), 1);
}

TEST_F(BatchRunTest, theFilesRunStrictlyOneAfterTheOther)
{
    start(threeFiles, twoLines);
    QList<QList<FileStatus>> seen;
    const auto look = [this, &seen] {
        QList<FileStatus> all;
        for (const FileResult &result : screen->results()->list())
            all << result.status;
        if (seen.isEmpty() || seen.last() != all)
            seen << all;
    };
    QObject::connect(screen->results(), &QAbstractItemModel::dataChanged, screen->results(), look);
    waitForEnd();
    using enum FileStatus;
    EXPECT_THAT(seen, ElementsAre(QList{running, pending, pending}, QList{done, pending, pending},
                                  QList{done, running, pending}, QList{done, done, pending}, QList{done, done, running},
                                  QList{done, done, done}));
}

TEST_F(BatchRunTest, theBarRunsOverTheBatchAndTheTimeSpeaksOfTheFile)
{
    const QByteArray half = "print main%3A processing 'a.wav' (480000 samples, 30.0 sec), 4 threads%0A\n"
                            "await-reader\nsleep 100\n"
                            "print [00%3A00%3A00.000 --> 00%3A00%3A15.000]   One%0A\n"
                            "await-reader\nsleep 100\n";
    useModel(half);
    choose(threeFiles);
    QList<double> progress;
    QStringList remaining;
    QObject::connect(&run(), &RunState::progressChanged, &run(), [&] {
        if (run().progress() && (progress.isEmpty() || progress.last() != *run().progress()))
            progress << *run().progress();
        if (!run().etaText().isEmpty() && (remaining.isEmpty() || remaining.last() != run().etaText()))
            remaining << run().etaText();
    });
    screen->start();
    waitForEnd();
    EXPECT_THAT(progress, ElementsAre(0.0, 0.5 / 3, 1.0 / 3, 1.5 / 3, 2.0 / 3, 2.5 / 3, 1.0));
    ASSERT_EQ(remaining.size(), 9) << remaining.join(u'|').toStdString();
    for (int file = 0; file < 3; ++file) {
        EXPECT_EQ(remaining[3 * file], u"Estimating…"_qs);
        EXPECT_TRUE(remaining[3 * file + 1].startsWith(u"ETA: "_qs));
        EXPECT_EQ(remaining[3 * file + 2], u"Done"_qs);
    }
}

TEST_F(BatchRunTest, ofFourTheSecondAtItsHalfIsThreeEighths)
{
    useModel("only b.wav\nprint main%3A processing 'b.wav' (480000 samples, 30.0 sec), 4 threads%0A\n"
             "print [00%3A00%3A00.000 --> 00%3A00%3A15.000]   One%0A\nsleep 60000\n");
    choose(threeFiles + QStringList{u"/music/d.wav"_qs});
    screen->start();
    waitFor([this] { return run().progress() == 0.375; });
    EXPECT_EQ(run().progressText(), u"Progress: 37%"_qs);
    EXPECT_EQ(run().totalDuration(), 30.0);
    EXPECT_EQ(run().fileLine(), u"File 2 of 4: b.wav"_qs);
    EXPECT_FALSE(run().isStatusShown()) << "the progress speaks for it";
}

TEST_F(BatchRunTest, theStatusIsShownUntilThereIsProgress)
{
    start({movie(u"talk.mp4"_qs, 60.0)}, "sleep 60000\n");
    EXPECT_TRUE(run().isStatusShown());
    waitFor([this] { return run().hasProgress(); });
    EXPECT_FALSE(run().isStatusShown());
}

TEST_F(BatchRunTest, theRawOutputStaysThatOfTheFileBeforeUntilTheNextOnePrints)
{
    start({u"/music/a.wav"_qs, u"/music/b.wav"_qs},
          "only a.wav\nprint [x] A%0A\nonly b.wav\n" + bench.engine.awaitGate() + "print [x] B%0A\nsleep 60000\n");
    waitFor([this] { return run().currentFileIndex() == 1; });
    EXPECT_EQ(run().rawOutput(), u"[x] A\n"_qs);
    EXPECT_EQ(run().transcript(), u"A"_qs);
    bench.engine.openGate();
    waitFor([this] { return run().rawOutput() == u"[x] B\n"_qs; });
    EXPECT_EQ(result(1).rawOutput(), u"[x] B\n"_qs);
    EXPECT_EQ(status(1), FileStatus::running);
}

TEST_F(BatchRunTest, theEngineIsHandedFileModelAndLanguage)
{
    const QString model = bench.installModel(u"ggml-base.bin"_qs, "arguments\n");
    screen->appear();
    screen->language()->setLanguage(u"  DE "_qs);
    choose({u"/music/a talk.wav"_qs});
    screen->start();
    waitForEnd();
    EXPECT_EQ(result(0).rawOutput(), u"-m\n%1\n-f\n/music/a talk.wav\n-l\nde\n"_qs.arg(model));

    screen->language()->setLanguage(u" \n"_qs);
    screen->start();
    waitForEnd();
    EXPECT_TRUE(result(0).rawOutput().endsWith(u"-l\nauto\n"_qs));
}

TEST_F(BatchRunTest, theCommandOfEachFileIsPrintedAndWhatTheEngineSays)
{
    const QString model = bench.installModel(u"ggml-base.bin"_qs, "print words\n");
    screen->appear();
    choose({u"/music/a.wav"_qs, u"/music/b.wav"_qs});
    testing::internal::CaptureStdout();
    screen->start();
    waitForEnd();
    const QString command = u"Running command:\n\"%1\" \"-m\" \"%2\" \"-f\" \"%3\" \"-l\" \"auto\"\nwords\n"_qs;
    const QString engine = bench.engine.enginePath();
    EXPECT_EQ(QString::fromStdString(testing::internal::GetCapturedStdout()),
              command.arg(engine, model, u"/music/a.wav"_qs) + command.arg(engine, model, u"/music/b.wav"_qs));
}

TEST_F(BatchRunTest, theConvertedFilesGoAtTheEndOfTheBatchTheUsersOwnStay)
{
    const QString first = movie(u"a.mp4"_qs);
    const QString second = movie(u"b.mov"_qs);
    start({first, second, u"/music/c.wav"_qs}, "arguments\nonly c.wav\n" + bench.engine.awaitGate());
    waitFor([this] { return status(2) == FileStatus::running; });
    EXPECT_EQ(run().tempConvertedURLs().size(), 2);
    EXPECT_EQ(bench.temporaryFiles().size(), 2);
    EXPECT_TRUE(result(0).rawOutput().contains(run().tempConvertedURLs()[0]));
    EXPECT_TRUE(result(1).rawOutput().contains(run().tempConvertedURLs()[1]));
    bench.engine.openGate();
    waitForEnd();
    EXPECT_EQ(run().tempConvertedURLs(), QStringList());
    EXPECT_THAT(bench.temporaryFiles(), ElementsAre());
    EXPECT_TRUE(QFile::exists(first));
    EXPECT_TRUE(QFile::exists(second));
    EXPECT_EQ(result(0).url.toLocalFile(), first) << "not its converted copy";
}

TEST_F(BatchRunTest, oneFailingFileEndsTheBatch)
{
    const QString clip = movie(u"a.mp4"_qs);
    useModel(failingWithB);
    choose({clip, u"/music/b.wav"_qs, u"/music/c.wav"_qs});
    screen->start();
    waitForEnd();
    const QString words = result(1).error.value_or(QString());
    EXPECT_TRUE(words.startsWith(u"Whisper failed: main: processing"_qs)) << words.toStdString();
    EXPECT_TRUE(words.endsWith(u"error: no good\n"_qs));
    EXPECT_EQ(run().error(), words) << "the same words";
    EXPECT_EQ(run().status(), QString());
    EXPECT_FALSE(run().progress());
    EXPECT_EQ(run().etaText(), QString());
    EXPECT_FALSE(run().isStopping());
    EXPECT_FALSE(run().hasActiveProcess());
    EXPECT_EQ(status(0), FileStatus::done);
    EXPECT_EQ(result(0).transcript(), u"- One\nTwo"_qs) << "the results before it are kept";
    EXPECT_EQ(status(1), FileStatus::failed);
    EXPECT_EQ(status(2), FileStatus::pending);
    EXPECT_EQ(result(2).rawOutput(), QString()) << "it was not started";
    EXPECT_THAT(bench.temporaryFiles(), ElementsAre());
    EXPECT_EQ(bench.history.entries().size(), 1);
    QTest::qWait(50);
    EXPECT_EQ(run().status(), QString()) << "there is no end of the batch";
    EXPECT_FALSE(run().progress());
}

TEST_F(BatchRunTest, aFailedConversionEndsTheBatchWithItsFilePending)
{
    const QString silent = bench.file(u"silent.mp4"_qs);
    writeSilentMovie(silent);
    const QString clip = movie(u"a.mp4"_qs);
    QStringList errors;
    QObject::connect(&run(), &RunState::errorChanged, &run(), [&] { errors << run().errorText(); });
    transcribe({clip, silent, u"/music/c.wav"_qs}, twoLines);
    EXPECT_EQ(run().error(), u"Could not convert silent.mp4 for transcription."_qs);
    EXPECT_THAT(errors,
                ElementsAre(u"Could not convert silent.mp4 to audio. The file might not contain an audio track."_qs,
                            u"Could not convert silent.mp4 for transcription."_qs));
    EXPECT_TRUE(statuses.contains(u"Conversion failed for silent.mp4."_qs));
    EXPECT_EQ(run().status(), QString());
    EXPECT_FALSE(run().isStopping());
    EXPECT_FALSE(run().hasActiveProcess());
    EXPECT_EQ(status(0), FileStatus::done);
    EXPECT_EQ(status(1), FileStatus::pending);
    EXPECT_FALSE(result(1).error);
    EXPECT_EQ(status(2), FileStatus::pending);
    EXPECT_THAT(bench.temporaryFiles(), ElementsAre());
}

TEST_F(BatchRunTest, aMissingEngineFailsTheFirstFile)
{
    QFile::remove(bench.engine.enginePath());
    transcribe(threeFiles, {});
    EXPECT_EQ(run().error(), u"whisper-cli not found in bundle at sorvanta_extra_data/whisper.cpp/build/bin"_qs);
    EXPECT_EQ(status(0), FileStatus::failed);
    EXPECT_EQ(result(0).error, run().error());
    EXPECT_EQ(status(1), FileStatus::pending);
}

TEST_F(BatchRunTest, aMovieThatVanishesBeforeItsTurnIsTold)
{
    const QString clip = movie(u"gone.mp4"_qs);
    start({u"/music/a.wav"_qs, clip}, bench.engine.awaitGate() + twoLines);
    QFile::remove(clip);
    bench.engine.openGate();
    waitForEnd();
    EXPECT_EQ(run().error(), u"Could not convert gone.mp4 for transcription."_qs);
    EXPECT_EQ(status(0), FileStatus::done);
}

TEST_F(BatchRunTest, aFileWithoutTextIsDoneWithNothingToShow)
{
    transcribe({u"/music/a.wav"_qs}, {});
    EXPECT_EQ(status(0), FileStatus::done);
    EXPECT_EQ(run().status(), u"Done"_qs);
    EXPECT_FALSE(screen->pane()->hasText());
    EXPECT_TRUE(screen->pane()->isShown()) << "with the words that there is no transcript yet";
    EXPECT_TRUE(bench.history.entries().isEmpty());
}

TEST_F(BatchRunTest, noByteOfTheOutputIsLost)
{
    const QByteArray torn = "print [x] caf%C3\nawait-reader\nprint %A9%0A\nprint [x] end%FF\n";
    transcribe({u"/music/a.wav"_qs}, torn);
    EXPECT_EQ(result(0).rawOutput(), u"[x] café\n[x] end\uFFFD"_qs);
    EXPECT_EQ(result(0).transcript(), u"café\nend\uFFFD"_qs);
}

TEST_F(BatchRunTest, aSecondStartDuringABatchDoesNothing)
{
    start({u"/music/a.wav"_qs}, bench.engine.awaitGate() + twoLines);
    const QUuid id = result(0).id;
    screen->start();
    EXPECT_EQ(result(0).id, id);
    bench.engine.openGate();
    waitForEnd();
    EXPECT_EQ(bench.history.entries().size(), 1);
}

TEST_F(BatchRunTest, theScreenMayGoInMidBatch)
{
    start({movie(u"a.mp4"_qs), u"/music/b.wav"_qs}, "print x%0A\nsleep 60000\n");
    waitFor([this] { return !run().rawOutput().isEmpty(); });
    EXPECT_EQ(bench.temporaryFiles().size(), 1);
    ASSERT_TRUE(bench.engine.isAtWork());
    screen.reset();
    EXPECT_FALSE(bench.engine.isAtWork()) << "its end has been waited for";
    QTest::qWait(50);
    EXPECT_THAT(bench.temporaryFiles(), ElementsAre());
    EXPECT_TRUE(bench.history.entries().isEmpty());
}

TEST_F(BatchRunTest, theScreenMayGoAlthoughTheEngineIgnoresTheStop)
{
    start({u"/music/b.wav"_qs}, "ignore-stop\nprint x%0A\nsleep 60000\n");
    waitFor([this] { return !run().rawOutput().isEmpty(); });
    ASSERT_TRUE(bench.engine.isAtWork());
    screen.reset();
    EXPECT_FALSE(bench.engine.isAtWork());
}

TEST_F(BatchRunTest, theScreenMayGoInMidPreparation)
{
    start({movie(u"a.mp4"_qs, 60.0), u"/music/b.wav"_qs}, twoLines);
    screen.reset();
    EXPECT_TRUE(waitUntil([] { return QThreadPool::globalInstance()->activeThreadCount() == 0; }));
    QTest::qWait(50);
    EXPECT_THAT(bench.temporaryFiles(), ElementsAre());
}

TEST_F(BatchRunTest, theFileLineHoldsItsNumberWithinTheCount)
{
    FileResults results;
    BatchRun run({.engine = {bench.engine.resourceFolder(), true}}, results, [](const FileResult &) {});
    EXPECT_EQ(run.fileLine(), QString());
    run.setTotalFilesCount(3);
    EXPECT_EQ(run.fileLine(), u"File 1 of 3"_qs) << "there is no such result";
    results.begin({QUrl::fromLocalFile(u"/music/a.wav"_qs)});
    EXPECT_EQ(run.fileLine(), u"File 1 of 3: a.wav"_qs);
}

} // namespace
