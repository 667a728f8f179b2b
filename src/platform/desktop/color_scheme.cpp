#include "platform/desktop/color_scheme.h"

#include "platform/desktop/session_bus.h"

#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QEvent>
#include <QFutureWatcher>
#include <QGuiApplication>
#include <QPalette>
#include <QTimer>
#include <QUuid>
#include <QtConcurrent>

namespace sorvanta {

namespace {

const QString portalService = QStringLiteral("org.freedesktop.portal.Desktop");
const QString portalPath = QStringLiteral("/org/freedesktop/portal/desktop");
const QString settingsInterface = QStringLiteral("org.freedesktop.portal.Settings");
const QString appearanceGroup = QStringLiteral("org.freedesktop.appearance");
const QString gnomeGroup = QStringLiteral("org.gnome.desktop.interface");

bool isPaletteDark()
{
    const QPalette palette = QGuiApplication::palette();
    return palette.color(QPalette::Window).lightness() < palette.color(QPalette::WindowText).lightness();
}

} // namespace

ColorScheme::ColorScheme(QObject *parent)
    : ColorScheme(sessionBusAddress(), defaultWait, parent)
{
}

ColorScheme::ColorScheme(const QString &busAddress, std::chrono::milliseconds longestWait, QObject *parent)
    : QObject(parent)
    , m_connectionName(QStringLiteral("sorvanta-") + QUuid::createUuid().toString(QUuid::WithoutBraces))
{
    m_isPaletteDark = isPaletteDark();
    m_isDark.setBinding([this] { return m_wishedDark.value().value_or(m_isPaletteDark.value()); });
    m_hasReducedMotion.setBinding([this] { return m_reducesMotion || !m_hasAnimations; });
    qApp->installEventFilter(this);
    if (busAddress.isEmpty()) {
        m_isSettled = true;
        return;
    }
    QTimer::singleShot(0, this,
                       [this, longestWait] { QTimer::singleShot(longestWait, this, [this] { m_isSettled = true; }); });

    auto *watcher = new QFutureWatcher<QDBusConnection>(this);
    connect(watcher, &QFutureWatcher<QDBusConnection>::finished, this, [this, watcher] {
        listen(watcher->result());
        watcher->deleteLater();
    });
    watcher->setFuture(QtConcurrent::run(
        [busAddress, name = m_connectionName] { return QDBusConnection::connectToBus(busAddress, name); }));
}

ColorScheme::~ColorScheme()
{
    QDBusConnection::disconnectFromBus(m_connectionName);
}

bool ColorScheme::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::ApplicationPaletteChange)
        m_isPaletteDark = isPaletteDark();
    return QObject::eventFilter(watched, event);
}

void ColorScheme::listen(const QDBusConnection &bus)
{
    if (!bus.isConnected()) {
        m_isSettled = true;
        return;
    }
    // The slot is refused, without a word, as long as its argument's type is not known by name.
    qRegisterMetaType<QDBusVariant>();
    qDBusRegisterMetaType<QMap<QString, QVariantMap>>();
    QDBusConnection(bus).connect(portalService, portalPath, settingsInterface, QStringLiteral("SettingChanged"), this,
                                 SLOT(settingChanged(QString, QString, QDBusVariant)));

    QDBusMessage question =
        QDBusMessage::createMethodCall(portalService, portalPath, settingsInterface, QStringLiteral("ReadAll"));
    question << QStringList({appearanceGroup, gnomeGroup});
    auto *answer = new QDBusPendingCallWatcher(bus.asyncCall(question), this);
    connect(answer, &QDBusPendingCallWatcher::finished, this, [this, answer] {
        const QDBusPendingReply<QMap<QString, QVariantMap>> reply = *answer;
        answer->deleteLater();
        const QMap<QString, QVariantMap> groups = reply.isError() ? QMap<QString, QVariantMap>() : reply.value();
        for (auto group = groups.begin(); group != groups.end(); ++group) {
            for (auto setting = group->begin(); setting != group->end(); ++setting)
                take(group.key(), setting.key(), setting.value());
        }
        m_isSettled = true;
    });
}

void ColorScheme::take(const QString &group, const QString &key, const QVariant &value)
{
    if (group == appearanceGroup && key == QStringLiteral("color-scheme")) {
        const uint wish = value.toUInt();
        m_wishedDark = wish == 1 ? std::optional(true) : wish == 2 ? std::optional(false) : std::nullopt;
    } else if (group == appearanceGroup && key == QStringLiteral("reduced-motion")) {
        m_reducesMotion = value.toUInt() == 1;
    } else if (group == gnomeGroup && key == QStringLiteral("enable-animations")) {
        m_hasAnimations = value.toBool();
    }
}

void ColorScheme::settingChanged(const QString &group, const QString &key, const QDBusVariant &value)
{
    take(group, key, value.variant());
}

} // namespace sorvanta
