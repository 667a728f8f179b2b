#include "platform/desktop/file_manager.h"

#include "support/printing.h"
#include "support/private_bus.h"
#include "support/waiting.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusContext>
#include <QDBusPendingCallWatcher>
#include <QDesktopServices>
#include <QElapsedTimer>
#include <QFile>
#include <QFutureWatcher>
#include <QTemporaryDir>
#include <QTest>
#include <QUrl>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>

namespace sorvanta {

namespace {

using testing::ElementsAre;

const QString connectionName = "file manager of the test";

/// A file manager in this very process.
class FileManager : public QObject, protected QDBusContext {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.FileManager1")

public:
    enum Manner { Shows, Refuses, StaysSilent };
    Manner manner = Shows;
    QList<QStringList> questions;
    QStringList startupIds;

public Q_SLOTS:
    void ShowItems(const QStringList &addresses, const QString &startupId)
    {
        questions << addresses;
        startupIds << startupId;
        if (manner == Refuses)
            sendErrorReply(QDBusError::Failed, "no");
        if (manner == StaysSilent)
            setDelayedReply(true);
    }
};

/// Takes what would be opened by the desktop.
class Desktop : public QObject {
    Q_OBJECT

public:
    Desktop() { QDesktopServices::setUrlHandler("file", this, "open"); }
    ~Desktop() override { QDesktopServices::unsetUrlHandler("file"); }
    Desktop(const Desktop &) = delete;
    Desktop &operator=(const Desktop &) = delete;

    QStringList opened;

public Q_SLOTS:
    void open(const QUrl &address) { opened << address.toString(); }
};

class RevealInFileManager : public testing::Test {
protected:
    ~RevealInFileManager() override
    {
        EXPECT_TRUE(waitUntil(isSettled)) << "a late answer would be taken for the next test's";
        QDBusConnection::disconnectFromBus(connectionName);
    }

    /// Whether all that was asked is answered.
    static bool isSettled()
    {
        const auto *application = QCoreApplication::instance();
        return !application->findChild<QFutureWatcherBase *>() && !application->findChild<QDBusPendingCallWatcher *>();
    }

    void openFileManager(const PrivateBus &bus)
    {
        QDBusConnection connection = QDBusConnection::connectToBus(bus.address(), connectionName);
        ASSERT_TRUE(
            connection.registerObject("/org/freedesktop/FileManager1", &manager, QDBusConnection::ExportAllSlots));
        ASSERT_TRUE(connection.registerService("org.freedesktop.FileManager1"));
    }

    FileManager manager;
    Desktop desktop;
};

TEST_F(RevealInFileManager, asksTheFileManagerToSelectTheFile)
{
    const PrivateBus bus;
    openFileManager(bus);
    revealInFileManager("/data/Sorvanta/Models/ggml-tiny.bin", bus.address());
    ASSERT_TRUE(waitUntil([this] { return !manager.questions.isEmpty(); }));
    ASSERT_TRUE(waitUntil(isSettled));
    EXPECT_THAT(manager.questions, ElementsAre(QStringList("file:///data/Sorvanta/Models/ggml-tiny.bin")));
    EXPECT_THAT(manager.startupIds, ElementsAre(""));
    EXPECT_THAT(desktop.opened, ElementsAre()) << "the folder is not opened as well";
}

TEST_F(RevealInFileManager, asksAgainEachTime)
{
    const PrivateBus bus;
    openFileManager(bus);
    for (int time = 1; time <= 3; ++time) {
        revealInFileManager("/data/a", bus.address());
        ASSERT_TRUE(waitUntil([this, time] { return manager.questions.size() == time; }));
    }
}

struct Spelling {
    const char *path;
    const char *address;
};

class RevealInFileManagerSpelling : public RevealInFileManager, public testing::WithParamInterface<Spelling> { };

TEST_P(RevealInFileManagerSpelling, givesTheAddressOfTheFile)
{
    const PrivateBus bus;
    openFileManager(bus);
    revealInFileManager(QString::fromUtf8(GetParam().path), bus.address());
    ASSERT_TRUE(waitUntil([this] { return !manager.questions.isEmpty(); }));
    EXPECT_EQ(manager.questions.first(), QStringList(GetParam().address));
}

INSTANTIATE_TEST_SUITE_P(, RevealInFileManagerSpelling,
                         testing::Values(Spelling{"/home/a b/x.bin", "file:///home/a%20b/x.bin"},
                                         Spelling{"/home/#1?/x%20.bin", "file:///home/%231%3F/x%2520.bin"},
                                         Spelling{"/home/Zoë/語.bin", "file:///home/Zo%C3%AB/%E8%AA%9E.bin"}));

TEST_F(RevealInFileManager, startsAFileManagerThatDoesNotRun)
{
    const QTemporaryDir folder;
    const QString record = folder.filePath("shown");
    const auto write = [&folder](const QString &name, const QString &text) {
        QFile file(folder.filePath(name));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(text.toUtf8());
    };
    write("manager.service",
          "[D-BUS Service]\nName=org.freedesktop.FileManager1\nExec=" SORVANTA_FAKE_FILE_MANAGER " " + record + "\n");
    write("bus.conf",
          "<busconfig><type>session</type><listen>unix:tmpdir=" + folder.path() + "</listen><servicedir>"
              + folder.path()
              + "</servicedir><policy context=\"default\"><allow send_destination=\"*\" eavesdrop=\"true\"/>"
                "<allow eavesdrop=\"true\"/><allow own=\"*\"/></policy></busconfig>");
    const PrivateBus bus({"--config-file", folder.filePath("bus.conf")});
    revealInFileManager("/data/ggml-tiny.bin", bus.address());
    const auto shown = [&record] {
        QFile file(record);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    };
    ASSERT_TRUE(waitUntil([&] { return shown().endsWith("\n"); }));
    EXPECT_EQ(shown(), "file:///data/ggml-tiny.bin\n");
    ASSERT_TRUE(waitUntil(isSettled));
    EXPECT_THAT(desktop.opened, ElementsAre());
}

TEST_F(RevealInFileManager, opensTheFolderWhereNoFileManagerSelects)
{
    const PrivateBus bus;
    revealInFileManager("/data/Sorvanta/Models/ggml-tiny.bin", bus.address());
    ASSERT_TRUE(waitUntil([this] { return !desktop.opened.isEmpty(); }));
    EXPECT_THAT(desktop.opened, ElementsAre("file:///data/Sorvanta/Models"));
}

TEST_F(RevealInFileManager, opensTheFolderWhenTheFileManagerRefuses)
{
    const PrivateBus bus;
    manager.manner = FileManager::Refuses;
    openFileManager(bus);
    revealInFileManager("/data/Sorvanta/Models/ggml-tiny.bin", bus.address());
    ASSERT_TRUE(waitUntil([this] { return !desktop.opened.isEmpty(); }));
    EXPECT_THAT(desktop.opened, ElementsAre("file:///data/Sorvanta/Models"));
    EXPECT_EQ(manager.questions.size(), 1);
}

TEST_F(RevealInFileManager, opensTheFolderWithoutABus)
{
    revealInFileManager("/data/a b/ggml-tiny.bin", QString());
    EXPECT_THAT(desktop.opened, ElementsAre("file:///data/a b"));
}

TEST_F(RevealInFileManager, opensTheFolderWhenTheBusIsGone)
{
    revealInFileManager("/data/Sorvanta/Models/ggml-tiny.bin", "unix:path=/nonexistent/bus");
    ASSERT_TRUE(waitUntil([this] { return !desktop.opened.isEmpty(); }));
    EXPECT_THAT(desktop.opened, ElementsAre("file:///data/Sorvanta/Models"));
}

TEST_F(RevealInFileManager, doesNotHoldUpTheApplicationForAFileManagerThatIsSilent)
{
    auto bus = std::make_unique<PrivateBus>();
    manager.manner = FileManager::StaysSilent;
    openFileManager(*bus);
    QElapsedTimer timer;
    timer.start();
    revealInFileManager("/data/ggml-tiny.bin", bus->address());
    ASSERT_TRUE(waitUntil([this] { return !manager.questions.isEmpty(); }));
    QTest::qWait(200);
    EXPECT_LT(timer.elapsed(), 20000) << "who waits for the file manager waits 25 seconds";
    EXPECT_THAT(desktop.opened, ElementsAre()) << "it may still answer";
    bus.reset();
    ASSERT_TRUE(waitUntil([this] { return !desktop.opened.isEmpty(); })) << "now it cannot";
    EXPECT_THAT(desktop.opened, ElementsAre("file:///data"));
}

TEST_F(RevealInFileManager, asksOnTheBusOfTheSession)
{
    const PrivateBus bus;
    openFileManager(bus);
    qputenv("DBUS_SESSION_BUS_ADDRESS", bus.address().toLocal8Bit());
    revealInFileManager("/data/ggml-tiny.bin");
    ASSERT_TRUE(waitUntil([this] { return !manager.questions.isEmpty(); }));
    qunsetenv("DBUS_SESSION_BUS_ADDRESS");
    ASSERT_TRUE(waitUntil(isSettled));
    EXPECT_THAT(desktop.opened, ElementsAre());
}

} // namespace

} // namespace sorvanta

#include "file_manager_test.moc"
