#include "platform/byte_count_text.h"

#include "support/printing.h"

#include <gtest/gtest.h>

#include <limits>

using namespace sorvanta;

namespace {

struct Row {
    qint64 bytes;
    const char *text;
};

void PrintTo(const Row &row, std::ostream *out)
{
    *out << row.bytes;
}

class ByteCountText : public testing::TestWithParam<Row> { };

TEST_P(ByteCountText, isTheFigureOfTheTable)
{
    EXPECT_EQ(byteCountText(GetParam().bytes), QString::fromLatin1(GetParam().text));
}

// Ties whose even digit is also the one away from zero are in; the others nobody should rely on.
INSTANTIATE_TEST_SUITE_P(
    Figures, ByteCountText,
    testing::Values(Row{0, "Zero KB"}, Row{1, "0 MB"}, Row{999, "0 MB"}, Row{49'999, "0 MB"}, Row{50'001, "0.1 MB"},
                    Row{94'999, "0.1 MB"}, Row{100'000, "0.1 MB"}, Row{499'999, "0.5 MB"}, Row{500'000, "0.5 MB"},
                    Row{949'999, "0.9 MB"}, Row{950'000, "1 MB"}, Row{1'000'000, "1 MB"}, Row{1'234'567, "1.2 MB"},
                    Row{77'691'713, "77.7 MB"}, Row{147'951'465, "148 MB"}, Row{999'499'999, "999.5 MB"},
                    Row{999'949'999, "999.9 MB"}, Row{999'950'000, "1 GB"}, Row{1'000'000'000, "1 GB"},
                    Row{1'050'000'001, "1.05 GB"}, Row{1'624'555'275, "1.62 GB"}, Row{3'095'033'483, "3.1 GB"},
                    Row{12'345'678'901, "12.35 GB"}, Row{1'234'567'890'123, "1,234.57 GB"}, Row{-1, "-0 MB"},
                    Row{-1'500'000, "-1.5 MB"}, Row{std::numeric_limits<qint64>::max(), "9,223,372,036.85 GB"},
                    Row{std::numeric_limits<qint64>::min(), "-9,223,372,036.85 GB"}));

} // namespace
