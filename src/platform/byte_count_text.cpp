#include "platform/byte_count_text.h"

namespace sorvanta {

namespace {

constexpr quint64 tenthOfMegabyte = 100'000;
constexpr quint64 hundredthOfGigabyte = 10'000'000;

quint64 roundedQuotient(quint64 number, quint64 divisor)
{
    const quint64 whole = number / divisor;
    const quint64 rest = number % divisor;
    const bool goesUp = rest * 2 > divisor || (rest * 2 == divisor && whole % 2 == 1);
    return goesUp ? whole + 1 : whole;
}

QString grouped(quint64 number)
{
    QString digits = QString::number(number);
    for (qsizetype place = digits.size() - 3; place > 0; place -= 3)
        digits.insert(place, u',');
    return digits;
}

/// The text of parts / 10^decimals.
QString decimalText(quint64 parts, int decimals)
{
    for (; decimals > 0 && parts % 10 == 0; --decimals)
        parts /= 10;
    quint64 scale = 1;
    for (int i = 0; i < decimals; ++i)
        scale *= 10;
    QString text = grouped(parts / scale);
    if (decimals > 0)
        text += u'.' + QString::number(parts % scale).rightJustified(decimals, u'0');
    return text;
}

} // namespace

QString byteCountText(qint64 bytes)
{
    if (bytes == 0)
        return u"Zero KB"_qs;
    const quint64 magnitude = bytes < 0 ? -static_cast<quint64>(bytes) : static_cast<quint64>(bytes);
    const QString sign = bytes < 0 ? u"-"_qs : QString();
    const quint64 tenths = roundedQuotient(magnitude, tenthOfMegabyte);
    if (tenths < 10'000)
        return sign + decimalText(tenths, 1) + u" MB"_qs;
    return sign + decimalText(roundedQuotient(magnitude, hundredthOfGigabyte), 2) + u" GB"_qs;
}

} // namespace sorvanta
