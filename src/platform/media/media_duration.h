#pragma once

#include <QString>

namespace sorvanta {

/// The length in seconds that the regular file at `path` tells of itself, or that its size lets one reckon. 0 if the
/// length is unknown, or if it is no media file. Blocking; any thread.
double mediaDuration(const QString &path);

} // namespace sorvanta
