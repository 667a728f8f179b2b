#pragma once

#include <QString>

namespace sorvanta {

/// The address of the user's session bus. Empty where nothing says that a bus runs: asking for one all the same would
/// start one, and wait for it.
QString sessionBusAddress();

} // namespace sorvanta
