#include "core/transcript_text.h"
#include "engine/engine_fixture.h"
#include "support/waiting.h"

#include <QSignalSpy>
#include <QTest>

#include <algorithm>

using namespace sorvanta;

namespace {

class EngineRunsTest : public EngineTest {
protected:
    /// The rows that a screen shows.
    QStringList rows() const { return run.displayedTranscript().split(u'\n'); }

    /// The timed lines of the output as they stand.
    QStringList timedLines() const { return run.rawOutput().split(u'\n').filter(u" --> "_qs); }
};

TEST_F(EngineRunsTest, eachWindowOfALongFileGivesItsLines)
{
    transcribe(tone(u"long.wav"_qs, 100), quickModel());
    EXPECT_EQ(run.status(), u"Done"_qs);
    EXPECT_EQ(run.totalDuration(), 100.0);
    // Behind its last window the script begins again; 10 seconds are left for it.
    EXPECT_EQ(rows(), recitedLines() + recitedLines().first(3));
    EXPECT_EQ(parseTimedSegments(run.rawOutput(), false).size(), static_cast<std::size_t>(rows().size()));
    EXPECT_EQ(events, (QStringList{u"remove"_qs, u"save"_qs}));
}

TEST_F(EngineRunsTest, progressMovesWhileTheEngineRuns)
{
    QList<double> values;
    QObject::connect(&run, &TranscriptionRun::progressChanged, &run, [&] {
        if (run.isTranscribing() && run.hasProgress())
            values << run.progressOrZero();
    });
    transcribe(tone(u"long.wav"_qs, 100), slowModel());
    EXPECT_TRUE(std::is_sorted(values.begin(), values.end()));
    const auto between =
        std::count_if(values.begin(), values.end(), [](double value) { return value > 0 && value < 1; });
    EXPECT_GE(between, 3) << "a window after the other";
    EXPECT_EQ(run.progress(), 1.0);
}

TEST_F(EngineRunsTest, logAndTimedLinesComeThroughOnePipeInTheOrderWritten)
{
    transcribe(tone(u"long.wav"_qs, 100), quickModel());
    const QString output = run.rawOutput();
    const qsizetype load = output.indexOf(u"whisper_init_from_file"_qs);
    const qsizetype processing = output.indexOf(u"main: processing '"_qs);
    const qsizetype firstLine = output.indexOf(u"[00:00:00.000 --> 00:00:04.200]   This text is recited"_qs);
    const qsizetype lastLine = output.lastIndexOf(u" --> "_qs);
    const qsizetype timings = output.indexOf(u"whisper_print_timings:"_qs);
    ASSERT_GE(load, 0);
    EXPECT_LT(load, processing);
    EXPECT_LT(processing, firstLine);
    EXPECT_LT(firstLine, lastLine);
    EXPECT_LT(lastLine, timings);
}

TEST_F(EngineRunsTest, aStopEndsTheEngineInMidRunAndKeepsItsLines)
{
    start(tone(u"hour.wav"_qs, 900), slowModel());
    ASSERT_TRUE(waitUntil([this] { return timedLines().size() >= 6; }));
    const QStringList before = timedLines();
    run.stopRun();
    waitForEnd();
    EXPECT_EQ(run.status(), u"Cancelled"_qs);
    EXPECT_FALSE(run.error());
    EXPECT_EQ(timedLines().first(before.size()), before);
    EXPECT_EQ(rows().first(6), recitedLines().first(6));
    EXPECT_FALSE(run.rawOutput().contains(u"whisper_print_timings:"_qs)) << "it did not run to its end";
    EXPECT_EQ(events, QStringList{u"remove"_qs});
}

TEST_F(EngineRunsTest, anM4aGoesAsItStands)
{
    transcribe(tone(u"talk.m4a"_qs, 25), quickModel());
    EXPECT_EQ(run.status(), u"Done"_qs);
    ASSERT_TRUE(run.totalDuration());
    EXPECT_NEAR(*run.totalDuration(), 25, 0.2);
    EXPECT_EQ(rows(), recitedLines().first(rows().size()));
    EXPECT_GE(rows().size(), 5);
}

TEST_F(EngineRunsTest, anyKnownLanguageIsTaken)
{
    for (const QString &language : {u"de"_qs, u"  EN "_qs, u"yue"_qs}) {
        transcribe(tone(u"tone.wav"_qs, 11), quickModel(), language);
        EXPECT_EQ(run.status(), u"Done"_qs);
        EXPECT_TRUE(run.rawOutput().contains(u"lang = "_qs + language.trimmed().toLower())) << language.toStdString();
        EXPECT_EQ(rows().first(3), recitedLines().first(3));
    }
}

TEST_F(EngineRunsTest, threeRunsGiveTheSameBytes)
{
    QStringList texts;
    QStringList lines;
    for (int i = 0; i < 3; ++i) {
        transcribe(tone(u"long.wav"_qs, 100), quickModel());
        texts << run.transcript();
        lines << timedLines().join(u'\n');
    }
    EXPECT_EQ(texts, (QStringList{texts[0], texts[0], texts[0]}));
    EXPECT_EQ(lines, (QStringList{lines[0], lines[0], lines[0]}));
    EXPECT_FALSE(lines[0].isEmpty());
}

} // namespace
