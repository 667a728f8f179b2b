// Stands in for the file manager of a desktop on the session bus: fake_file_manager FILE
// Writes the addresses of what it is to select into FILE, one line each, which is empty until then.

#include <QCoreApplication>
#include <QDBusConnection>
#include <QFile>

namespace {

class FileManager : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.FileManager1")

public:
    explicit FileManager(const QString &record)
        : m_record(record)
    {
    }

public Q_SLOTS:
    void ShowItems(const QStringList &addresses, const QString &)
    {
        QFile file(m_record);
        if (!file.open(QIODevice::Append))
            qFatal("cannot write");
        for (const QString &address : addresses)
            file.write(address.toUtf8() + '\n');
    }

private:
    QString m_record;
};

} // namespace

int main(int argumentCount, char **arguments)
{
    QCoreApplication application(argumentCount, arguments);
    FileManager manager(QString::fromLocal8Bit(arguments[1]));
    QDBusConnection bus = QDBusConnection::sessionBus();
    bus.registerObject("/org/freedesktop/FileManager1", &manager, QDBusConnection::ExportAllSlots);
    if (!bus.registerService("org.freedesktop.FileManager1"))
        return 1;
    manager.ShowItems({}, {});
    // It goes with its bus.
    bus.connect({}, "/org/freedesktop/DBus/Local", "org.freedesktop.DBus.Local", "Disconnected", &application,
                SLOT(quit()));
    return QCoreApplication::exec();
}

#include "fake_file_manager.moc"
