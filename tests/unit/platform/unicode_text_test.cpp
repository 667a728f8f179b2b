#include "platform/unicode_text.h"

#include "support/printing.h"

#include <QStringList>

#include <gtest/gtest.h>

using namespace sorvanta;

namespace {

QStringList lines(QStringView text)
{
    QStringList result;
    forEachLine(text, [&result](QStringView line) { result << line.toString(); });
    return result;
}

QStringList clusters(QStringView text)
{
    QStringList result;
    GraphemeClusters walker(text);
    for (qsizetype i = 0; i < text.size();) {
        const qsizetype end = walker.end(i);
        result << text.sliced(i, end - i).toString();
        i = end;
    }
    return result;
}

TEST(CharacterSets, holdExactlyTheCodePointsOfTheirTables)
{
    const QString newlines = u"\u000A\u000B\u000C\u000D\u0085\u2028\u2029"_qs;
    const QString whitespaces = u"\u0009\u0020\u00A0\u1680\u2000\u2001\u2002\u2003\u2004\u2005\u2006\u2007\u2008"
                                u"\u2009\u200A\u200B\u202F\u205F\u3000"_qs;
    for (int unit = 0; unit <= 0xFFFF; ++unit) {
        const auto character = static_cast<char16_t>(unit);
        SCOPED_TRACE(unit);
        EXPECT_EQ(isNewline(character), newlines.contains(QChar(character)));
        EXPECT_EQ(isWhitespace(character), whitespaces.contains(QChar(character)));
        EXPECT_EQ(isWhitespaceOrNewline(character), isNewline(character) || isWhitespace(character));
        EXPECT_EQ(hasWhiteSpaceProperty(character), isWhitespaceOrNewline(character) && unit != 0x200B);
    }
}

TEST(Lines, areThePiecesBetweenSingleLineBreakCharacters)
{
    EXPECT_EQ(lines(u"a\r\nb"), (QStringList{"a", "", "b"}));
    EXPECT_EQ(lines(u"a\n"), (QStringList{"a", ""}));
    EXPECT_EQ(lines(u"\n"), (QStringList{"", ""}));
    EXPECT_EQ(lines(u""), QStringList{""});
    EXPECT_EQ(lines(u"a\r\n\r\nb"), (QStringList{"a", "", "", "", "b"}));
    EXPECT_EQ(lines(u"a\u2028b\u0085c\u000Bd\u000Ce"), (QStringList{"a", "b", "c", "d", "e"}));
    EXPECT_EQ(lines(u"x\n\u0301y"), (QStringList{u"x"_qs, u"\u0301y"_qs}));
}

TEST(Trimming, worksOnCodePointsAndKnowsLineBreaksApart)
{
    EXPECT_EQ(trimmedOfWhitespace(u"\u200Bx\u200B"), u"x");
    EXPECT_EQ(trimmedOfWhitespace(u"\uFEFFx"), u"\uFEFFx");
    EXPECT_EQ(trimmedOfWhitespace(u"\u180Ex"), u"\u180Ex");
    EXPECT_EQ(trimmedOfWhitespace(u"  a b \n"), u"a b \n");
    EXPECT_EQ(trimmedOfWhitespaceAndNewlines(u"x\r\n"), u"x");
    EXPECT_EQ(trimmedOfWhitespace(u" \u0301x "), u"\u0301x");
    EXPECT_EQ(trimmedOfWhitespace(u" \t "), u"");
}

TEST(GraphemeClusters, areWhatAReaderCallsACharacter)
{
    EXPECT_EQ(clusters(u"").size(), 0);
    EXPECT_EQ(clusters(u"a\r\nb"), (QStringList{"a", "\r\n", "b"}));
    EXPECT_EQ(clusters(u"e\u0301x"), (QStringList{u"e\u0301"_qs, u"x"_qs}));
    EXPECT_EQ(clusters(u" \u0301"), QStringList{u" \u0301"_qs});
    EXPECT_EQ(clusters(u"👨‍👩‍👧").size(), 1);
    EXPECT_EQ(clusters(u"🇩🇪🇫🇷").size(), 2);
    EXPECT_EQ(clusters(u"하나").size(), 2);
    EXPECT_EQ(clusters(u"\u1112\u1161\u11AB").size(), 1);
}

TEST(Utf8, isDecodedOnlyWhenWellFormed)
{
    EXPECT_EQ(decodeUtf8("h\xC3\xA9llo"), u"h\u00E9llo"_qs);
    EXPECT_EQ(decodeUtf8(""), QString());
    EXPECT_EQ(decodeUtf8("\xEF\xBB\xBFx"), u"\uFEFFx"_qs) << "a byte order mark is a character";
    EXPECT_EQ(decodeUtf8(QByteArrayView("a\0b", 3)), QString::fromUtf16(u"a\0b", 3));
    EXPECT_FALSE(decodeUtf8("\xC3"));
    EXPECT_FALSE(decodeUtf8("\xA9"));
    EXPECT_FALSE(decodeUtf8("\xFF"));
    EXPECT_FALSE(decodeUtf8("\xED\xA0\x80")) << "a surrogate";
    EXPECT_FALSE(decodeUtf8("\xC0\x80")) << "an overlong form";
    EXPECT_FALSE(decodeUtf8("\xF4\x90\x80\x80")) << "past U+10FFFF";
}

TEST(Utf8, isRepairedWithOneReplacementForEachInvalidSequence)
{
    EXPECT_EQ(decodeUtf8WithRepair("a\xFF"
                                   "b"),
              u"a\uFFFDb"_qs);
    EXPECT_EQ(decodeUtf8WithRepair("\xE2\x82"
                                   "A"),
              u"\uFFFDA"_qs)
        << "a cut sequence is one piece";
    EXPECT_EQ(decodeUtf8WithRepair("\xF0\x9F\x99"), u"\uFFFD"_qs);
    EXPECT_EQ(decodeUtf8WithRepair("\xED\xA0\x80"), u"\uFFFD\uFFFD\uFFFD"_qs);
    EXPECT_EQ(decodeUtf8WithRepair("\xF0\x9F\x99\x82"), u"🙂"_qs);
}

struct EncodedText {
    const char *name;
    QByteArray bytes;
    QString text;
};

void PrintTo(const EncodedText &row, std::ostream *out)
{
    *out << row.name;
}

class TextOfUnknownEncoding : public testing::TestWithParam<EncodedText> { };

TEST_P(TextOfUnknownEncoding, isDecoded)
{
    EXPECT_EQ(decodeText(GetParam().bytes), GetParam().text);
}

INSTANTIATE_TEST_SUITE_P(
    Encodings, TextOfUnknownEncoding,
    testing::Values(EncodedText{"empty", "", u""_qs}, EncodedText{"ascii", "+/v8 \r\n", u"+/v8 \r\n"_qs},
                    EncodedText{"utf8", "\xC3\xA9\xF0\x9F\x99\x82", u"é🙂"_qs},
                    EncodedText{"utf8WithMark", "\xEF\xBB\xBF\xC3\xA9", u"é"_qs},
                    EncodedText{"utf8WithTwoMarks", "\xEF\xBB\xBF\xEF\xBB\xBFx", u"\uFEFFx"_qs},
                    EncodedText{"utf8WithMarkAndFault", "\xEF\xBB\xBF\xC3\xA9\xFFx", u"é\uFFFDx"_qs},
                    EncodedText{"utf16LittleEndian", QByteArray("\xFF\xFEx\0\x3D\xD8\x42\xDE", 8), u"x🙂"_qs},
                    EncodedText{"utf16BigEndian", QByteArray("\xFE\xFF\0x\xD8\x3D\xDE\x42", 8), u"x🙂"_qs},
                    EncodedText{"utf16WithHalfAPair", QByteArray("\xFF\xFE\x3D\xD8x\0", 6), u"\uFFFDx"_qs},
                    EncodedText{"utf16OfOddSize", QByteArray("\xFF\xFEx\0y", 5), u"x\uFFFD"_qs},
                    EncodedText{"utf16MarkAlone", "\xFF\xFE", u""_qs},
                    EncodedText{"utf32LittleEndian", QByteArray("\xFF\xFE\0\0x\0\0\0", 8), u"x"_qs},
                    EncodedText{"windows1252", "caf\xE9 \x80 \x93x\x94", u"café € “x”"_qs},
                    EncodedText{"withNul", QByteArray("a\0b", 3), QString::fromUtf16(u"a\0b", 3)}),
    [](const auto &row) { return row.param.name; });

TEST(Surrogates, areReplacedWhereOneStandsAlone)
{
    const QChar high(0xD83C);
    const QChar low(0xDF99);
    const auto repaired = [](QString text) {
        repairSurrogates(text);
        return text;
    };
    EXPECT_EQ(repaired({}), QString());
    EXPECT_EQ(repaired("plain é 🎙"), "plain é 🎙");
    EXPECT_EQ(repaired(QString(high)), u"\uFFFD"_qs);
    EXPECT_EQ(repaired(QString(low)), u"\uFFFD"_qs);
    EXPECT_EQ(repaired(QString(low) + high), u"\uFFFD\uFFFD"_qs);
    EXPECT_EQ(repaired(QString(high) + 'x'), u"\uFFFDx"_qs);
    EXPECT_EQ(repaired(QString(high) + high + low + low), u"\uFFFD🎙\uFFFD"_qs);
}

} // namespace
