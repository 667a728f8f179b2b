#pragma once

#include <QString>

namespace sorvanta {

// A moment for the eye, in the local time zone and in the words of the application, American English. Before AM and PM
// stands U+202F, which keeps them in the line.

/// In the short style: "2/2/26, 2:40 AM".
QString shortDateText(qint64 millisecondsSince1970);

/// In the medium style: "Feb 2, 2026 at 2:40:00 AM".
QString mediumDateText(qint64 millisecondsSince1970);

} // namespace sorvanta
