#include "platform/utf8_stream.h"

#include "platform/unicode_text.h"
#include "support/printing.h"

#include <gtest/gtest.h>

#include <random>

using namespace sorvanta;

namespace {

TEST(Utf8Stream, returnsAChunkThatIsTextAtOnce)
{
    Utf8Stream stream;
    EXPECT_EQ(stream.append("é"), u"é"_qs);
    EXPECT_EQ(stream.append("b"), u"b"_qs);
    EXPECT_EQ(stream.repairedRest(), QString());
    EXPECT_EQ(stream.repairedText(), u"éb"_qs);
}

TEST(Utf8Stream, holdsACutCharacterBackUntilAChunkIsTextAgain)
{
    Utf8Stream stream;
    EXPECT_FALSE(stream.append("a\xC3"));
    EXPECT_EQ(stream.repairedRest(), u"a\uFFFD"_qs);
    EXPECT_FALSE(stream.append("\xA9"
                               "b"))
        << "no text by itself";
    EXPECT_EQ(stream.append("c"), u"aébc"_qs);
}

TEST(Utf8Stream, returnsNothingMoreBehindAFault)
{
    Utf8Stream stream;
    EXPECT_FALSE(stream.append("\xFF"));
    EXPECT_FALSE(stream.append("a"));
    EXPECT_FALSE(stream.append("b"));
    EXPECT_EQ(stream.repairedText(), u"\uFFFDab"_qs);
}

TEST(Utf8Stream, makesTheSameTextOfAnyChunks)
{
    const QByteArray valid = QString(u"plain, é, 한국어, 🙂, \uFEFF"_qs).repeated(20).toUtf8();
    for (unsigned seed = 0; seed < 300; ++seed) {
        std::mt19937 random(seed);
        QByteArray bytes = valid.left(static_cast<qsizetype>(random() % static_cast<unsigned>(valid.size())));
        if (seed % 3 == 0 && !bytes.isEmpty())
            bytes[static_cast<qsizetype>(random() % static_cast<unsigned>(bytes.size()))] = static_cast<char>(random());
        Utf8Stream stream;
        QString returned;
        for (qsizetype from = 0; from < bytes.size();) {
            const QByteArray chunk = bytes.mid(from, static_cast<qsizetype>(1 + random() % 9));
            from += chunk.size();
            const auto piece = stream.append(chunk);
            const bool isText = decodeUtf8(chunk) && decodeUtf8(QByteArrayView(bytes).first(from));
            ASSERT_EQ(piece.has_value(), isText) << "seed " << seed;
            returned += piece.value_or(QString());
            if (piece) {
                ASSERT_EQ(returned, decodeUtf8(QByteArrayView(bytes).first(from)));
            }
        }
        ASSERT_EQ(returned + stream.repairedRest(), decodeUtf8WithRepair(bytes)) << "seed " << seed;
        ASSERT_EQ(stream.repairedText(), decodeUtf8WithRepair(bytes));
    }
}

} // namespace
