#pragma once

#include <QByteArray>

namespace sorvanta {

/// A JSON document as UTF-8 without a byte order mark. It may come as UTF-8 with a mark or without (whose bytes are
/// not looked at), as UTF-16 of either byte order with a mark or without, or as UTF-32 with the high byte first.
/// @throws Error with the code 4864 if the UTF-16 or UTF-32 is not well-formed
QByteArray utf8JsonDocument(const QByteArray &document);

} // namespace sorvanta
