#pragma once

#include <QString>

#include <optional>

namespace sorvanta {

/// The user's folder for the data of applications (`~/.local/share`), or none if the system names none. Absolute and
/// clean: without a slash at the end.
std::optional<QString> applicationSupportFolder();

/// The folder into which the user's programs download (as a rule `~/Downloads`), or none if the system names none or it
/// is not there.
std::optional<QString> downloadsFolder();

/// The folder for temporary files (what TMPDIR says if files can be made there, or `/tmp`), without a slash at the end.
QString temporaryFolder();

/// Where the application's own resources lie: `lib/sorvanta` beside the `bin` folder of the executable, the same
/// in a build tree and installed.
QString resourceFolder();

/// A new path in the temporary folder: `prefix`, a new UUID in upper case, ".", `extension`. Nothing is created;
/// without an extension the point is left out.
QString newTemporaryPath(const QString &prefix, const QString &extension);

/// The text of a new UUID, 36 characters in upper case without braces.
QString newUuidText();

} // namespace sorvanta
