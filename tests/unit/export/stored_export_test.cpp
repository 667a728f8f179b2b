#include "export/stored_export.h"

#include "export/text_export.h"
#include "platform/file_system.h"
#include "platform/unicode_text.h"
#include "support/history_store_fixture.h"
#include "support/printing.h"
#include "support/random_transcript.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace sorvanta;

namespace sorvanta {

static void PrintTo(const TranscriptSegment &segment, std::ostream *out)
{
    *out << (segment.start + '|' + segment.end + '|' + segment.text).toStdString();
}

} // namespace sorvanta

namespace {

using Segments = QList<TranscriptSegment>;

const QString times = "00:00:00,000 --> 00:00:02,500";

/// One segment with the times above.
Segments timed(const QString &text)
{
    return {{"00:00:00.000", "00:00:02.500", text}};
}

TEST(StoredSrt, givesBackWhatWasWritten)
{
    for (unsigned seed = 0; seed < 100; ++seed) {
        Segments segments = RandomTranscript(seed).segments(20);
        const QString file = renderExport(ExportFormat::srt, {.segments = segments}).value();
        for (TranscriptSegment &segment : segments)
            segment.text = trimmedOfWhitespaceAndNewlines(segment.text).toString();
        ASSERT_EQ(parseStoredSrt(file), segments) << seed;
    }
}

struct StoredSrtCase {
    const char *name;
    QString file;
    Segments segments;
};

void PrintTo(const StoredSrtCase &row, std::ostream *out)
{
    *out << row.name;
}

class StoredSrtRule : public testing::TestWithParam<StoredSrtCase> { };

TEST_P(StoredSrtRule, holds)
{
    EXPECT_EQ(parseStoredSrt(GetParam().file), GetParam().segments);
}

INSTANTIATE_TEST_SUITE_P(
    Rules, StoredSrtRule,
    testing::Values(
        StoredSrtCase{"anEmptyFileHasNoSegments", "", {}},
        StoredSrtCase{"textAloneHasNoSegments", "Hello\n\nthere\n", {}},
        StoredSrtCase{"threeLinesOfTextAreJoinedWithBlanks", "1\n" + times + "\none\ntwo\nthree\n",
                      timed("one two three")},
        StoredSrtCase{"linesAreNotTrimmedBeforeTheyAreJoined", times + "\n \t a  \n  b\t\n", timed("a     b")},
        StoredSrtCase{"blankLinesOfABlockAreLeftOut", times + "\na\n \t\u00A0\nb", timed("a b")},
        StoredSrtCase{"aLineMayEndWithAnyLineBreak", times + "\u2028a\rb\u0085c\u000Bd\u000Ce", timed("a b c d e")},
        StoredSrtCase{"aBlockWithoutTimesIsSkipped", "1\nHello\n\n2\n" + times + "\nthere\n", timed("there")},
        StoredSrtCase{"aBlockWithoutTextIsSkipped", "1\n" + times + "\n\n2\n" + times + "\nthere\n", timed("there")},
        StoredSrtCase{"aBlockOfBlankTextIsSkipped", times + "\n\u200B\n\n" + times + "\n\u3000\t\n", {}},
        StoredSrtCase{"textInFrontOfTheTimesIsIgnored", "title\n1\n" + times + "\nHello", timed("Hello")},
        StoredSrtCase{"timesMayStandAnywhereInTheirLine", "x " + times + " X1:40 Y1:20\nHello", timed("Hello")},
        StoredSrtCase{"furtherTimesOfABlockAreText", times + '\n' + times + "\nHello", timed(times + " Hello")},
        StoredSrtCase{"aNumberIsNotNeeded", times + "\nHello", timed("Hello")},
        StoredSrtCase{"textMayLookLikeANumber", "1\n" + times + "\n42\n", timed("42")},
        StoredSrtCase{"threeLineFeedsSeparateLikeTwo", times + "\na\n\n\n" + times + "\nb", timed("a") + timed("b")},
        StoredSrtCase{"blanksBetweenLineFeedsSeparateNothing", times + "\na\n \n" + times + "\nb",
                      timed("a " + times + " b")},
        StoredSrtCase{"withCarriageReturnsTheWholeFileIsOneBlock",
                      "1\r\n" + times + "\r\na\r\n\r\n2\r\n" + times + "\r\nb\r\n", timed("a 2 " + times + " b")},
        StoredSrtCase{"timesWithPointsAreNone", "00:00:00.000 --> 00:00:02.500\nHello", {}},
        StoredSrtCase{"timesWithOneDigitAreNone", "0:00:00,000 --> 0:00:02,500\nHello", {}},
        StoredSrtCase{"timesWithAnotherArrowAreNone", "00:00:00,000 -> 00:00:02,500\nHello", {}},
        StoredSrtCase{"timesWithoutBlanksAreNone", "00:00:00,000-->00:00:02,500\nHello", {}},
        StoredSrtCase{"digitsMayBeOfAnyScript",
                      "٠٠:٠٠:٠٠,٠٠٠ --> ٠٠:٠٠:٠٢,٥٠٠\nHello",
                      {{"٠٠:٠٠:٠٠.٠٠٠", "٠٠:٠٠:٠٢.٥٠٠", "Hello"}}}),
    [](const auto &row) { return row.param.name; });

/// An entry in whose text, too, there are timed lines.
class StoredExport : public testing::Test {
protected:
    StoredExport() { entry.text = "[00:00:05.000 --> 00:00:06.500]   - of the text"; }

    QString put(const QByteArray &bytes) const
    {
        const QString path = folder.filePath("stored.srt");
        writeFileAtomically(path, bytes);
        return path;
    }

    QTemporaryDir folder;
    TranscriptionHistoryEntry entry = historyEntry("1");
    const Segments ofText = {{"00:00:05.000", "00:00:06.500", "- of the text"}};
    const QString srtOfText = "1\n00:00:05,000 --> 00:00:06,500\n- of the text\n";
};

TEST_F(StoredExport, isOfTheStoredFileWhereThereIsOne)
{
    const QString file = "7\r\n" + times + "\nHello\n\n\n";
    entry.srtPath = put(file.toUtf8());
    EXPECT_EQ(historySegments(entry), timed("Hello"));
    EXPECT_EQ(historySrtText(entry), file) << "as it stands";
    EXPECT_TRUE(hasTimestamps(entry));
    entry.text.clear();
    EXPECT_EQ(historySegments(entry), timed("Hello"));
}

TEST_F(StoredExport, isOfTheTextWithItsDashesWhereThereIsNoFile)
{
    for (const std::optional<QString> &path :
         {std::optional<QString>(), std::optional<QString>(""), std::optional(folder.filePath("missing.srt"))}) {
        entry.srtPath = path;
        EXPECT_EQ(historySegments(entry), ofText);
        EXPECT_EQ(historySrtText(entry), srtOfText);
        EXPECT_TRUE(hasTimestamps(entry));
    }
}

TEST_F(StoredExport, isNothingWithoutAFileAndWithoutTimesInTheText)
{
    entry.text = "Hello";
    for (const std::optional<QString> &path :
         {std::optional<QString>(), std::optional<QString>(""), std::optional(folder.filePath("missing.srt"))}) {
        entry.srtPath = path;
        EXPECT_EQ(historySegments(entry), Segments());
        EXPECT_EQ(historySrtText(entry), std::nullopt);
        EXPECT_FALSE(hasTimestamps(entry));
    }
}

TEST_F(StoredExport, ofAFileWithoutABlockIsTheFileForSrtAndTheTextForTheRest)
{
    for (const QByteArray &file : {QByteArray("no blocks here\n"), QByteArray(" \n"), QByteArray()}) {
        entry.srtPath = put(file);
        EXPECT_EQ(historySegments(entry), ofText);
        EXPECT_EQ(historySrtText(entry), QString(file));
    }
}

TEST_F(StoredExport, hasTimestampsForAFileWithoutABlockAndForOneThatCannotBeRead)
{
    entry.text = "Hello";
    entry.srtPath = put("no blocks here\n");
    EXPECT_TRUE(hasTimestamps(entry));
    entry.srtPath = folder.path();
    EXPECT_TRUE(hasTimestamps(entry));
}

TEST_F(StoredExport, takesAFileThatCannotBeReadForMissing)
{
    entry.srtPath = folder.path();
    EXPECT_EQ(historySegments(entry), ofText);
    EXPECT_EQ(historySrtText(entry), srtOfText);
    entry.text = "Hello";
    EXPECT_EQ(historySegments(entry), Segments());
    EXPECT_EQ(historySrtText(entry), std::nullopt);
}

TEST_F(StoredExport, findsTheEncodingOfTheFile)
{
    const QString text = times + "\ncafé\n";
    const QByteArray little(reinterpret_cast<const char *>(text.utf16()), text.size() * 2);
    for (const QByteArray &file :
         {text.toUtf8(), "\xEF\xBB\xBF" + text.toUtf8(), "\xFF\xFE" + little, text.toLatin1()}) {
        entry.srtPath = put(file);
        EXPECT_EQ(historySegments(entry), timed("café"));
        EXPECT_EQ(historySrtText(entry), text);
    }
}

class StoredExportOfTheStore : public HistoryStoreTest { };

TEST_F(StoredExportOfTheStore, isWhatTheScreenHandedToTheHistory)
{
    const Segments segments = {{"00:00:00.000", "00:00:02.500", "Hello"},
                               {"00:00:02.500", "00:00:04.000", "שלום 🎙"}};
    const auto srtText = renderExport(ExportFormat::srt, {.segments = segments});
    store().addEntry({.text = "Hello\nשלום 🎙",
                      .srtText = srtText,
                      .sourceLabel = "/a.wav",
                      .model = "Base",
                      .language = "auto",
                      .recordingPath = std::nullopt});
    ASSERT_EQ(store().entries().size(), 1);
    const TranscriptionHistoryEntry entry = store().entries().first();
    EXPECT_EQ(historySegments(entry), segments);
    EXPECT_EQ(historySrtText(entry), srtText);
    EXPECT_TRUE(hasTimestamps(entry));
}

} // namespace
