#pragma once

#include <QString>

namespace sorvanta {

/// Shows the folder of the file at `path`, an absolute path, in the desktop's file manager with the file selected.
/// Where there is no file manager that can select, the folder is opened. Returns at once; that nothing could be shown
/// is not told. Main thread only.
void revealInFileManager(const QString &path);

/// The same over the bus at `busAddress`; an empty address means that there is no bus.
void revealInFileManager(const QString &path, const QString &busAddress);

} // namespace sorvanta
