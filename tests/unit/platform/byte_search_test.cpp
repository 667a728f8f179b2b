#include "platform/byte_search.h"

#include "support/printing.h"

#include <gtest/gtest.h>

#include <QByteArray>

#include <random>

namespace sorvanta {

namespace {

TEST(ByteSearch, findsAWantedTextAtEachPlaceOfALongOne)
{
    for (const QByteArray &wanted : {QByteArray("x"), QByteArray("xy"), QByteArray("xyz"), QByteArray("лодка"),
                                     QByteArray("x") + QByteArray(100, 'a') + "y"}) {
        for (qsizetype place = 0; place < 200; ++place) {
            const QByteArray text = QByteArray(place, 'a') + wanted + QByteArray(150, 'a');
            ASSERT_EQ(indexOfBytes(text, wanted, 0), place) << wanted.toStdString();
            ASSERT_EQ(indexOfBytes(text, wanted, place), place) << wanted.toStdString();
            ASSERT_EQ(indexOfBytes(text, wanted, place + 1), -1) << wanted.toStdString();
            ASSERT_EQ(indexOfBytes(text.first(place + wanted.size()), wanted, 0), place) << "at the end";
            ASSERT_EQ(indexOfBytes(text.first(place + wanted.size() - 1), wanted, 0), -1) << "beyond the end";
        }
    }
}

TEST(ByteSearch, findsNothingInLessThanIsWanted)
{
    EXPECT_EQ(indexOfBytes({}, "a", 0), -1);
    EXPECT_EQ(indexOfBytes({}, "ab", 0), -1);
    EXPECT_EQ(indexOfBytes("abc", "abcd", 0), -1);
    EXPECT_EQ(indexOfBytes("abc", "c", 3), -1);
}

TEST(ByteSearch, goesOnBehindWhatOnlyBeginsAndEndsAlike)
{
    const QByteArray alike = "ab--yz ab++yz ";
    EXPECT_EQ(indexOfBytes(alike.repeated(20) + "ab+-yz", "ab+-yz", 0), 280);
    EXPECT_EQ(indexOfBytes(alike.repeated(20), "ab+-yz", 0), -1);
}

/// Few different bytes, among them those of the highest values, so that there is much that begins alike.
TEST(ByteSearch, findsWhatALookAtEachPlaceFinds)
{
    std::mt19937 random(7);
    const auto upTo = [&](int bound) { return static_cast<qsizetype>(random() % static_cast<unsigned>(bound)); };
    const QByteArray letters = "ab\xd0\xff";
    const auto made = [&](qsizetype size) {
        QByteArray text;
        while (text.size() < size)
            text += letters[upTo(4)];
        return text;
    };
    for (int i = 0; i < 20000; ++i) {
        const QByteArray text = made(upTo(400));
        const QByteArray wanted = made(1 + upTo(8));
        const qsizetype from = upTo(static_cast<int>(text.size()) + 1);
        ASSERT_EQ(indexOfBytes(text, wanted, from), text.indexOf(wanted, from))
            << text.toHex().toStdString() << ' ' << wanted.toHex().toStdString();
    }
}

} // namespace

} // namespace sorvanta
