#include "app/fixed_addresses.h"

#include "platform/build_configuration.h"

namespace sorvanta {

QUrl privacyURL()
{
    return QUrl(buildConfiguration().webSite + QStringLiteral("/sorvanta-mac-os-app-privacy-policy/"));
}

QUrl termsURL()
{
    return QUrl(buildConfiguration().webSite + QStringLiteral("/sorvanta-mac-os-app-terms-of-service/"));
}

} // namespace sorvanta
