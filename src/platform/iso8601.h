#pragma once

#include <QString>

#include <optional>

namespace sorvanta {

/// A moment as `2026-02-02T02:40:00.123Z`, rounded to the nearest millisecond.
/// @param secondsSince1970 a moment in the years 0 to 9999
QString iso8601Text(double secondsSince1970);

/// The moment that a text tells, in milliseconds since 1970; none if it tells none. A fraction of the second and a
/// zone are required (`Z`, `GMT`, `+02:00`, `+0200`, `+02`). Digits behind the third of the fraction do not count,
/// nor do blanks before the date or anything behind the zone; fields may lack their leading zero.
std::optional<qint64> iso8601Milliseconds(QStringView text);

} // namespace sorvanta
