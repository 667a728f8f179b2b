#include "platform/number_text.h"

#include "platform/unicode_text.h"

#include <algorithm>
#include <cmath>

namespace sorvanta {

std::optional<double> parseDouble(QStringView text)
{
    if (text.isEmpty() || isWhitespaceOrNewline(text.front().unicode()) || isWhitespaceOrNewline(text.back().unicode()))
        return std::nullopt;
    bool isNumber = false;
    const double number = text.toDouble(&isNumber);
    return isNumber ? std::optional(number) : std::nullopt;
}

qint64 roundedSeconds(double seconds)
{
    if (!(seconds > 0.0))
        return 0;
    constexpr double mostSeconds = 1e15; // past any date, and exact in both types
    return std::llround(std::min(seconds, mostSeconds));
}

} // namespace sorvanta
