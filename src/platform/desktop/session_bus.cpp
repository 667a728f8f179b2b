#include "platform/desktop/session_bus.h"

#include <QFileInfo>

namespace sorvanta {

QString sessionBusAddress()
{
    const QString address = qEnvironmentVariable("DBUS_SESSION_BUS_ADDRESS");
    if (!address.isEmpty())
        return address;
    const QString folder = qEnvironmentVariable("XDG_RUNTIME_DIR");
    const QString socket = folder + QStringLiteral("/bus");
    return !folder.isEmpty() && QFileInfo::exists(socket) ? QStringLiteral("unix:path=") + socket : QString();
}

} // namespace sorvanta
