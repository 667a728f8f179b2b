#include "platform/desktop/single_instance.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusReply>
#include <QUuid>

#include <chrono>

namespace sorvanta {

namespace {

const QString serviceName = QStringLiteral("invalid.sorvanta.Sorvanta");
const QString objectPath = QStringLiteral("/invalid/sorvanta/Sorvanta");

/// One that is busy for longer hears of it later.
constexpr std::chrono::milliseconds longestWait(2000);

} // namespace

SingleInstance::SingleInstance(const QString &busAddress, QObject *parent)
    : QObject(parent)
    , m_connectionName(QStringLiteral("sorvanta-") + QUuid::createUuid().toString(QUuid::WithoutBraces))
{
    if (busAddress.isEmpty())
        return;
    QDBusConnection bus = QDBusConnection::connectToBus(busAddress, m_connectionName);
    if (!bus.isConnected())
        return;
    // Before the name: whoever finds that finds the object too.
    bus.registerObject(objectPath, this, QDBusConnection::ExportAllSlots);
    // The other one may go while it is asked.
    m_isSecond = !takeName() && (askForWindow() || !takeName());
}

SingleInstance::~SingleInstance()
{
    QDBusConnection::disconnectFromBus(m_connectionName);
}

void SingleInstance::Activate(const QVariantMap & /*platformData*/)
{
    emit activated();
}

/// @return false only if another one has it
bool SingleInstance::takeName() const
{
    const QDBusReply<QDBusConnectionInterface::RegisterServiceReply> reply =
        QDBusConnection(m_connectionName).interface()->registerService(serviceName);
    return !reply.isValid() || reply.value() != QDBusConnectionInterface::ServiceNotRegistered;
}

/// @return whether there was one who answered
bool SingleInstance::askForWindow() const
{
    QDBusMessage wish = QDBusMessage::createMethodCall(
        serviceName, objectPath, QStringLiteral("org.freedesktop.Application"), QStringLiteral("Activate"));
    wish.setAutoStartService(false);
    wish << QVariantMap();
    const QDBusMessage answer =
        QDBusConnection(m_connectionName).call(wish, QDBus::Block, static_cast<int>(longestWait.count()));
    return answer.type() == QDBusMessage::ReplyMessage;
}

} // namespace sorvanta
