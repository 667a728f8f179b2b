#include "platform/number_text.h"

#include "platform/unicode_text.h"

#include <algorithm>
#include <cmath>

namespace sorvanta {

std::optional<double> parseDouble(QStringView text)
{
    const auto isForeign = [](QChar unit) { return unit.unicode() >= 0x80 || isWhitespaceOrNewline(unit.unicode()); };
    if (std::any_of(text.begin(), text.end(), isForeign))
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
