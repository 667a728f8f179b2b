// Each format is read back by a library that knows nothing of Sorvanta: texts and times come back as they went in, but
// for what the format, or its reader, cannot hold.

#include "export/text_export.h"
#include "independent_readers.h"
#include "platform/unicode_text.h"
#include "support/printing.h"
#include "support/random_transcript.h"

#include <gtest/gtest.h>

#include <functional>

using namespace sorvanta;
using enum ExportFormat;

namespace {

constexpr int rounds = 300;
constexpr qsizetype longTranscript = 100'000;

QByteArray file(ExportFormat format, const ExportInput &input)
{
    return renderExport(format, input).value().toUtf8();
}

QList<TranscriptSegment> csvSegments(const QByteArray &bytes)
{
    const QList<QStringList> rows = readers::csvRows(bytes);
    EXPECT_EQ(rows.first(), (QStringList{"start", "end", "text"}));
    QList<TranscriptSegment> segments;
    for (const QStringList &row : rows.sliced(1)) {
        EXPECT_EQ(row.size(), 3);
        segments.append({row.value(0), row.value(1), row.value(2)});
    }
    return segments;
}

/// HTML calls controls and noncharacters errors, and the parser puts a replacement for each. It leaves NUL out.
QString asReadFromHtml(const QString &text)
{
    QString result;
    for (char32_t character : text.toUcs4()) {
        const bool isControl = (character < 0x20 && character != '\t' && character != '\n' && character != '\f')
                               || (character >= 0x7F && character <= 0x9F);
        if (character != 0 && (isControl || QChar::isNonCharacter(character)))
            character = QChar::ReplacementCharacter;
        if (character != 0)
            result += QChar::fromUcs4(character);
    }
    return result;
}

/// CommonMark replaces NUL and takes no notice of blanks at the end of a paragraph.
QString asReadFromMarkdown(QString text)
{
    while (text.endsWith(' ') || text.endsWith('\t'))
        text.chop(1);
    return text.replace(QChar(0), QChar::ReplacementCharacter);
}

QString asItIs(const QString &text)
{
    return text;
}

/// A text of a segment is never blank.
QString neverBlank(const QString &text)
{
    return trimmedOfWhitespaceAndNewlines(text).isEmpty() ? u"x"_qs : text;
}

QString withoutNul(QString text)
{
    return neverBlank(text.remove(QChar(0)));
}

QString withoutMarkdown(QString text)
{
    return neverBlank(text.removeIf([](QChar unit) { return QStringView(u"\\`*_[]<&").contains(unit); }));
}

struct Way {
    ExportFormat format;
    /// What of a random text the format can be asked to bring back.
    std::function<QString(const QString &)> written;
    std::function<QList<TranscriptSegment>(const QByteArray &)> read;
    /// What comes back of a text by the rules of the format.
    std::function<QString(const QString &)> expected;
};

void PrintTo(const Way &way, std::ostream *out)
{
    *out << fileExtension(way.format).toStdString();
}

class ReadBack : public testing::TestWithParam<Way> {
protected:
    static void expectToComeBack(QList<TranscriptSegment> segments)
    {
        const Way &way = GetParam();
        for (TranscriptSegment &segment : segments)
            segment.text = way.written(segment.text);
        const QList<TranscriptSegment> read = way.read(file(way.format, {.text = u"any"_qs, .segments = segments}));
        ASSERT_EQ(read.size(), segments.size());
        for (qsizetype i = 0; i < segments.size(); ++i) {
            ASSERT_EQ(read[i].start, segments[i].start);
            ASSERT_EQ(read[i].end, segments[i].end);
            ASSERT_EQ(read[i].text, way.expected(segments[i].text)) << "of segment " << i;
        }
    }
};

TEST_P(ReadBack, givesTextsAndTimesAsTheyWentIn)
{
    for (unsigned seed = 0; seed < rounds && !HasFatalFailure(); ++seed) {
        SCOPED_TRACE(seed);
        RandomTranscript random(seed);
        expectToComeBack(random.segments(random.number(1, 40)));
    }
}

TEST_P(ReadBack, givesAVeryLongTranscriptAsItWentIn)
{
    expectToComeBack(RandomTranscript(1).segments(longTranscript));
}

// The readers of subtitles take NUL for the end of the file.
INSTANTIATE_TEST_SUITE_P(
    Formats, ReadBack,
    testing::Values(
        Way{srt, withoutNul, [](const QByteArray &bytes) { return readers::subtitles(bytes, "srt"); }, asItIs},
        Way{vtt, withoutNul, [](const QByteArray &bytes) { return readers::subtitles(bytes, "webvtt"); }, asItIs},
        Way{csv, asItIs, csvSegments, asItIs},
        Way{json, asItIs, [](const QByteArray &bytes) { return readers::jsonTranscript(bytes).segments; }, asItIs},
        Way{html, asItIs, [](const QByteArray &bytes) { return readers::page(bytes).segments; }, asReadFromHtml},
        Way{markdown, withoutMarkdown, readers::markdownSegments, asReadFromMarkdown}),
    [](const auto &way) { return fileExtension(way.param.format).toStdString(); });

TEST(ReadBackMarkdown, givesEachSegmentItsParagraphAndItsTimesWhateverTheTextsMean)
{
    for (unsigned seed = 0; seed < rounds; ++seed) {
        SCOPED_TRACE(seed);
        RandomTranscript random(seed);
        const auto segments = random.segments(random.number(1, 40));
        const auto read = readers::markdownSegments(file(markdown, {.text = u"any"_qs, .segments = segments}));
        ASSERT_EQ(read.size(), segments.size());
        for (qsizetype i = 0; i < segments.size(); ++i) {
            ASSERT_EQ(read[i].start, segments[i].start);
            ASSERT_EQ(read[i].end, segments[i].end);
        }
    }
}

class ReadBackSubtitles : public testing::TestWithParam<std::pair<ExportFormat, const char *>> { };

TEST_P(ReadBackSubtitles, areShownAsTheTranscriptSaysThem)
{
    const auto &[format, reader] = GetParam();
    const QStringList texts{"Hello, \"world\".", u"שלום — 🎙 é"_qs, "42", "7. it's 3/4 & more"};
    QList<TranscriptSegment> segments;
    for (const QString &text : texts)
        segments.append({u"00:00:0%1.000"_qs.arg(segments.size()), u"00:00:0%1.500"_qs.arg(segments.size()), text});
    EXPECT_EQ(readers::shownSubtitles(file(format, {.segments = segments}), reader), texts);
}

INSTANTIATE_TEST_SUITE_P(Formats, ReadBackSubtitles, testing::Values(std::pair(srt, "srt"), std::pair(vtt, "webvtt")),
                         [](const auto &row) { return std::string(row.param.second); });

class ReadBackUntimed : public testing::TestWithParam<unsigned> {
protected:
    const QString text = RandomTranscript(GetParam()).lines();
    const QString trimmed = trimmedOfWhitespaceAndNewlines(text).toString();
};

TEST_P(ReadBackUntimed, txtIsTheTextItself)
{
    EXPECT_EQ(decodeUtf8(file(txt, {.text = text})), text);
}

TEST_P(ReadBackUntimed, csvIsOneRowWithABlankForEachLineFeed)
{
    EXPECT_EQ(readers::csvRows(file(csv, {.text = text})),
              (QList<QStringList>{{"start", "end", "text"}, {"", "", QString(trimmed).replace('\n', ' ')}}));
}

TEST_P(ReadBackUntimed, jsonIsTheTrimmedTextAndNoSegments)
{
    const ExportInput read = readers::jsonTranscript(file(json, {.text = text}));
    EXPECT_EQ(read.text, trimmed);
    EXPECT_TRUE(read.segments.isEmpty());
}

TEST_P(ReadBackUntimed, htmlIsOneParagraphWithABreakForEachLineFeed)
{
    // A parser takes each CR, which is not followed by LF here but by a tag, for a line feed of the page.
    QString lineFeeds = trimmed;
    const readers::Page page = readers::page(file(html, {.text = text}));
    EXPECT_EQ(page.paragraphs, QStringList{asReadFromHtml(lineFeeds.replace('\r', '\n'))});
    EXPECT_TRUE(page.segments.isEmpty());
    EXPECT_EQ(page.title, "Transcript Export");
    EXPECT_EQ(page.encoding, "utf-8");
}

INSTANTIATE_TEST_SUITE_P(Random, ReadBackUntimed, testing::Range(0u, 100u));

} // namespace
