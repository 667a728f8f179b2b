#pragma once

#include <QByteArray>

#include <initializer_list>

namespace sorvanta {

/// A file in a zip archive.
struct ZipPart {
    const char *name; ///< UTF-8, with slashes between folders
    QByteArrayView bytes;
};

/// A zip archive of these files in their order, all of one fixed date, so that equal files give equal bytes.
/// @throws Error "Export"
QByteArray zipPackage(std::initializer_list<ZipPart> parts);

} // namespace sorvanta
