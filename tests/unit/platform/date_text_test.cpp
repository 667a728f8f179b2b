#include "platform/date_text.h"

#include "support/printing.h"

#include <gtest/gtest.h>

#include <ctime>

namespace sorvanta {

namespace {

/// Lets the local time be that of a zone, as long as it lives.
class LocalZone {
public:
    explicit LocalZone(const char *zone)
        : m_earlier(qgetenv("TZ"))
        , m_wasSet(qEnvironmentVariableIsSet("TZ"))
    {
        qputenv("TZ", zone);
        ::tzset();
    }
    ~LocalZone()
    {
        m_wasSet ? qputenv("TZ", m_earlier) : qunsetenv("TZ");
        ::tzset();
    }
    LocalZone(const LocalZone &) = delete;
    LocalZone &operator=(const LocalZone &) = delete;

private:
    QByteArray m_earlier;
    bool m_wasSet;
};

struct Moment {
    qint64 milliseconds; // since 1970
    const char *zone;
    QString shortText;
    QString mediumText;
};

class DateTexts : public testing::TestWithParam<Moment> { };

TEST_P(DateTexts, areThoseOfTheStyles)
{
    const LocalZone zone(GetParam().zone);
    EXPECT_EQ(shortDateText(GetParam().milliseconds), GetParam().shortText);
    EXPECT_EQ(mediumDateText(GetParam().milliseconds), GetParam().mediumText);
}

INSTANTIATE_TEST_SUITE_P(
    , DateTexts,
    testing::Values(
        Moment{1'770'000'000'000, "UTC", u"2/2/26, 2:40\u202FAM"_qs, u"Feb 2, 2026 at 2:40:00\u202FAM"_qs},
        Moment{1'770'000'000'999, "UTC", u"2/2/26, 2:40\u202FAM"_qs, u"Feb 2, 2026 at 2:40:00\u202FAM"_qs},
        Moment{1'763'143'357'000, "UTC", u"11/14/25, 6:02\u202FPM"_qs, u"Nov 14, 2025 at 6:02:37\u202FPM"_qs},
        Moment{0, "UTC", u"1/1/70, 12:00\u202FAM"_qs, u"Jan 1, 1970 at 12:00:00\u202FAM"_qs},
        Moment{12 * 3'600'000, "UTC", u"1/1/70, 12:00\u202FPM"_qs, u"Jan 1, 1970 at 12:00:00\u202FPM"_qs},
        Moment{-1'000, "UTC", u"12/31/69, 11:59\u202FPM"_qs, u"Dec 31, 1969 at 11:59:59\u202FPM"_qs},
        Moment{978'307'200'000, "UTC", u"1/1/01, 12:00\u202FAM"_qs, u"Jan 1, 2001 at 12:00:00\u202FAM"_qs},
        Moment{1'770'000'000'000, "America/New_York", u"2/1/26, 9:40\u202FPM"_qs, u"Feb 1, 2026 at 9:40:00\u202FPM"_qs},
        Moment{1'783'000'000'000, "Europe/Berlin", u"7/2/26, 3:46\u202FPM"_qs, u"Jul 2, 2026 at 3:46:40\u202FPM"_qs}));

} // namespace

} // namespace sorvanta
