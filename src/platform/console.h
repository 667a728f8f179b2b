#pragma once

#include <QByteArrayView>

namespace sorvanta {

/// Writes on the application's standard output, from any thread, one after the other. Where nobody reads it, after a
/// second the rest is dropped: a console that is stuck must not stop the work that prints.
void printOnConsole(QByteArrayView bytes);

} // namespace sorvanta
