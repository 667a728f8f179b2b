#include "core/transcript_text.h"

#include "platform/regular_expression.h"
#include "platform/unicode_text.h"
#include "support/printing.h"

#include <gtest/gtest.h>

#include <random>

using namespace sorvanta;

namespace {

TEST(CleanWhisperOutput, ofNothingIsNothing)
{
    EXPECT_EQ(cleanWhisperOutput(u""), QString());
    EXPECT_TRUE(parseTimedSegments(u"", false).isEmpty());
}

TEST(CleanWhisperOutput, joinsTheTextsOfTimedLines)
{
    EXPECT_EQ(cleanWhisperOutput(u"log\n[00:00:00.000 --> 00:00:01.500]   Hello there.\n"
                                 "[00:00:01.500 --> 00:00:04.250]   Bye.\n"),
              u"Hello there.\nBye."_qs);
}

TEST(CleanWhisperOutput, ofALogAloneIsNothing)
{
    EXPECT_EQ(
        cleanWhisperOutput(u"whisper_init_from_file: loading\nsystem_info: n_threads = 4\n"
                           "main: processing 'a.wav'\n\n  run 'x' (16000 samples, 1.0 sec)\nbuilt with whisper.cpp\n"),
        QString());
}

TEST(CleanWhisperOutput, endsAtTheFirstStrayLineWhileSegmentsGoOn)
{
    const QString output = u"[00:00:00.000 --> 00:00:01.000]   One\nsystem_info: n_threads = 4\n"
                           "[00:00:01.000 --> 00:00:02.000]   Two\n"_qs;
    EXPECT_EQ(cleanWhisperOutput(output), u"One"_qs);
    const auto segments = parseTimedSegments(output, false);
    ASSERT_EQ(segments.size(), 2);
    EXPECT_EQ(segments[0].text, u"One"_qs);
    EXPECT_EQ(segments[1].text, u"Two"_qs);
}

TEST(CleanWhisperOutput, skipsBlankLinesWithinTheBlock)
{
    EXPECT_EQ(cleanWhisperOutput(u"[a] One\r\n\r\n \t\n[b] Two"), u"One\nTwo"_qs);
    EXPECT_EQ(cleanWhisperOutput(u"[a] One\n\u200B\u00A0\n[b] Two"), u"One\nTwo"_qs);
    EXPECT_EQ(cleanWhisperOutput(u"[a] One\n\uFEFF\n[b] Two"), u"One"_qs) << "no white space";
}

TEST(CleanWhisperOutput, beginsTheBlockOnlyBehindWhiteSpace)
{
    EXPECT_EQ(cleanWhisperOutput(u"\u200B\u3000[a] One\nplain"), u"One"_qs);
    EXPECT_EQ(cleanWhisperOutput(u"\uFEFF[a] One\nplain"), u"\uFEFF[a] One\nplain"_qs);
}

TEST(CleanWhisperOutput, findsIndentedTimedLines)
{
    const QString output = u"  [00:00:00.000 --> 00:00:01.000]  Indented"_qs;
    EXPECT_EQ(cleanWhisperOutput(output), u"Indented"_qs);
    EXPECT_EQ(parseTimedSegments(output, false),
              (QList<TranscriptSegment>{{u"00:00:00.000"_qs, u"00:00:01.000"_qs, u"Indented"_qs}}));
}

TEST(CleanWhisperOutput, keepsALineWithoutClosingBracketUntrimmed)
{
    EXPECT_EQ(cleanWhisperOutput(u" [no closing bracket \n[x] y"), u" [no closing bracket \ny"_qs);
}

TEST(CleanWhisperOutput, dropsLinesWithoutTextAndKeepsBracketedText)
{
    EXPECT_EQ(cleanWhisperOutput(u"[00:00:02.000 --> 00:00:03.000]\n[BLANK_AUDIO]\n"
                                 "[00:00:02.000 --> 00:00:03.000]   [MUSIC]\n[x] \u200B\u3000\n"),
              u"[MUSIC]"_qs);
}

TEST(CleanWhisperOutput, neverHoldsTimingsOfTheEngine)
{
    EXPECT_EQ(cleanWhisperOutput(u"[a] One\nwhisper_print_timings: total time\n[b] Two"), u"One\nTwo"_qs)
        << "such a line does not end the block either";
    EXPECT_EQ(cleanWhisperOutput(u"[a] One whisper_print_timings\n[b] Two"), u"Two"_qs);
    EXPECT_EQ(cleanWhisperOutput(u"text\nx whisper_print_timings: total time"), u"text"_qs);
    EXPECT_EQ(cleanWhisperOutput(u"WHISPER_PRINT_x is text"), QString()) << "an ignored prefix in lower case";
    EXPECT_EQ(cleanWhisperOutput(u"say WHISPER_PRINT"), u"say WHISPER_PRINT"_qs) << "case counts";
    EXPECT_EQ(cleanWhisperOutput(u"[a] say WHISPER_PRINT"), u"say WHISPER_PRINT"_qs);
}

TEST(CleanWhisperOutput, fallsBackToPlainLines)
{
    EXPECT_EQ(cleanWhisperOutput(u"Hello world"), u"Hello world"_qs);
    EXPECT_EQ(cleanWhisperOutput(u" \u00A0Hello \r\nworld\t"), u"Hello\nworld"_qs);
    EXPECT_EQ(cleanWhisperOutput(u"ERROR: x"), QString());
    EXPECT_EQ(cleanWhisperOutput(u"before\n[a]\n[b]\nplain\n[c] x"), u"before\nplain"_qs)
        << "a block without text is no block";
    EXPECT_EQ(cleanWhisperOutput(u"processing \nx"), u"processing\nx"_qs) << "trimmed before it is compared";
    EXPECT_EQ(cleanWhisperOutput(u"no Samples, none"), u"no Samples, none"_qs);
}

TEST(CleanWhisperOutput, breaksLinesAtEveryUnicodeLineBreak)
{
    EXPECT_EQ(cleanWhisperOutput(u"a\u2028b\u0085c\u000Bd\u000Ce\u2029f\rg"), u"a\nb\nc\nd\ne\nf\ng"_qs);
}

TEST(CleanWhisperOutput, bearsLoneSurrogates)
{
    const QString output = u"[a] "_qs + QChar(0xD83D) + u"x\n"_qs + QChar(0xDE00) + u"\n"_qs;
    EXPECT_EQ(cleanWhisperOutput(output), QString(QChar(0xD83D)) + u'x');
    EXPECT_TRUE(parseTimedSegments(output, true).isEmpty());
}

class IgnoredPrefix : public testing::TestWithParam<const char *> { };

TEST_P(IgnoredPrefix, keepsALineOutOfAPlainTranscriptInAnyCase)
{
    const QString prefix = QString::fromLatin1(GetParam());
    EXPECT_EQ(cleanWhisperOutput(u"  "_qs + prefix + u"x"_qs), QString());
    EXPECT_EQ(cleanWhisperOutput(prefix.toUpper() + u"7"_qs), QString());
    EXPECT_EQ(cleanWhisperOutput(u"a "_qs + prefix), u"a "_qs + prefix.trimmed()) << "only at the beginning";
    EXPECT_EQ(cleanWhisperOutput(prefix.chopped(1) + u"!"_qs), prefix.chopped(1) + u"!"_qs) << "all of it";
}

INSTANTIATE_TEST_SUITE_P(All, IgnoredPrefix,
                         testing::Values("main:", "system_info:", "whisper_", "ggml_",
                                         "encode:", "decode:", "processing ", "output_",
                                         "duration:", "language:", "translate:", "error:", "warning:", "build info"));

class LogWord : public testing::TestWithParam<const char *> { };

TEST_P(LogWord, keepsALineOutOfAPlainTranscript)
{
    const QString word = QString::fromLatin1(GetParam());
    EXPECT_EQ(cleanWhisperOutput(u"a "_qs + word + u" b"_qs), QString());
    EXPECT_EQ(cleanWhisperOutput(u"[x] a "_qs + word + u" b"_qs), u"a "_qs + word + u" b"_qs) << "not in timed lines";
    EXPECT_EQ(cleanWhisperOutput(u"a "_qs + word.toUpper()), u"a "_qs + word.toUpper()) << "case counts";
}

INSTANTIATE_TEST_SUITE_P(All, LogWord, testing::Values("samples,", "whisper.cpp"));

TEST(ParseTimedSegments, findsTheTimesAnywhereInALine)
{
    EXPECT_EQ(parseTimedSegments(u"junk [00:00:01.500 --> 00:00:04.250]   Hello there. \r\n", false),
              (QList<TranscriptSegment>{{u"00:00:01.500"_qs, u"00:00:04.250"_qs, u"Hello there."_qs}}));
}

TEST(ParseTimedSegments, endsALineAtEveryUnicodeLineBreak)
{
    const QString line = u"[00:00:00.000 --> 00:00:01.000]   x"_qs;
    const TranscriptSegment segment{u"00:00:00.000"_qs, u"00:00:01.000"_qs, u"x"_qs};
    for (const QString &lineBreak :
         {u"\n"_qs, u"\u000B"_qs, u"\u000C"_qs, u"\r"_qs, u"\r\n"_qs, u"\u0085"_qs, u"\u2028"_qs, u"\u2029"_qs}) {
        EXPECT_EQ(parseTimedSegments(line + lineBreak + line, false), (QList<TranscriptSegment>{segment, segment}))
            << "behind the code point " << int{lineBreak[0].unicode()};
    }
    EXPECT_EQ(parseTimedSegments(line + u"\u001C"_qs + line, false).size(), 1);
}

TEST(ParseTimedSegments, leavesOutOnlyWhiteSpaceBeforeTheText)
{
    const QString times = u"[00:00:00.000 --> 00:00:01.000]"_qs;
    const auto textOf = [&times](const QString &rest) {
        const auto segments = parseTimedSegments(times + rest, false);
        return segments.isEmpty() ? QString() : segments[0].text;
    };
    EXPECT_EQ(textOf(u"\u00A0\u3000\tx \u00A0y"_qs), u"x \u00A0y"_qs);
    EXPECT_EQ(textOf(u" \u200B x"_qs), u"\u200B x"_qs) << "the text itself is not trimmed";
    EXPECT_EQ(textOf(u" \uFEFF x"_qs), u"\uFEFF x"_qs);
    EXPECT_EQ(textOf(u" a"_qs + QChar(0) + u'b'), u"a"_qs + QChar(0) + u'b');
    EXPECT_EQ(textOf(u" whisper_print x"_qs), u"whisper_print x"_qs) << "a word for the transcript alone";
}

TEST(ParseTimedSegments, skipsLinesWithoutText)
{
    EXPECT_TRUE(parseTimedSegments(u"[00:00:01.500 --> 00:00:04.250]\n[00:00:01.500 --> 00:00:04.250] \u200B", false)
                    .isEmpty());
}

TEST(ParseTimedSegments, stripsDashesOnlyWhenAsked)
{
    const QString output = u"[00:00:00.000 --> 00:00:01.000]   - Hi\n[00:00:01.000 --> 00:00:02.000]   - \n"_qs;
    const auto kept = parseTimedSegments(output, false);
    ASSERT_EQ(kept.size(), 2);
    EXPECT_EQ(kept[0].text, u"- Hi"_qs);
    EXPECT_EQ(kept[1].text, u"-"_qs) << "the blank fell to the trimming of the line";
    const auto stripped = parseTimedSegments(output, true);
    ASSERT_EQ(stripped.size(), 2);
    EXPECT_EQ(stripped[0].text, u"Hi"_qs);
}

TEST(ParseTimedSegments, keepsOrderAndOverlapsAsTheyCome)
{
    const auto segments =
        parseTimedSegments(u"[00:00:09.000 --> 00:00:08.000] b\n[00:00:01.000 --> 00:00:09.500] a", false);
    ASSERT_EQ(segments.size(), 2);
    EXPECT_EQ(segments[0].start, u"00:00:09.000"_qs);
    EXPECT_EQ(segments[1].start, u"00:00:01.000"_qs);
}

TEST(ParseTimedSegments, takesAnyTwoDigitsForMinutesAndSeconds)
{
    EXPECT_EQ(parseTimedWindowSegments(u"[99:99:99.999 --> 00:60:60.000] x", false),
              (QList<TranscriptWindowSegment>{{u"99:99:99.999"_qs, u"00:60:60.000"_qs, u"x"_qs, 362439.999, 3660.0}}));
}

TEST(ParseTimedSegments, knowsNoThreeDigitHours)
{
    EXPECT_TRUE(parseTimedSegments(u"[100:00:00.000 --> 100:00:01.000]   x", false).isEmpty());
    EXPECT_TRUE(parseTimedSegments(u"[00:00:00,000 --> 00:00:01,000]   x", false).isEmpty());
    EXPECT_TRUE(parseTimedSegments(u"[00:00:00.00 --> 00:00:01.00]   x", false).isEmpty());
}

TEST(ParseTimedWindowSegments, carriesSeconds)
{
    EXPECT_EQ(parseTimedWindowSegments(u"[00:01:02.500 --> 01:00:00.250]   - x", true),
              (QList<TranscriptWindowSegment>{{u"00:01:02.500"_qs, u"01:00:00.250"_qs, u"x"_qs, 62.5, 3600.25}}));
}

TEST(ParseTimedWindowSegments, countsDigitsThatAreNoNumbersAsZero)
{
    const auto segments = parseTimedWindowSegments(u"[٠١:٠٠:٠٠.٠٠٠ --> 00:00:01.000] x", false);
    ASSERT_EQ(segments.size(), 1);
    EXPECT_EQ(segments[0].startSeconds, 0.0);
    EXPECT_EQ(segments[0].start, u"٠١:٠٠:٠٠.٠٠٠"_qs);
    const QString inTwoUnits = u"𝟎𝟎:𝟎𝟎:𝟎𝟏.𝟎𝟎𝟎"_qs;
    EXPECT_EQ(parseTimedWindowSegments(u"[00:00:00.000 --> "_qs + inTwoUnits + u"] x"_qs, false),
              (QList<TranscriptWindowSegment>{{u"00:00:00.000"_qs, inTwoUnits, u"x"_qs, 0.0, 0.0}}));
}

/// What is found in a line by the pattern alone.
QList<TranscriptSegment> segmentsByPattern(QStringView line)
{
    RegularExpression pattern(u"\\[(\\d{2}:\\d{2}:\\d{2}\\.\\d{3}) --> (\\d{2}:\\d{2}:\\d{2}\\.\\d{3})\\]\\s*(.*)");
    const auto match = pattern.firstMatch(trimmedOfWhitespace(line));
    if (!match || trimmedOfWhitespaceAndNewlines(match->group(3)).isEmpty())
        return {};
    return {{match->group(1).toString(), match->group(2).toString(), match->group(3).toString()}};
}

TEST(ParseTimedSegments, findsWhatThePatternFindsInAlmostTimedLines)
{
    const QString timed = u"[00:01:02.500 --> 01:00:09.250]   words"_qs;
    const QString others = u"[]:.-> 0٣９a\u00A0\u200B\u3000🙂"_qs;
    std::mt19937 random(5);
    int found = 0;
    for (int round = 0; round < 20000; ++round) {
        QString line = timed;
        for (unsigned change = random() % 4; change > 0; --change) {
            const qsizetype at = static_cast<qsizetype>(random()) % line.size();
            const QChar other = others[static_cast<qsizetype>(random()) % others.size()];
            if (random() % 2 == 0)
                line[at] = other;
            else
                line.insert(at, other);
        }
        if (random() % 8 == 0)
            line += timed;
        const auto expected = segmentsByPattern(line);
        found += static_cast<int>(expected.size());
        ASSERT_EQ(parseTimedSegments(line, false), expected) << line.toStdString();
    }
    EXPECT_GT(found, 5000);
    EXPECT_LT(found, 19000);
}

TEST(TimecodeSeconds, isTheSameInPlainDigitsAsPieceByPiece)
{
    for (int milliseconds = 0; milliseconds < 60000; milliseconds += 7) {
        const QString seconds =
            u"%1.%2"_qs.arg(milliseconds / 1000, 2, 10, QChar(u'0')).arg(milliseconds % 1000, 3, 10, QChar(u'0'));
        EXPECT_EQ(timecodeSeconds(u"01:59:"_qs + seconds), secondsOfTimecode(u"01", u"59", seconds));
    }
}

TEST(TimecodeSeconds, needsThreePieces)
{
    EXPECT_EQ(timecodeSeconds(u"00:01:02.500"), 62.5);
    EXPECT_EQ(timecodeSeconds(u"1:1:1"), 3661.0);
    EXPECT_EQ(timecodeSeconds(u"100:00:00.250"), 360000.25);
    EXPECT_EQ(timecodeSeconds(u"00:00:01.0005"), 1.0005);
    EXPECT_EQ(timecodeSeconds(u"::1::2:3:"), 3723.0) << "empty pieces do not count";
    EXPECT_EQ(timecodeSeconds(u"x:1: 2"), 60.0) << "a piece that is no number is 0";
    EXPECT_FALSE(timecodeSeconds(u"01:02.500"));
    EXPECT_FALSE(timecodeSeconds(u"1:2:3:4"));
    EXPECT_FALSE(timecodeSeconds(u""));
}

struct DashCase {
    const char16_t *line;
    const char16_t *stripped;
};

class StripDashMarkers : public testing::TestWithParam<DashCase> { };

TEST_P(StripDashMarkers, takesOneMarkerAtTheBeginning)
{
    EXPECT_EQ(stripDashMarkers(QStringView(GetParam().line)).toString(), QStringView(GetParam().stripped).toString());
}

INSTANTIATE_TEST_SUITE_P(Table, StripDashMarkers,
                         testing::Values(DashCase{u"- Hello", u"Hello"}, DashCase{u"   -  Hello  ", u"Hello"},
                                         DashCase{u"-Hello", u"-Hello"}, DashCase{u"-", u"-"},
                                         DashCase{u"- - Hello", u"- Hello"}, DashCase{u"- ", u""}, DashCase{u"", u""},
                                         DashCase{u"  Hello ", u"  Hello "}, DashCase{u"\u2003\u2028- x", u"x"},
                                         DashCase{u"\u200B- x", u"\u200B- x"}, DashCase{u"-\u0301 x", u"-\u0301 x"},
                                         DashCase{u"- \u0301x", u"- \u0301x"}, DashCase{u" \u0301- x", u"x"},
                                         DashCase{u"– x", u"– x"}, DashCase{u"-\u00A0x", u"-\u00A0x"},
                                         DashCase{u"- x\u200B", u"x"}));

TEST(DisplayedTranscript, comesFromTheOutputIfThereIsAny)
{
    EXPECT_EQ(displayedTranscript(u"[a] - One\n[b] Two", u"stored", false), u"- One\nTwo"_qs);
    EXPECT_EQ(displayedTranscript(u"", u"- stored", false), u"- stored"_qs);
    EXPECT_EQ(displayedTranscript(u"main: log", u"stored", false), QString()) << "even if nothing is left of it";
}

TEST(DisplayedTranscript, stripsDashesLineByLine)
{
    EXPECT_EQ(displayedTranscript(u"[a] - One\n[b] Two", u"", true), u"One\nTwo"_qs);
    EXPECT_EQ(displayedTranscript(u"", u"- a\r\n- b\u2028", true), u"a\n\nb\n"_qs);
}

TEST(TranscriptCounts, countsWordsAndCharactersWithoutASingular)
{
    EXPECT_EQ(TranscriptCounts(u""), u"0 words · 0 chars"_qs);
    EXPECT_EQ(TranscriptCounts(u"Hello"), u"1 words · 5 chars"_qs);
    EXPECT_EQ(TranscriptCounts(u" a\r\nb \u2029 c\u200Bd "), u"3 words · 11 chars"_qs);
    EXPECT_EQ(TranscriptCounts(u"👨‍👩‍👧 e\u0301"), u"2 words · 3 chars"_qs);
    EXPECT_EQ(TranscriptCounts(u"a \u0301b"), u"2 words · 3 chars"_qs) << "a blank with a mark still separates";
}

TEST(FormatClock, hasMinutesAndTwoDigitsOfSeconds)
{
    EXPECT_EQ(formatClock(75.4), u"1:15"_qs);
    EXPECT_EQ(formatClock(3725), u"62:05"_qs);
    EXPECT_EQ(formatClock(0), u"0:00"_qs);
    EXPECT_EQ(formatClock(0.5), u"0:01"_qs) << "ties go away from zero";
    EXPECT_EQ(formatClock(59.5), u"1:00"_qs);
    EXPECT_EQ(formatClock(-3), u"0:00"_qs);
}

} // namespace
