#include "platform/desktop/file_manager.h"

#include "platform/desktop/session_bus.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDesktopServices>
#include <QFileInfo>
#include <QFutureWatcher>
#include <QUrl>
#include <QUuid>
#include <QtConcurrent>

namespace sorvanta {

namespace {

void openFolderOf(const QString &path)
{
    QDesktopServices::openUrl(QUrl::fromLocalFile(QFileInfo(path).absolutePath()));
}

/// The question of the file manager interface that desktops share
/// (https://www.freedesktop.org/wiki/Specifications/file-manager-interface). The bus starts a file manager that does
/// not run.
QDBusMessage showItems(const QString &path)
{
    QDBusMessage question = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.FileManager1"), QStringLiteral("/org/freedesktop/FileManager1"),
        QStringLiteral("org.freedesktop.FileManager1"), QStringLiteral("ShowItems"));
    const QString startupId;
    question << QStringList(QUrl::fromLocalFile(path).toString(QUrl::FullyEncoded)) << startupId;
    return question;
}

void ask(const QDBusConnection &bus, const QString &path)
{
    const QString connectionName = bus.name();
    auto *answer = new QDBusPendingCallWatcher(bus.asyncCall(showItems(path)), QCoreApplication::instance());
    QObject::connect(answer, &QDBusPendingCallWatcher::finished, answer, [answer, connectionName, path] {
        if (answer->isError())
            openFolderOf(path);
        answer->deleteLater();
        QDBusConnection::disconnectFromBus(connectionName);
    });
}

} // namespace

void revealInFileManager(const QString &path)
{
    revealInFileManager(path, sessionBusAddress());
}

void revealInFileManager(const QString &path, const QString &busAddress)
{
    if (busAddress.isEmpty()) {
        openFolderOf(path);
        return;
    }
    // A connection of its own, since one that is made on another thread does not keep this one waiting.
    const QString name = QStringLiteral("sorvanta-") + QUuid::createUuid().toString(QUuid::WithoutBraces);
    auto *watcher = new QFutureWatcher<QDBusConnection>(QCoreApplication::instance());
    QObject::connect(watcher, &QFutureWatcher<QDBusConnection>::finished, watcher, [watcher, path, name] {
        const QDBusConnection bus = watcher->result();
        watcher->deleteLater();
        if (bus.isConnected()) {
            ask(bus, path);
        } else {
            openFolderOf(path);
            QDBusConnection::disconnectFromBus(name);
        }
    });
    watcher->setFuture(
        QtConcurrent::run([busAddress, name] { return QDBusConnection::connectToBus(busAddress, name); }));
}

} // namespace sorvanta
