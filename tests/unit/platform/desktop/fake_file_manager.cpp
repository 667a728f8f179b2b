// Stands in for a file manager that the session bus starts: fake_file_manager FILE
// Writes the address of what it is to show into FILE, one line each.

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
    return bus.registerService("org.freedesktop.FileManager1") ? QCoreApplication::exec() : 1;
}

#include "fake_file_manager.moc"
