#include "meeting_screen_test.h"

#include <QFileInfo>

using namespace sorvanta;
using testing::ElementsAre;

namespace {

using MeetingScreenRun = MeetingScreenTest;

TEST_F(MeetingScreenRun, asksForARecordingFirst)
{
    screen->transcribe();
    EXPECT_EQ(error(), u"Please record audio first."_qs);
    EXPECT_EQ(run().status(), QString());
    EXPECT_FALSE(run().isTranscribing());
}

TEST_F(MeetingScreenRun, asksForAModelThen)
{
    recordAndStop();
    EXPECT_FALSE(screen->canStart());
    screen->transcribe();
    EXPECT_EQ(error(), u"Please select a downloaded model."_qs);
    EXPECT_FALSE(run().isTranscribing());
}

TEST_F(MeetingScreenRun, theChecksComeBeforeTheRecordingIsStopped)
{
    record();
    screen->transcribe();
    EXPECT_EQ(error(), u"Please select a downloaded model."_qs);
    EXPECT_TRUE(screen->isRecording());
}

TEST_F(MeetingScreenRun, canTranscribeWithARecordingAndAModel)
{
    EXPECT_FALSE(screen->canStart());
    useModel(twoLines);
    EXPECT_FALSE(screen->canStart());
    recordAndStop();
    EXPECT_TRUE(screen->canStart());
    EXPECT_EQ(screen->startLabel(), u"Transcribe"_qs);
    screen->transcribe();
    EXPECT_FALSE(screen->canStart());
    EXPECT_EQ(screen->startLabel(), u"Transcribing…"_qs);
    waitForStatus(u"Done"_qs);
    EXPECT_TRUE(screen->canStart());
}

TEST_F(MeetingScreenRun, saysEachStep)
{
    useModel(twoLines);
    recordAndStop();
    QStringList statuses;
    const QObject listener;
    QObject::connect(&run(), &TranscriptionRun::statusChanged, &listener, [&] { statuses << run().status(); });
    screen->transcribe();
    EXPECT_TRUE(run().isTranscribing()) << "from the preparation on";
    EXPECT_EQ(run().status(), u"Converting…"_qs);
    EXPECT_EQ(run().etaText(), u"Estimating…"_qs);
    EXPECT_FALSE(run().hasProgress());
    waitForStatus(u"Done"_qs);
    EXPECT_THAT(statuses, ElementsAre(u"Converting…"_qs, u"Preparing…"_qs, u"Done"_qs));
    EXPECT_EQ(run().transcript(), u"- One\nTwo"_qs);
}

TEST_F(MeetingScreenRun, keepsTheOldTranscriptUntilTheRunBegins)
{
    useModel(twoLines);
    recordAndStop();
    screen->transcribe();
    waitForStatus(u"Done"_qs);
    useModel(bench.engine.awaitGate() + twoLines);
    screen->transcribe();
    EXPECT_EQ(run().transcript(), u"- One\nTwo"_qs);
    waitForStatus(u"Preparing…"_qs);
    EXPECT_EQ(run().transcript(), QString());
    bench.engine.openGate();
    waitForStatus(u"Done"_qs);
}

TEST_F(MeetingScreenRun, theEngineIsGivenAWavOfItsOwn)
{
    useModel("arguments\n" + bench.engine.awaitGate());
    recordAndStop();
    screen->transcribe();
    waitFor([this] { return run().rawOutput().endsWith(u"auto\n"_qs); });
    const QStringList made = bench.temporaryFiles().filter(u"meeting-transcribe-"_qs);
    ASSERT_EQ(made.size(), 1);
    EXPECT_TRUE(made[0].endsWith(u".wav"_qs));
    EXPECT_TRUE(run().rawOutput().contains(u"-f\n%1/%2\n-l\nauto\n"_qs.arg(bench.temporaryFolder(), made[0])));
    bench.engine.openGate();
    waitForStatus(u"Done"_qs);
    EXPECT_EQ(bench.temporaryFiles().filter(u"meeting-transcribe-"_qs), QStringList()) << "it is removed at the end";
}

TEST_F(MeetingScreenRun, aFileWithoutSoundSaysSo)
{
    useModel(twoLines);
    const QString file = recordAndStop();
    QFile broken(file);
    ASSERT_TRUE(broken.open(QIODevice::WriteOnly));
    broken.write("no sound");
    broken.close();
    screen->transcribe();
    waitFor([this] { return run().hasError(); });
    EXPECT_EQ(error(), u"No audio track found to transcribe."_qs);
    EXPECT_EQ(run().status(), QString());
    EXPECT_FALSE(run().isTranscribing());
}

TEST_F(MeetingScreenRun, aRunThatFailsSaysWhy)
{
    useModel("complain bad%0A\nexit 3\n");
    recordAndStop();
    screen->transcribe();
    waitFor([this] { return run().hasError(); });
    EXPECT_TRUE(error().startsWith(u"Whisper failed: "_qs));
    EXPECT_EQ(run().status(), QString());
}

TEST_F(MeetingScreenRun, canBeStopped)
{
    useModel("print [x] One%0A\nsleep 60000\n");
    recordAndStop();
    const auto entries = historySources();
    screen->transcribe();
    waitFor([this] { return run().hasShownText(); });
    run().stopRun();
    EXPECT_EQ(run().status(), u"Stopping…"_qs);
    EXPECT_TRUE(run().isStopping());
    waitForStatus(u"Cancelled"_qs);
    EXPECT_FALSE(run().hasError());
    EXPECT_EQ(historySources(), entries);
}

TEST_F(MeetingScreenRun, canBeStoppedDuringTheConversion)
{
    useModel(twoLines);
    recordAndStop();
    const auto entries = historySources();
    QStringList statuses;
    const QObject listener;
    QObject::connect(&run(), &TranscriptionRun::statusChanged, &listener, [&] { statuses << run().status(); });
    screen->transcribe();
    run().stopRun();
    waitFor([this] { return !run().isTranscribing(); });
    EXPECT_THAT(statuses, ElementsAre(u"Converting…"_qs, u"Stopping…"_qs, u"Cancelled"_qs));
    EXPECT_FALSE(run().isStopping());
    EXPECT_FALSE(run().hasError());
    EXPECT_EQ(run().rawOutput(), QString()) << "the engine was not started";
    EXPECT_EQ(bench.temporaryFiles().filter(u"meeting-transcribe-"_qs), QStringList());
    EXPECT_EQ(historySources(), entries);
    EXPECT_TRUE(screen->canStart());
    screen->transcribe();
    waitForStatus(u"Done"_qs);
}

TEST_F(MeetingScreenRun, duringARecordingItStopsThatAndTakesTheRawFile)
{
    useModel(twoLines + bench.engine.awaitGate());
    sound.micSeconds = 3;
    record(true);
    sound.play(500, 0.5);
    const QString raw = *recorder().outputURL();
    screen->transcribe();
    EXPECT_FALSE(screen->isRecording());
    EXPECT_TRUE(run().isTranscribing());
    EXPECT_EQ(screen->recordStatus(), u"Captured audio. Use Transcribe below."_qs);
    EXPECT_EQ(historySources(), QStringList{raw});
    waitFor([this] { return run().hasShownText(); });
    const QStringList wav = bench.temporaryFiles().filter(u"meeting-transcribe-"_qs);
    ASSERT_EQ(wav.size(), 1);
    constexpr double bytesPerSecond = 32000;
    EXPECT_LT(QFileInfo(bench.temporaryFolder() + u'/' + wav[0]).size() / bytesPerSecond, 1)
        << "as long as what the system played, and without the microphone's three seconds";
    bench.engine.openGate();
    waitForStatus(u"Done"_qs);
    waitForFinal();
    const QString final = *recorder().outputURL();
    EXPECT_NE(final, raw);
    EXPECT_EQ(historySources(), (QStringList{final, raw}));
    EXPECT_EQ(bench.history.entries()[0].text, u"- One\nTwo"_qs);
    EXPECT_EQ(bench.history.entries()[1].text, QString());
}

TEST_F(MeetingScreenRun, aRecordingThatIsBegunMeanwhileDoesNotTakeItsText)
{
    useModel(twoLines);
    const QString first = recordAndStop();
    screen->transcribe();
    record();
    sound.play(500, 0.3);
    const QString raw = *recorder().outputURL();
    waitForStatus(u"Done"_qs);
    screen->toggleRecording();
    waitForFinal();
    const auto &entries = bench.history.entries();
    EXPECT_EQ(historySources().count(first), 1);
    EXPECT_EQ(historySources().count(raw), 1);
    EXPECT_EQ(entries.size(), 4) << "two of each recording";
    EXPECT_EQ(
        std::count_if(entries.begin(), entries.end(),
                      [&](const auto &entry) { return entry.sourceLabel == first && entry.text == u"- One\nTwo"_qs; }),
        1)
        << "a recording that was begun meanwhile has not taken it";
}

TEST_F(MeetingScreenRun, theResultTakesTheRecordingsPlaceInTheHistory)
{
    useModel(twoLines);
    const QString file = recordAndStop();
    const auto before = bench.history.entries();
    ASSERT_EQ(before.size(), 2);
    screen->language()->setLanguage(u"fr"_qs);
    screen->transcribe();
    waitForStatus(u"Done"_qs);
    const auto after = bench.history.entries();
    ASSERT_EQ(after.size(), 2);
    EXPECT_EQ(after[0].sourceLabel, file);
    EXPECT_EQ(after[0].text, u"- One\nTwo"_qs);
    EXPECT_EQ(after[0].language, u"fr"_qs);
    EXPECT_EQ(after[0].model, u"Base"_qs);
    EXPECT_TRUE(after[0].srtPath);
    EXPECT_TRUE(after[0].recordingPath);
    EXPECT_NE(after[0].id, before[0].id);
    EXPECT_FALSE(QFile::exists(*before[0].recordingPath));
    EXPECT_EQ(after[1].id, before[1].id) << "that of the raw file stays";
    EXPECT_EQ(after[1].text, QString());
}

TEST_F(MeetingScreenRun, aRunWithoutTextIsNotEntered)
{
    useModel("print whisper_print%0A\n");
    recordAndStop();
    const auto before = bench.history.entries();
    screen->transcribe();
    waitForStatus(u"Done"_qs);
    EXPECT_EQ(bench.history.entries().first().id, before.first().id);
}

TEST_F(MeetingScreenRun, clearingTheOutputLeavesTheError)
{
    useModel("print [x] One%0A\ncomplain bad%0A\nexit 3\n");
    recordAndStop();
    screen->transcribe();
    waitFor([this] { return run().hasError(); });
    screen->pane()->clearOutput();
    EXPECT_TRUE(run().hasError());
    EXPECT_FALSE(run().hasShownText());
}

TEST_F(MeetingScreenRun, exportsAreNamedAfterTheRecording)
{
    useModel(twoLines);
    const QString file = recordAndStop();
    screen->transcribe();
    waitForStatus(u"Done"_qs);
    qobject_cast<ExportMenuEntry *>(screen->exportMenu()->entries().first())->choose();
    ASSERT_EQ(bench.panels.saveRequests.size(), 1);
    EXPECT_EQ(bench.panels.saveRequests[0].name, QFileInfo(file).completeBaseName() + u"_transcription.txt"_qs);
}

} // namespace
