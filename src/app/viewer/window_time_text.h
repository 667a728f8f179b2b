#pragma once

#include <QString>

namespace sorvanta {

/// The clock of the viewer, minutes and seconds of two digits at least: 3725 gives "62:05". A value below zero or not
/// finite gives "--:--".
QString windowTimeText(double seconds);

} // namespace sorvanta
