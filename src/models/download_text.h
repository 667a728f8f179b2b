#pragma once

#include "models/model_status.h"

#include <QString>

namespace sorvanta {

/// "Downloading 42%"; the number is cut, not rounded, and 0 if the size is not known.
QString percentLine(const DownloadState &state);

/// "1.2 GB / 3.1 GB • ~12m 5s left", without the end if there is no estimate; "1.2 GB downloaded" if the size is not
/// known.
QString byteLine(const DownloadState &state);

/// "45s", and from a minute on "12m 5s", of `seconds` rounded to whole ones.
QString timeText(double seconds);

} // namespace sorvanta
