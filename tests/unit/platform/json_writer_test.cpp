#include "platform/json_writer.h"

#include "support/printing.h"

#include <QStringList>

#include <gtest/gtest.h>

#include <random>

using namespace sorvanta;

namespace {

using Layout = JsonWriter::Layout;
using Slashes = JsonWriter::Slashes;

QByteArray stringDocument(QStringView text, Slashes slashes = Slashes::Plain)
{
    JsonWriter writer(Layout::Compact, slashes);
    writer.string(text);
    return writer.takeBytes();
}

QByteArray sample(Layout layout, Slashes slashes)
{
    JsonWriter writer(layout, slashes);
    writer.beginArray();
    writer.beginObject();
    writer.key(u"path");
    writer.string(u"/a/b");
    writer.key(u"tags");
    writer.beginObject();
    writer.endObject();
    writer.key(u"text");
    writer.string(u"");
    writer.key(u"words");
    writer.beginArray();
    writer.endArray();
    writer.endObject();
    writer.beginObject();
    writer.key(u"good");
    writer.boolean(true);
    writer.key(u"words");
    writer.beginArray();
    writer.string(u"x");
    writer.boolean(false);
    writer.endArray();
    writer.endObject();
    writer.endArray();
    return writer.takeBytes();
}

TEST(JsonWriter, putsEachMemberAndElementOnALineOfItsOwn)
{
    EXPECT_EQ(sample(Layout::Pretty, Slashes::Escaped), R"([
  {
    "path" : "\/a\/b",
    "tags" : {

    },
    "text" : "",
    "words" : [

    ]
  },
  {
    "good" : true,
    "words" : [
      "x",
      false
    ]
  }
])");
}

TEST(JsonWriter, writesNoBlanksAtAllWhenCompact)
{
    EXPECT_EQ(sample(Layout::Compact, Slashes::Plain),
              R"([{"path":"/a/b","tags":{},"text":"","words":[]},{"good":true,"words":["x",false]}])");
}

TEST(JsonWriter, putsAnEmptyLineBetweenTheBracketsOfNothing)
{
    JsonWriter array(Layout::Pretty, Slashes::Plain);
    array.beginArray();
    array.endArray();
    EXPECT_EQ(array.takeBytes(), "[\n\n]");
    JsonWriter object(Layout::Pretty, Slashes::Plain);
    object.beginObject();
    object.endObject();
    EXPECT_EQ(object.takeBytes(), "{\n\n}");
}

TEST(JsonWriter, escapesQuotesBackslashesAndControlCharactersOnly)
{
    QString controls;
    for (char16_t unit = 0; unit < 0x20; ++unit)
        controls += QChar(unit);
    EXPECT_EQ(stringDocument(controls),
              R"("\u0000\u0001\u0002\u0003\u0004\u0005\u0006\u0007\b\t\n\u000b\f\r\u000e\u000f)"
              R"(\u0010\u0011\u0012\u0013\u0014\u0015\u0016\u0017\u0018\u0019\u001a\u001b\u001c\u001d\u001e\u001f")");
    EXPECT_EQ(stringDocument(u"\"\\"), R"("\"\\")");
    const QString raw = u"\u007F\u0080\u009F\u2028\u2029\uFEFF\uFFFFé🎙'<>& ~"_qs;
    EXPECT_EQ(stringDocument(raw), '"' + raw.toUtf8() + '"');
}

TEST(JsonWriter, givesItsTextAwayInPieces)
{
    JsonWriter writer(Layout::Compact, Slashes::Plain);
    QByteArray document;
    const auto sink = [&document](QByteArrayView bytes) { document += bytes.toByteArray() + '|'; };
    writer.beginArray();
    writer.string(u"a");
    EXPECT_EQ(writer.size(), 4);
    writer.drain(sink);
    EXPECT_EQ(writer.size(), 0);
    writer.string(u"b");
    writer.drain(sink);
    writer.endArray();
    EXPECT_EQ(document + writer.takeBytes(), R"(["a"|,"b"|])");
}

TEST(JsonWriter, findsWhatIsToBeEscapedAtAnyPlace)
{
    for (int place = 0; place < 24; ++place) {
        const QString before(place, 'a');
        for (const auto &[unit, escaped] : {std::pair<char16_t, const char *>{u'"', "\\\""},
                                            {u'\\', "\\\\"},
                                            {u'\n', "\\n"},
                                            {u'\u001f', "\\u001f"},
                                            {u'/', "\\/"},
                                            {u'\u007f', "\u007f"},
                                            {u' ', " "},
                                            {u'é', "é"},
                                            {u'\u0141', "\u0141"}}) {
            EXPECT_EQ(stringDocument(before + QChar(unit) + "tail of the text", Slashes::Escaped),
                      '"' + before.toUtf8() + escaped + "tail of the text\"");
        }
    }
}

TEST(JsonWriter, escapesSlashesIfAsked)
{
    EXPECT_EQ(stringDocument(u"/a/b", Slashes::Escaped), R"("\/a\/b")");
    EXPECT_EQ(stringDocument(u"/a/b", Slashes::Plain), R"("/a/b")");
}

TEST(JsonWriter, escapesKeysLikeStrings)
{
    JsonWriter writer(Layout::Compact, Slashes::Escaped);
    writer.beginObject();
    writer.key(u"a/\"é\n");
    writer.string(u"");
    writer.endObject();
    EXPECT_EQ(writer.takeBytes(), "{\"a\\/\\\"é\\n\":\"\"}");
}

TEST(JsonWriter, writesEachCodePointAsItsUtf8)
{
    for (char32_t character = 0x80; character <= 0x10FFFF; character += character < 0x11000 ? 1 : 97) {
        if (QChar::isSurrogate(character))
            continue;
        const QString text = QString::fromUcs4(&character, 1);
        ASSERT_EQ(stringDocument(text), '"' + text.toUtf8() + '"') << quint32(character);
    }
}

TEST(JsonWriter, writesMixedScriptsLikeTheirSingleCharacters)
{
    const QStringList pieces{"a",  "plain text", "ü",  "ß",  "Ω", "会", "議は三時に始まります",
                             "。", "🎙",       "\"", "\n", "/"};
    std::mt19937 random(20);
    for (int round = 0; round < 2000; ++round) {
        QString text;
        QByteArray expected;
        for (int i = 0; i < 12; ++i) {
            const QString &piece = pieces[static_cast<qsizetype>(random() % static_cast<unsigned>(pieces.size()))];
            text += piece;
            expected += piece == "\n" ? "\\n" : piece == "\"" ? "\\\"" : piece.toUtf8();
        }
        ASSERT_EQ(stringDocument(text), '"' + expected + '"');
    }
}

TEST(JsonWriter, writesTheReplacementCharacterForHalfOfASurrogatePair)
{
    const QChar high(0xD83C);
    const QChar low(0xDF99);
    EXPECT_EQ(stringDocument(QString(high)), "\"\uFFFD\"");
    EXPECT_EQ(stringDocument(QString(low)), "\"\uFFFD\"");
    EXPECT_EQ(stringDocument(QString(low) + high), "\"\uFFFD\uFFFD\"");
    EXPECT_EQ(stringDocument(QString(high) + 'x'), "\"\uFFFDx\"");
    EXPECT_EQ(stringDocument(QString(high) + high + low), "\"\uFFFD🎙\"");
}

TEST(JsonWriter, writesLongTextsWholeWhateverTheyHold)
{
    const QString emoji = u"x"_qs + u"🎙"_qs.repeated(10'000);
    EXPECT_EQ(stringDocument(emoji), '"' + emoji.toUtf8() + '"');
    EXPECT_EQ(stringDocument(QString(20'000, QChar(1))), '"' + QByteArray("\\u0001").repeated(20'000) + '"');
}

} // namespace
