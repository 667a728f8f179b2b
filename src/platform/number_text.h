#pragma once

#include <QStringView>

#include <optional>

namespace sorvanta {

/// The number that the whole of `text` spells ("1", "-2.5", "1e3"), or none. Unlike Qt's conversion it takes no white
/// space at the ends; what is no ASCII is no number, and one too large for a double is none.
std::optional<double> parseDouble(QStringView text);

/// `seconds` rounded to whole ones, ties away from zero; what is negative or no number counts as 0.
qint64 roundedSeconds(double seconds);

} // namespace sorvanta
