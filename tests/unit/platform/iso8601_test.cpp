#include "platform/iso8601.h"

#include "support/printing.h"

#include <gtest/gtest.h>

using namespace sorvanta;

namespace {

struct FormatCase {
    double seconds;
    QString text;
};

class Iso8601Formatting : public testing::TestWithParam<FormatCase> { };

TEST_P(Iso8601Formatting, roundsToTheNearestMillisecond)
{
    EXPECT_EQ(iso8601Text(GetParam().seconds), GetParam().text);
}

INSTANTIATE_TEST_SUITE_P(
    Table, Iso8601Formatting,
    testing::Values(FormatCase{0, "1970-01-01T00:00:00.000Z"}, FormatCase{0.1234, "1970-01-01T00:00:00.123Z"},
                    FormatCase{0.1239, "1970-01-01T00:00:00.124Z"}, FormatCase{0.9994, "1970-01-01T00:00:00.999Z"},
                    FormatCase{0.9996, "1970-01-01T00:00:01.000Z"}, FormatCase{-0.5, "1969-12-31T23:59:59.500Z"},
                    FormatCase{1769999999.9999, "2026-02-02T02:40:00.000Z"},
                    FormatCase{1770000000.123, "2026-02-02T02:40:00.123Z"},
                    FormatCase{951782400, "2000-02-29T00:00:00.000Z"},
                    FormatCase{-62135596800, "0001-01-01T00:00:00.000Z"}));

TEST(Iso8601, givesEachMillisecondBackAsItWas)
{
    constexpr qint64 start = 1'770'000'000'000;
    for (qint64 moment = start; moment < start + 1000; ++moment) {
        const QString text = iso8601Text(static_cast<double>(moment) / 1000);
        EXPECT_EQ(iso8601Milliseconds(text), moment);
        EXPECT_EQ(text.mid(20, 3), QString::number(moment % 1000).rightJustified(3, '0'));
    }
}

struct ParseCase {
    QString text;
    /// The same moment as it is written; empty if the text tells none.
    QString moment;
};

class Iso8601Parsing : public testing::TestWithParam<ParseCase> { };

TEST_P(Iso8601Parsing, takesExactlyWhatTellsAMoment)
{
    const std::optional<qint64> moment = iso8601Milliseconds(GetParam().text);
    const QString text = moment ? iso8601Text(static_cast<double>(*moment) / 1000) : QString();
    EXPECT_EQ(text, GetParam().moment) << GetParam().text.toStdString();
}

const QString moment = "2026-02-02T01:02:03.123Z";

INSTANTIATE_TEST_SUITE_P(Fractions, Iso8601Parsing,
                         testing::Values(ParseCase{"2026-02-02T01:02:03.123Z", moment},
                                         ParseCase{"2026-02-02T01:02:03.1Z", "2026-02-02T01:02:03.100Z"},
                                         ParseCase{"2026-02-02T01:02:03.12Z", "2026-02-02T01:02:03.120Z"},
                                         ParseCase{"2026-02-02T01:02:03.1239Z", moment},
                                         ParseCase{"2026-02-02T01:02:03.9999Z", "2026-02-02T01:02:03.999Z"},
                                         ParseCase{"2026-02-02T01:02:03.123456789Z", moment},
                                         ParseCase{"2026-02-02T01:02:03Z", ""}, ParseCase{"2026-02-02T01:02:03.Z", ""},
                                         ParseCase{"2026-02-02T01:02:03,123Z", ""}));

INSTANTIATE_TEST_SUITE_P(
    Zones, Iso8601Parsing,
    testing::Values(ParseCase{"2026-02-02T03:02:03.123+02:00", moment},
                    ParseCase{"2026-02-02T03:02:03.123+0200", moment}, ParseCase{"2026-02-02T03:02:03.123+02", moment},
                    ParseCase{"2026-02-01T23:02:03.123-02:00", moment},
                    ParseCase{"2026-02-02T01:02:03.123-00:00", moment},
                    ParseCase{"2026-02-02T15:32:03.123+14:30", moment},
                    ParseCase{"2026-02-02T03:02:03.123 +0200", moment}, ParseCase{"2026-02-02T01:02:03.123z", moment},
                    ParseCase{"2026-02-02T01:02:03.123GMT", moment}, ParseCase{"2026-02-02T01:02:03.123", ""},
                    ParseCase{"2026-02-02T01:02:03.123+", ""}, ParseCase{"2026-02-02T01:02:03.123X", ""}));

INSTANTIATE_TEST_SUITE_P(
    Forms, Iso8601Parsing,
    testing::Values(ParseCase{"2026-02-02t01:02:03.123Z", ""}, ParseCase{"2026-02-02 01:02:03.123Z", ""},
                    ParseCase{"20260202T010203.123Z", ""}, ParseCase{"+2026-02-02T01:02:03.123Z", ""},
                    ParseCase{"  2026-02-02T01:02:03.123Z", moment}, ParseCase{"2026-02-02T01:02:03.123Z  ", moment},
                    ParseCase{"2026-02-02T01:02:03.123Z\n", moment},
                    ParseCase{"2026-02-02T01:02:03.123Zgarbage", moment}, ParseCase{"2026-2-2T1:2:3.123Z", moment},
                    ParseCase{"", ""}, ParseCase{"not a date", ""}, ParseCase{"2026-02-02", ""}));

INSTANTIATE_TEST_SUITE_P(Ranges, Iso8601Parsing,
                         testing::Values(ParseCase{"2026-02-30T01:02:03.123Z", "2026-03-02T01:02:03.123Z"},
                                         ParseCase{"2026-02-02T24:00:00.000Z", "2026-02-03T00:00:00.000Z"},
                                         ParseCase{"2026-12-31T23:59:59.999Z", "2026-12-31T23:59:59.999Z"},
                                         ParseCase{"2026-13-02T01:02:03.123Z", ""},
                                         ParseCase{"2026-02-02T25:02:03.123Z", ""},
                                         ParseCase{"2026-02-02T01:60:03.123Z", ""},
                                         ParseCase{"2026-02-02T01:02:60.123Z", ""}));

} // namespace
