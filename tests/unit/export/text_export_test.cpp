#include "export/text_export.h"

#include "support/printing.h"

#include <gtest/gtest.h>

using namespace sorvanta;
using enum ExportFormat;

namespace {

TranscriptSegment segment(const QString &text)
{
    return {"00:00:00.000", "00:00:02.500", text};
}

const QList<TranscriptSegment> twoSegments = {{"00:00:00.000", "00:00:02.500", "Hello"},
                                              {"00:00:02.500", "00:00:04.000", "there"}};

/// What a format makes of one segment with this text.
QString renderedSegment(ExportFormat format, const QString &text)
{
    return renderExport(format, {.text = "any", .segments = {segment(text)}}).value();
}

TEST(RenderTxt, givesTheTextUntrimmedWithoutALineEndOfItsOwn)
{
    EXPECT_EQ(renderExport(txt, {.text = " \n a\r\n b \n"}), " \n a\r\n b \n");
    EXPECT_EQ(renderExport(txt, {.text = " \n"}), " \n");
    EXPECT_EQ(renderExport(txt, {.text = "shown", .segments = twoSegments}), "shown");
}

TEST(RenderTxt, givesNothingForTheEmptyTextEvenWithSegments)
{
    EXPECT_EQ(renderExport(txt, {}), std::nullopt);
    EXPECT_EQ(renderExport(txt, {.segments = twoSegments}), std::nullopt);
}

TEST(RenderSrt, givesNothingWithoutSegments)
{
    EXPECT_EQ(renderExport(srt, {.text = "Hello"}), std::nullopt);
}

TEST(RenderSrt, separatesBlocksByOneBlankLineAndEndsWithOneLineFeed)
{
    EXPECT_EQ(renderExport(srt, {.segments = twoSegments}),
              "1\n00:00:00,000 --> 00:00:02,500\nHello\n\n2\n00:00:02,500 --> 00:00:04,000\nthere\n");
}

TEST(RenderSrt, replacesEveryPointOfATimeAndNoneOfAText)
{
    EXPECT_EQ(renderExport(srt, {.segments = {{"0.0.0", "1.1", "a.b"}}}), "1\n0,0,0 --> 1,1\na.b\n");
}

TEST(RenderSrt, countsInPlainDecimalFromOne)
{
    const QList<TranscriptSegment> segments(1000, segment("x"));
    const QStringList blocks = renderExport(srt, {.segments = segments})->split("\n\n");
    ASSERT_EQ(blocks.size(), 1000);
    EXPECT_EQ(blocks[8], "9\n00:00:00,000 --> 00:00:02,500\nx");
    EXPECT_EQ(blocks[9], "10\n00:00:00,000 --> 00:00:02,500\nx");
    EXPECT_EQ(blocks[999], "1000\n00:00:00,000 --> 00:00:02,500\nx\n");
}

TEST(RenderVtt, givesNothingWithoutSegments)
{
    EXPECT_EQ(renderExport(vtt, {.text = "Hello"}), std::nullopt);
}

TEST(RenderVtt, hasAHeaderAndCuesWithoutNumbersAndEndsWithOneLineFeed)
{
    EXPECT_EQ(renderExport(vtt, {.segments = twoSegments}),
              "WEBVTT\n\n00:00:00.000 --> 00:00:02.500\nHello\n\n00:00:02.500 --> 00:00:04.000\nthere\n");
}

TEST(RenderCsv, hasARowForEachSegmentAndNoLineEndBehindTheLast)
{
    EXPECT_EQ(renderExport(csv, {.text = "not read", .segments = twoSegments}),
              "start,end,text\n00:00:00.000,00:00:02.500,\"Hello\"\n00:00:02.500,00:00:04.000,\"there\"");
}

TEST(RenderCsv, doublesQuotesAndPutsABlankForEachLineFeed)
{
    EXPECT_EQ(renderedSegment(csv, "\"a\", \"\"b\n\nc\r\nd"),
              "start,end,text\n00:00:00.000,00:00:02.500,\"\"\"a\"\", \"\"\"\"b  c\r d\"");
    EXPECT_EQ(renderExport(csv, {.text = "\"a\", \"\"b\n\nc\r\nd"}),
              "start,end,text\n,,\"\"\"a\"\", \"\"\"\"b  c\r d\"");
}

TEST(RenderCsv, givesATextWithoutSegmentsAsOneRowWithoutTimes)
{
    EXPECT_EQ(renderExport(csv, {.text = "\u3000\n one\ntwo\nthree \u2028"}), "start,end,text\n,,\"one two three\"");
}

TEST(RenderCsv, looksAtSegmentsBeforeItLooksAtTheText)
{
    EXPECT_EQ(renderExport(csv, {.text = " \n", .segments = {segment("x")}}),
              "start,end,text\n00:00:00.000,00:00:02.500,\"x\"");
    EXPECT_EQ(renderExport(csv, {.text = " \n"}), std::nullopt);
    EXPECT_EQ(renderExport(csv, {}), std::nullopt);
}

TEST(RenderMarkdown, hasAParagraphForEachSegmentAndNoLineEndBehindTheLast)
{
    EXPECT_EQ(renderExport(markdown, {.text = "any", .segments = twoSegments}),
              "**[00:00:00.000 -> 00:00:02.500]** Hello\n\n**[00:00:02.500 -> 00:00:04.000]** there");
}

TEST(RenderMarkdown, isTheTrimmedTextWithoutSegments)
{
    EXPECT_EQ(renderExport(markdown, {.text = "\n # one\n\n*two* \u00A0\n"}), "# one\n\n*two*");
}

TEST(RenderMarkdown, escapesNothing)
{
    const QString marks = "*a* _b_ `c` [d](e) \\ <f> & # > - 1. | ~";
    EXPECT_EQ(renderedSegment(markdown, marks), "**[00:00:00.000 -> 00:00:02.500]** " + marks);
}

TEST(RenderHtml, hasAParagraphForEachSegmentAndNoLineEndBehindTheLastTag)
{
    EXPECT_EQ(renderExport(html, {.text = "any", .segments = twoSegments}),
              "<!doctype html>\n<html>\n<head>\n<meta charset=\"utf-8\">\n<title>Transcript Export</title>\n</head>\n"
              "<body>\n<p><strong>[00:00:00.000 -> 00:00:02.500]</strong> Hello</p>\n"
              "<p><strong>[00:00:02.500 -> 00:00:04.000]</strong> there</p>\n</body>\n</html>");
}

TEST(RenderHtml, isOneParagraphWithBreaksWithoutSegments)
{
    EXPECT_EQ(renderExport(html, {.text = "\n a <b>\n\n\"c\" \n"}),
              "<!doctype html>\n<html>\n<head>\n<meta charset=\"utf-8\">\n<title>Transcript Export</title>\n</head>\n"
              "<body>\n<p>a &lt;b&gt;<br><br>&quot;c&quot;</p>\n</body>\n</html>");
}

TEST(RenderHtml, escapesTheAmpersandFirstSoThatNoEntityIsEscapedTwice)
{
    EXPECT_TRUE(renderExport(html, {.text = "<&>"})->contains("<p>&lt;&amp;&gt;</p>"));
    EXPECT_TRUE(renderedSegment(html, "<&>").contains("</strong> &lt;&amp;&gt;</p>"));
    EXPECT_TRUE(renderedSegment(html, "\"'&amp;").contains("</strong> &quot;&#39;&amp;amp;</p>"));
}

TEST(RenderJson, isPrettyWithSortedKeys)
{
    EXPECT_EQ(renderExport(json, {.text = " Hello\n", .segments = {segment("Hello")}}), R"({
  "segments" : [
    {
      "end" : "00:00:02.500",
      "start" : "00:00:00.000",
      "text" : "Hello"
    }
  ],
  "text" : "Hello"
})");
}

TEST(RenderJson, hasTheSingleKeyTextWithoutSegments)
{
    EXPECT_EQ(renderExport(json, {.text = "\u2003Hello\nthere\u2029"}), "{\n  \"text\" : \"Hello\\nthere\"\n}");
}

TEST(RenderJson, escapesSlashes)
{
    EXPECT_EQ(renderExport(json, {.text = "1/2 </b>"}), "{\n  \"text\" : \"1\\/2 <\\/b>\"\n}");
    EXPECT_TRUE(renderedSegment(json, "km/h").contains("\"text\" : \"km\\/h\""));
}

TEST(RenderJson, escapesControlsAndWritesAllElseAsItself)
{
    EXPECT_EQ(renderExport(json, {.text = "\"\\\b\f\n\r\t\u0001\u001F\u007F\u0085é\u2028\uFEFF\uFFFF🎙x"}),
              "{\n  \"text\" : \"\\\"\\\\\\b\\f\\n\\r\\t\\u0001\\u001f\u007F\u0085é\u2028\uFEFF\uFFFF🎙x\"\n}");
}

class FormatThatNeedsText : public testing::TestWithParam<ExportFormat> { };

TEST_P(FormatThatNeedsText, givesNothingForBlankTextEvenWithSegments)
{
    for (const QString &blank : {QString(), u" "_qs, u" \n\t\r\n\u00A0\u200B\u2028\u3000"_qs}) {
        EXPECT_EQ(renderExport(GetParam(), {.text = blank, .segments = twoSegments}), std::nullopt);
        EXPECT_EQ(renderExport(GetParam(), {.text = blank}), std::nullopt);
    }
    EXPECT_NE(renderExport(GetParam(), {.text = u"\uFEFF"_qs}), std::nullopt);
}

INSTANTIATE_TEST_SUITE_P(Formats, FormatThatNeedsText, testing::Values(markdown, html, json),
                         [](const auto &row) { return fileExtension(row.param).toStdString(); });

class TextFormat : public testing::TestWithParam<ExportFormat> { };

TEST_P(TextFormat, takesNothingInATextForAPlaceholder)
{
    EXPECT_TRUE(
        renderExport(GetParam(), {.text = "%1 %2 100%", .segments = {segment("%1 %2 100%")}})->contains("%1 %2 100%"));
}

TEST_P(TextFormat, putsAReplacementCharacterForHalfOfASurrogatePair)
{
    const QString broken = u"a"_qs + QChar(0xDF99) + QChar(0xD83C) + u"🎙"_qs + QChar(0xD83C);
    const QString content = renderExport(GetParam(), {.text = broken, .segments = {segment(broken)}}).value();
    EXPECT_TRUE(content.contains(u"a\uFFFD\uFFFD🎙\uFFFD"_qs));
    EXPECT_TRUE(content.isValidUtf16());
}

TEST_P(TextFormat, breaksItsOwnLinesByLineFeedsAlone)
{
    EXPECT_FALSE(renderExport(GetParam(), {.text = "a\nb", .segments = twoSegments})->contains('\r'));
    EXPECT_FALSE(renderExport(GetParam(), {.text = "a\nb", .segments = twoSegments})->contains(QChar::ByteOrderMark));
}

INSTANTIATE_TEST_SUITE_P(Formats, TextFormat, testing::Values(txt, srt, vtt, csv, markdown, html, json),
                         [](const auto &row) { return fileExtension(row.param).toStdString(); });

class TimeInFormat : public testing::TestWithParam<ExportFormat> { };

TEST_P(TimeInFormat, keepsItsPoint)
{
    const QString content =
        renderExport(GetParam(), {.text = "x", .segments = {{"00:01:02.345", "00:01:03.456", "x"}}}).value();
    EXPECT_TRUE(content.contains("00:01:02.345"));
    EXPECT_TRUE(content.contains("00:01:03.456"));
    EXPECT_FALSE(content.contains("00:01:02,345"));
}

INSTANTIATE_TEST_SUITE_P(Formats, TimeInFormat, testing::Values(vtt, csv, markdown, html, json),
                         [](const auto &row) { return fileExtension(row.param).toStdString(); });

TEST(TimeInSrt, hasACommaInPlaceOfThePoint)
{
    EXPECT_EQ(renderExport(srt, {.segments = {{"00:01:02.345", "00:01:03.456", "x"}}}),
              "1\n00:01:02,345 --> 00:01:03,456\nx\n");
}

TEST(RenderExport, givesNoTextForDocuments)
{
    EXPECT_EQ(renderExport(docx, {.text = "Hello", .segments = twoSegments}), std::nullopt);
    EXPECT_EQ(renderExport(pdf, {.text = "Hello", .segments = twoSegments}), std::nullopt);
}

} // namespace
