#pragma once

#include <QDateTime>
#include <QString>

namespace sorvanta {

/// The name of a recording, without an extension: `prefix`, the local time as "yyyy-MM-dd_HH-mm", "_" and the first
/// six characters of a new UUID in lower case.
QString newDatedName(const QString &prefix, const QDateTime &time = QDateTime::currentDateTime());

/// Whether something lies at `path`; a symbolic link that leads nowhere counts too.
bool isNameTaken(const QString &path);

/// A path in `folder` whose name is not taken: "name.extension", or else "name-2.extension", "name-3.extension" and
/// so on. Without an extension the point is left out. Nothing is created.
QString freePath(const QString &folder, const QString &name, const QString &extension);

} // namespace sorvanta
