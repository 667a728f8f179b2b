#include "platform/iso8601.h"

#include "platform/unicode_text.h"

#include <chrono>
#include <cmath>

namespace sorvanta {

namespace {

using std::chrono::days;
using std::chrono::hours;
using std::chrono::milliseconds;
using std::chrono::minutes;
using std::chrono::seconds;
using std::chrono::sys_days;

void appendNumber(QString &text, unsigned number, int width)
{
    text += QString::number(number).rightJustified(width, u'0');
}

/// Reads a text from its start; what has been read is gone.
class Scanner {
public:
    explicit Scanner(QStringView text)
        : m_text(text)
    {
    }

    void skipBlanks()
    {
        while (!m_text.isEmpty() && isWhitespace(m_text.front().unicode()))
            m_text = m_text.sliced(1);
    }

    bool read(QStringView expected)
    {
        if (!m_text.startsWith(expected))
            return false;
        m_text = m_text.sliced(expected.size());
        return true;
    }

    /// A number of at least `fewest` and at most `most` digits.
    std::optional<int> readNumber(int fewest, int most)
    {
        int value = 0;
        int count = 0;
        for (; count < most && startsWithDigit(); ++count)
            value = 10 * value + readDigit();
        return count >= fewest ? std::optional(value) : std::nullopt;
    }

    /// The digits behind a decimal point, as thousandths.
    std::optional<int> readThousandths()
    {
        if (!startsWithDigit())
            return std::nullopt;
        int value = 0;
        for (int scale = 100; startsWithDigit(); scale /= 10)
            value += scale * readDigit();
        return value;
    }

private:
    bool startsWithDigit() const { return !m_text.isEmpty() && m_text.front() >= u'0' && m_text.front() <= u'9'; }

    int readDigit()
    {
        const int digit = m_text.front().unicode() - u'0';
        m_text = m_text.sliced(1);
        return digit;
    }

    QStringView m_text;
};

bool isWithin(std::optional<int> value, int least, int most)
{
    return value && *value >= least && *value <= most;
}

/// A day that the month does not have counts on into the next month.
std::optional<milliseconds> readDate(Scanner &scanner)
{
    const std::optional<int> year = scanner.readNumber(4, 4);
    if (!year || !scanner.read(u"-"))
        return std::nullopt;
    const std::optional<int> month = scanner.readNumber(1, 2);
    if (!isWithin(month, 1, 12) || !scanner.read(u"-"))
        return std::nullopt;
    const std::optional<int> day = scanner.readNumber(1, 2);
    if (!isWithin(day, 1, 31))
        return std::nullopt;
    const sys_days first = std::chrono::year(*year) / *month / 1;
    return (first + days(*day - 1)).time_since_epoch();
}

/// Hour 24 is the start of the next day.
std::optional<milliseconds> readTime(Scanner &scanner)
{
    const std::optional<int> hour = scanner.readNumber(1, 2);
    if (!isWithin(hour, 0, 24) || !scanner.read(u":"))
        return std::nullopt;
    const std::optional<int> minute = scanner.readNumber(1, 2);
    if (!isWithin(minute, 0, 59) || !scanner.read(u":"))
        return std::nullopt;
    const std::optional<int> second = scanner.readNumber(1, 2);
    if (!isWithin(second, 0, 59) || !scanner.read(u"."))
        return std::nullopt;
    const std::optional<int> fraction = scanner.readThousandths();
    if (!fraction)
        return std::nullopt;
    return hours(*hour) + minutes(*minute) + seconds(*second) + milliseconds(*fraction);
}

std::optional<minutes> readZone(Scanner &scanner)
{
    scanner.skipBlanks();
    if (scanner.read(u"Z") || scanner.read(u"z") || scanner.read(u"GMT"))
        return minutes(0);
    const bool isEast = scanner.read(u"+");
    if (!isEast && !scanner.read(u"-"))
        return std::nullopt;
    const std::optional<int> hour = scanner.readNumber(2, 2);
    if (!isWithin(hour, 0, 23))
        return std::nullopt;
    scanner.read(u":");
    const std::optional<int> minute = scanner.readNumber(2, 2);
    const minutes offset = hours(*hour) + minutes(isWithin(minute, 0, 59) ? *minute : 0);
    return isEast ? offset : -offset;
}

} // namespace

QString iso8601Text(double secondsSince1970)
{
    const milliseconds moment(std::llround(std::floor(secondsSince1970 * 1000 + 0.5)));
    const auto day = std::chrono::floor<days>(moment);
    const std::chrono::year_month_day date{sys_days(day)};
    const std::chrono::hh_mm_ss time(moment - day);
    QString text;
    text.reserve(24);
    appendNumber(text, static_cast<unsigned>(static_cast<int>(date.year())), 4);
    text += u'-';
    appendNumber(text, static_cast<unsigned>(date.month()), 2);
    text += u'-';
    appendNumber(text, static_cast<unsigned>(date.day()), 2);
    text += u'T';
    appendNumber(text, static_cast<unsigned>(time.hours().count()), 2);
    text += u':';
    appendNumber(text, static_cast<unsigned>(time.minutes().count()), 2);
    text += u':';
    appendNumber(text, static_cast<unsigned>(time.seconds().count()), 2);
    text += u'.';
    appendNumber(text, static_cast<unsigned>(time.subseconds().count()), 3);
    text += u'Z';
    return text;
}

std::optional<qint64> iso8601Milliseconds(QStringView text)
{
    Scanner scanner(text);
    scanner.skipBlanks();
    const std::optional<milliseconds> date = readDate(scanner);
    if (!date || !scanner.read(u"T"))
        return std::nullopt;
    const std::optional<milliseconds> time = readTime(scanner);
    if (!time)
        return std::nullopt;
    const std::optional<minutes> zone = readZone(scanner);
    if (!zone)
        return std::nullopt;
    return (*date + *time - *zone).count();
}

} // namespace sorvanta
