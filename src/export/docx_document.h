#pragma once

#include <QByteArray>
#include <QString>

namespace sorvanta {

/// The text as an Office Open XML text document (ISO/IEC 29500, transitional) on US Letter paper. A paragraph whose
/// first strong character is written from right to left is set so. The same text gives the same bytes. Any thread.
/// @throws Error "Export" if the package cannot be made
QByteArray renderDocx(const QString &text);

} // namespace sorvanta
