#include "platform/number_text.h"

#include <gtest/gtest.h>

#include <QString>

#include <cmath>
#include <limits>

using namespace sorvanta;

namespace {

TEST(ParseDouble, takesNumbersInAsciiOnly)
{
    EXPECT_EQ(parseDouble(u"1"), 1.0);
    EXPECT_EQ(parseDouble(u"-2.5"), -2.5);
    EXPECT_EQ(parseDouble(u"1e3"), 1000.0);
    EXPECT_EQ(parseDouble(u".5"), 0.5);
    for (const QStringView text : {u"", u" 1", u"1 ", u"1 2", u"x", u"1,5", u"\u22121", u"\u0661", u"1e400"})
        EXPECT_FALSE(parseDouble(text)) << text.toString().toStdString();
}

TEST(RoundedSeconds, goAwayFromZeroAndNeverBelowIt)
{
    EXPECT_EQ(roundedSeconds(0.5), 1);
    EXPECT_EQ(roundedSeconds(1.49), 1);
    EXPECT_EQ(roundedSeconds(2.5), 3);
    EXPECT_EQ(roundedSeconds(-7), 0);
    EXPECT_EQ(roundedSeconds(std::nan("")), 0);
    EXPECT_EQ(roundedSeconds(std::numeric_limits<double>::infinity()), 1'000'000'000'000'000);
}

} // namespace
