#pragma once

#include <QString>

namespace sorvanta {

/// The line at the foot of the sidebar: "Version 1.0 (1)", "Version 1.0" or "Version 1" where one of the two is empty,
/// "Version" where both are.
QString versionText(const QString &shortVersion, const QString &buildVersion);

} // namespace sorvanta
