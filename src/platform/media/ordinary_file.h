#pragma once

#include <QString>

namespace sorvanta {

/// Gives a finished M4A file that was readable while it was written the form of any other: one table of contents in
/// place of one a second, so that every player knows its length and where its seconds stand. The sound is copied as it
/// is. Whoever looks at `path` finds the old form or the new one, whole, also after a loss of power; what has the file
/// open keeps the old one.
/// Blocking; any thread. @throws Error after which the file is as it was
void makeOrdinary(const QString &path);

} // namespace sorvanta
