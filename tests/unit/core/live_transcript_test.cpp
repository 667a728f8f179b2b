#include "core/live_transcript.h"
#include "core/transcript_text.h"
#include "core/transcription_progress.h"

#include "support/printing.h"
#include "support/random_output.h"

#include <gtest/gtest.h>

#include <QStringList>

using namespace sorvanta;

namespace {

QStringList linesOf(const LiveTranscript &transcript)
{
    QStringList lines;
    for (qsizetype i = 0; i < transcript.lineCount(); ++i)
        lines << transcript.line(i).toString();
    return lines;
}

/// Applies to `lines` what a view is told of a change.
void apply(const LiveTranscript::Change &change, const LiveTranscript &transcript, QStringList &lines)
{
    lines.erase(lines.begin() + change.first, lines.begin() + change.first + change.removed);
    for (qsizetype i = change.first; i < change.first + change.added; ++i)
        lines.insert(i, transcript.line(i).toString());
}

TEST(LiveTranscript, equalsThePureFunctionsAfterEveryPieceOfAnyOutput)
{
    const TranscriptionProgress::Clock::time_point start{};
    for (unsigned seed = 0; seed < 400; ++seed) {
        SCOPED_TRACE(seed);
        RandomOutput random(seed);
        const QString output = random.text();
        LiveTranscript live;
        ProgressScanner scanner;
        TranscriptionProgress incremental;
        TranscriptionProgress pure;
        incremental.begin(start);
        pure.begin(start);
        QStringList followed;
        for (qsizetype end = 0, from = 0; end < output.size(); from = end) {
            end = std::min(output.size(), from + random.pieceSize());
            const qsizetype lineStart = live.unfinishedLineStart();
            apply(live.append(QStringView(output).sliced(from, end - from)), live, followed);
            const QString soFar = output.left(end);
            ASSERT_EQ(live.rawOutput(), soFar);
            ASSERT_EQ(live.transcript(), cleanWhisperOutput(soFar));
            ASSERT_EQ(linesOf(live).join(u'\n'), cleanWhisperOutput(soFar));
            ASSERT_EQ(followed, linesOf(live));

            const auto now = start + std::chrono::seconds(end);
            incremental.update(scanner.scan(live.rawOutput(), from, lineStart), now);
            pure.update(soFar, now);
            ASSERT_EQ(incremental.totalDuration, pure.totalDuration);
            ASSERT_EQ(incremental.progress, pure.progress);
            ASSERT_EQ(incremental.etaText, pure.etaText);
        }
    }
}

TEST(LiveTranscript, changesOnlyTheUnfinishedLine)
{
    LiveTranscript live;
    live.append(u"[a] One\n[b] Tw");
    const auto grown = live.append(u"o");
    EXPECT_EQ(grown.first, 1);
    EXPECT_EQ(grown.removed, 1);
    EXPECT_EQ(grown.added, 1);
    const auto ended = live.append(u"\n");
    EXPECT_EQ(ended.removed, 0) << "a line break changes no line";
    EXPECT_EQ(ended.added, 0);
    const auto next = live.append(u"[c] Three\n");
    EXPECT_EQ(next.first, 2);
    EXPECT_EQ(next.removed, 0);
    EXPECT_EQ(next.added, 1);
}

TEST(LiveTranscript, takesALineBreakThatIsCutInTwo)
{
    LiveTranscript live;
    live.append(u"[a] One\r");
    live.append(u"\n[b] Two\r");
    live.append(u"\nstray\r\n[c] Three");
    EXPECT_EQ(linesOf(live), (QStringList{u"One"_qs, u"Two"_qs}));
}

TEST(LiveTranscript, bringsPlainLinesBackWhenABracketClosesWithoutText)
{
    LiveTranscript live;
    live.append(u"plain\n [BLANK");
    EXPECT_EQ(linesOf(live), QStringList{u" [BLANK"_qs});
    live.append(u"_AUDIO]");
    EXPECT_EQ(linesOf(live), QStringList{u"plain"_qs});
    live.append(u" x");
    EXPECT_EQ(linesOf(live), QStringList{u"x"_qs});
}

TEST(LiveTranscript, isEmptyAfterClear)
{
    LiveTranscript live;
    live.append(u"[a] One\n[b] Tw");
    live.clear();
    EXPECT_EQ(live.lineCount(), 0);
    EXPECT_EQ(live.rawOutput(), QString());
    live.append(u"plain");
    EXPECT_EQ(live.transcript(), u"plain"_qs);
}

TEST(LiveTranscript, readsAHundredMegabytesOnce)
{
    const QString line = u"[00:00:00.000 --> 00:00:01.000]   words and words and words\n"_qs;
    const QString piece = line.repeated(1000);
    LiveTranscript live;
    qsizetype size = 0;
    while (size < 100'000'000) {
        live.append(piece);
        size += piece.size();
    }
    EXPECT_EQ(live.rawOutput().size(), size);
    EXPECT_EQ(live.lineCount(), size / line.size());
    EXPECT_EQ(live.line(live.lineCount() - 1), u"words and words and words");
}

TEST(LiveTranscript, readsALineWithoutAnEndOnce)
{
    const QString piece = QString(65536, u'x') + u' ';
    LiveTranscript live;
    live.append(u"[a]");
    for (int i = 0; i < 400; ++i)
        live.append(piece);
    EXPECT_EQ(live.lineCount(), 1);
    EXPECT_EQ(live.line(0).size(), 400 * piece.size() - 1);
}

} // namespace
