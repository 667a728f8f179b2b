#include "app/version_text.h"

namespace sorvanta {

QString versionText(const QString &shortVersion, const QString &buildVersion)
{
    const QString word = QStringLiteral("Version");
    if (!shortVersion.isEmpty() && !buildVersion.isEmpty())
        return word + u' ' + shortVersion + QStringLiteral(" (") + buildVersion + u')';
    if (shortVersion.isEmpty() && buildVersion.isEmpty())
        return word;
    return word + u' ' + shortVersion + buildVersion;
}

} // namespace sorvanta
