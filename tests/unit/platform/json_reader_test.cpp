#include "platform/json_reader.h"

#include "platform/error.h"
#include "support/printing.h"

#include <QStringList>
#include <QtEndian>

#include <gtest/gtest.h>

using namespace sorvanta;

namespace {

/// What a document holds: `{a:"text",b:[true,null]}`; "4864" if it is refused.
QString contents(JsonReader &reader)
{
    QStringList parts;
    switch (reader.nextKind()) {
    case JsonReader::Kind::Object:
        reader.readObject([&](QByteArrayView key) {
            const QString name = QString::fromUtf8(key);
            parts << name + ':' + contents(reader);
        });
        return '{' + parts.join(',') + '}';
    case JsonReader::Kind::Array:
        reader.readArray([&] { parts << contents(reader); });
        return '[' + parts.join(',') + ']';
    case JsonReader::Kind::String:
        if (const std::optional<QString> text = reader.readString())
            return '"' + *text + '"';
        return "undecodable";
    case JsonReader::Kind::Boolean:
        return reader.readBoolean() ? "true" : "false";
    case JsonReader::Kind::Number:
        reader.skipValue();
        return "number";
    case JsonReader::Kind::Null:
        reader.skipValue();
        return "null";
    }
    return {};
}

template<typename Read>
QString outcome(const QByteArray &document, Read read)
{
    try {
        JsonReader reader(document);
        const QString result = read(reader);
        reader.readEnd();
        return result;
    } catch (const Error &error) {
        EXPECT_EQ(error.localizedDescription(), "The data couldn’t be read because it isn’t in the correct format.");
        return QString::number(error.code());
    }
}

QString reading(const QByteArray &document)
{
    return outcome(document, contents);
}

QString skipping(const QByteArray &document)
{
    return outcome(document, [](JsonReader &reader) {
        reader.skipValue();
        return u"skipped"_qs;
    });
}

struct JsonCase {
    QByteArray document;
    QString contents;
};

class WellFormed : public testing::TestWithParam<JsonCase> { };

TEST_P(WellFormed, documentsAreReadAndSkipped)
{
    EXPECT_EQ(reading(GetParam().document), GetParam().contents);
    EXPECT_EQ(skipping(GetParam().document), "skipped");
}

INSTANTIATE_TEST_SUITE_P(
    Documents, WellFormed,
    testing::Values(JsonCase{"[]", "[]"}, JsonCase{"{}", "{}"}, JsonCase{"\"x\"", "\"x\""}, JsonCase{"1", "number"},
                    JsonCase{"true", "true"}, JsonCase{"false", "false"}, JsonCase{"null", "null"},
                    JsonCase{"{}\n \r\t", "{}"},
                    JsonCase{" \n\r\t[ 1 , \"a\" , { \"k\" : true } ] ", "[number,\"a\",{k:true}]"},
                    JsonCase{R"({"a":"1","b":[true,false,null,{}],"":""})", R"({a:"1",b:[true,false,null,{}],:""})"},
                    JsonCase{R"({"a":1,"a":2})", "{a:number,a:number}"}));

INSTANTIATE_TEST_SUITE_P(TrailingCommas, WellFormed,
                         testing::Values(JsonCase{"[1,2,]", "[number,number]"}, JsonCase{"[1 , ]", "[number]"},
                                         JsonCase{R"({"a":1,})", "{a:number}"},
                                         JsonCase{R"([{"a":[true,],},])", "[{a:[true]}]"}));

INSTANTIATE_TEST_SUITE_P(Numbers, WellFormed,
                         testing::Values(JsonCase{"0", "number"}, JsonCase{"-0", "number"},
                                         JsonCase{"-12.50e+3", "number"}, JsonCase{"1E-7", "number"},
                                         JsonCase{"1e400", "number"}, JsonCase{"12345678901234567890", "number"}));

INSTANTIATE_TEST_SUITE_P(Strings, WellFormed,
                         testing::Values(JsonCase{R"("\"\\\/\b\f\n\r\t")", "\"\"\\/\b\f\n\r\t\""},
                                         JsonCase{R"("\u0041\u00e9\u00E9\uFEFF")", "\"Aéé\uFEFF\""},
                                         JsonCase{R"("\ud83d\ude00")", "\"😀\""},
                                         JsonCase{R"("a😀é\n日本語 and more")", "\"a😀é\n日本語 and more\""},
                                         JsonCase{R"("long plain text\\")", "\"long plain text\\\""},
                                         JsonCase{R"("\u0000")", QString('"') + QChar(u'\0') + '"'},
                                         JsonCase{"\"\x7F\"", "\"\x7F\""}, JsonCase{"\"\xEF\xBB\xBFx\"", "\"\uFEFFx\""},
                                         JsonCase{R"({"\u0069d":"x"})", "{id:\"x\"}"}));

class Malformed : public testing::TestWithParam<QByteArray> { };

TEST_P(Malformed, documentsAreRefusedWhetherReadOrSkipped)
{
    EXPECT_EQ(reading(GetParam()), "4864");
    EXPECT_EQ(skipping(GetParam()), "4864");
}

INSTANTIATE_TEST_SUITE_P(Numbers, Malformed,
                         testing::Values("01", "1.", ".5", "+1", "-", "1e", "1e+", "NaN", "-Infinity", "0x1"));
INSTANTIATE_TEST_SUITE_P(Words, Malformed,
                         testing::Values("True", "tru", "nul", "nulll", "falsey", "'x'", "{a:1}", "{'a':1}", "{1:2}",
                                         "// c\n1", "/* c */1", "[1 /* c */]"));
INSTANTIATE_TEST_SUITE_P(Commas, Malformed,
                         testing::Values("[,1]", "[1,,2]", "[1 2]", "[,]", "{,}", R"({"a":1,,"b":2})",
                                         R"({"a":1 "b":2})", R"({"a" 1})", R"({"a":})", R"({"a",})", R"({"a":1:2})"));
INSTANTIATE_TEST_SUITE_P(WhiteSpace, Malformed,
                         testing::Values("\u00A0[]", "\x0B[]", "\x0C[]", "[]\u00A0", "[]\x0B", "\u2028[]"));
INSTANTIATE_TEST_SUITE_P(RestOfTheDocument, Malformed,
                         testing::Values(QByteArray("{}x"), QByteArray("{}{}"), QByteArray("{}\0", 3),
                                         QByteArray("[]]"), QByteArray("[1,\0]", 5), QByteArray("1 2")));
INSTANTIATE_TEST_SUITE_P(Truncation, Malformed,
                         testing::Values("", " ", "\n\n", "[", "{", "[1", "[1,", "{\"a\"", "{\"a\":", "{\"a\":1", "\"",
                                         "\"abc", "\"abc\\", "\"abc\\u00", "[}", "{]"));
INSTANTIATE_TEST_SUITE_P(Escapes, Malformed,
                         testing::Values(R"("\q")", R"("\'")", R"("\x41")", R"("\U0041")", R"("\u004")",
                                         R"("\u00g0")"));

TEST(JsonReader, refusesEachUnescapedControlCharacterWhereverItStands)
{
    for (char character = 0; character < 0x20; ++character) {
        for (const QByteArray &before : {QByteArray(), QByteArray("some text of more than eight bytes")}) {
            const QByteArray document = '"' + before + character + "\"";
            EXPECT_EQ(reading(document), "4864") << int(character);
            EXPECT_EQ(skipping(document), "4864") << int(character);
        }
    }
}

TEST(JsonReader, findsTheEndOfAStringAtAnyPlaceInIt)
{
    for (int length = 0; length < 40; ++length) {
        const QByteArray text(length, 'x');
        EXPECT_EQ(reading("[\"" + text + "\",\"é" + text + "\"]"), "[\"" + text + "\",\"é" + text + "\"]");
        EXPECT_EQ(reading('"' + text + R"(\"y")"), '"' + text + "\"y\"");
    }
}

class Undecodable : public testing::TestWithParam<QByteArray> { };

TEST_P(Undecodable, stringsAreNoTextWhenReadAndNoHindranceWhenSkipped)
{
    for (const QByteArray &filling : {QByteArray(), QByteArray("some text of more than eight bytes")}) {
        const QByteArray document = '"' + filling + GetParam() + filling + '"';
        EXPECT_EQ(reading(document), "undecodable");
        EXPECT_EQ(skipping(document), "skipped");
        EXPECT_EQ(skipping("{" + document + ":1}"), "skipped");
        EXPECT_EQ(skipping("[[" + document + "]]"), "skipped");
    }
}

INSTANTIATE_TEST_SUITE_P(Bytes, Undecodable,
                         testing::Values("\xFF", "\xE9", "\xED\xA0\x80", "\xC0\x80", "\xF5\x80\x80\x80"));
INSTANTIATE_TEST_SUITE_P(Surrogates, Undecodable,
                         testing::Values(R"(\ud800)", R"(\udc00)", R"(\ud83d\u0041)", R"(\ud83dx)", R"(\ud83d\n)",
                                         R"(\ud83d\ud83d\ude00)", R"(\ude00\ud83d)"));

TEST(JsonReader, followsNestingFor512Levels)
{
    const auto nested = [](int levels, const QByteArray &open, const QByteArray &close) {
        return open.repeated(levels) + "1" + close.repeated(levels);
    };
    EXPECT_EQ(skipping(nested(512, "[", "]")), "skipped");
    EXPECT_EQ(skipping(nested(513, "[", "]")), "4864");
    EXPECT_EQ(skipping(nested(512, "{\"a\":", "}")), "skipped");
    EXPECT_EQ(skipping(nested(513, "{\"a\":", "}")), "4864");
    EXPECT_EQ(skipping("[" + QByteArray("[1],").repeated(1000) + "]"), "skipped");
    EXPECT_EQ(skipping(QByteArray(1'000'000, '[')), "4864");
}

QByteArray utf16(const QString &text, bool isBigEndian)
{
    QByteArray bytes(text.size() * 2, Qt::Uninitialized);
    for (qsizetype i = 0; i < text.size(); ++i) {
        const quint16 unit = text[i].unicode();
        isBigEndian ? qToBigEndian(unit, bytes.data() + 2 * i) : qToLittleEndian(unit, bytes.data() + 2 * i);
    }
    return bytes;
}

QByteArray utf32(const QString &text, bool isBigEndian)
{
    QByteArray bytes;
    for (const char32_t character : text.toUcs4()) {
        char unit[4];
        isBigEndian ? qToBigEndian<quint32>(character, unit) : qToLittleEndian<quint32>(character, unit);
        bytes.append(unit, 4);
    }
    return bytes;
}

const QString mark = u"\uFEFF"_qs;

TEST(JsonReader, recognisesTheEncodingOfADocument)
{
    const QString document = u"[\"é😀\"]"_qs;
    EXPECT_EQ(reading(document.toUtf8()), document);
    EXPECT_EQ(reading("\xEF\xBB\xBF" + document.toUtf8()), document);
    for (const bool isBigEndian : {false, true}) {
        EXPECT_EQ(reading(utf16(document, isBigEndian)), document);
        EXPECT_EQ(reading(utf16(mark + document, isBigEndian)), document);
    }
    EXPECT_EQ(reading(utf32(document, true)), document);
    EXPECT_EQ(reading(utf32(mark + document, true)), document);
    EXPECT_EQ(reading(utf32(mark + document, false)), "4864");
    EXPECT_EQ(reading(utf16("1", true)), "number");
    EXPECT_EQ(reading(utf16("1", false)), "number");
}

TEST(JsonReader, refusesWideEncodingsThatAreNotWellFormed)
{
    EXPECT_EQ(reading(utf16("[]", true) + ' '), "4864");
    EXPECT_EQ(reading(utf16(u"[\""_qs + QChar(0xD83D) + "\"]", false)), "4864");
    EXPECT_EQ(reading(utf32("[]", true) + ' '), "4864");
    EXPECT_EQ(reading(utf32("[\"", true) + QByteArray("\0\0\xD8\x00", 4) + utf32("\"]", true)), "4864");
    EXPECT_EQ(reading(utf32("[\"", true) + QByteArray("\0\x11\0\0", 4) + utf32("\"]", true)), "4864");
}

} // namespace
