#pragma once

#include "platform/desktop/session_bus.h"

#include <QObject>
#include <QVariantMap>

namespace sorvanta {

/// The application runs once in a session: of two, each would write the history as it alone knows it. Whoever finds
/// that it runs already asks for its window. Without a session bus there is no way to know of each other. Main thread,
/// with an application object.
class SingleInstance : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Application")

public:
    explicit SingleInstance(const QString &busAddress = sessionBusAddress(), QObject *parent = nullptr);
    ~SingleInstance() override;

    /// Whether another one ran before this one. Its window has been asked for then.
    bool isSecond() const { return m_isSecond; }

    /// The application was started once more: its window is wanted.
    Q_SIGNAL void activated();

public Q_SLOTS:
    /// What the other one calls over the bus
    /// (https://specifications.freedesktop.org/desktop-entry-spec/latest/dbus.html).
    void Activate(const QVariantMap &platformData);

private:
    bool takeName() const;
    bool askForWindow() const;

    QString m_connectionName;
    bool m_isSecond = false;
};

} // namespace sorvanta
