#pragma once

#include <QString>
#include <QStringList>

namespace sorvanta {

/// The resource that draws `symbol`, a symbol name as the screens use it ("arrow.up.doc") or one of the look's own
/// ("mark", "search", "check", "picker", "submenu"); an empty string when there is no such symbol.
QString symbolFile(const QString &symbol);

/// Every name that symbolFile knows.
QStringList symbolNames();

} // namespace sorvanta
