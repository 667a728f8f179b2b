#pragma once

#include <QProcess>
#include <QString>

#include <stdexcept>

/// A session bus for one test, which ends with it.
class PrivateBus {
public:
    /// @param arguments what the daemon is told of its configuration
    explicit PrivateBus(const QStringList &arguments = {QStringLiteral("--session")})
    {
        m_daemon.start(QStringLiteral("dbus-daemon"),
                       arguments
                           + QStringList({QStringLiteral("--nofork"), QStringLiteral("--nopidfile"),
                                          QStringLiteral("--print-address")}));
        if (!m_daemon.waitForStarted() || !m_daemon.waitForReadyRead())
            throw std::runtime_error("the bus did not start");
        m_address = QString::fromUtf8(m_daemon.readAllStandardOutput()).trimmed();
    }
    PrivateBus(const PrivateBus &) = delete;
    PrivateBus &operator=(const PrivateBus &) = delete;
    ~PrivateBus()
    {
        m_daemon.kill();
        m_daemon.waitForFinished();
    }

    const QString &address() const { return m_address; }

private:
    QProcess m_daemon;
    QString m_address;
};
