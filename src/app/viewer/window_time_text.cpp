#include "app/viewer/window_time_text.h"

#include <cmath>

namespace sorvanta {

QString windowTimeText(double seconds)
{
    if (!std::isfinite(seconds) || seconds < 0.0)
        return QStringLiteral("--:--");
    const double whole = std::round(seconds);
    const double minutes = std::floor(whole / 60.0);
    return QStringLiteral("%1:%2").arg(QString::number(minutes, 'f', 0).rightJustified(2, u'0'),
                                       QString::number(whole - minutes * 60.0, 'f', 0).rightJustified(2, u'0'));
}

} // namespace sorvanta
