#include "platform/desktop/color_scheme.h"

#include "support/private_bus.h"
#include "support/waiting.h"

#include <QDBusMessage>
#include <QDBusMetaType>
#include <QElapsedTimer>
#include <QGuiApplication>
#include <QPalette>
#include <QSignalSpy>
#include <QTest>

#include <gtest/gtest.h>

#include <vector>

using Settings = QMap<QString, QVariantMap>;
Q_DECLARE_METATYPE(Settings)

namespace sorvanta {

namespace {

const QString busName = "portal of the test";
const QString portalPath = "/org/freedesktop/portal/desktop";
const QString settingsInterface = "org.freedesktop.portal.Settings";

/// A settings portal that answers with what the test says.
class Portal : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.Settings")

public:
    Settings settings;
    bool answers = true;

public Q_SLOTS:
    Settings ReadAll(const QStringList &groups, const QDBusMessage &question)
    {
        if (!answers)
            question.setDelayedReply(true);
        Settings found;
        for (const QString &group : groups) {
            if (settings.contains(group))
                found.insert(group, settings[group]);
        }
        return found;
    }
};

/// A session bus of its own, with a portal on it.
class ColorSchemeTest : public testing::Test {
protected:
    ColorSchemeTest()
    {
        qDBusRegisterMetaType<Settings>();
        setPalette(Qt::white, Qt::black);
    }

    ~ColorSchemeTest() override { QDBusConnection::disconnectFromBus(busName); }

    void openPortal()
    {
        QDBusConnection connection = QDBusConnection::connectToBus(address, busName);
        ASSERT_TRUE(connection.registerObject(portalPath, &portal, QDBusConnection::ExportAllSlots));
        ASSERT_TRUE(connection.registerService("org.freedesktop.portal.Desktop"));
    }

    void change(const QString &group, const QString &key, const QVariant &value)
    {
        QDBusMessage signal = QDBusMessage::createSignal(portalPath, settingsInterface, "SettingChanged");
        signal << group << key << QVariant::fromValue(QDBusVariant(value));
        ASSERT_TRUE(QDBusConnection(busName).send(signal));
    }

    static void setPalette(const QColor &window, const QColor &text)
    {
        QPalette palette = QGuiApplication::palette();
        palette.setColor(QPalette::Window, window);
        palette.setColor(QPalette::WindowText, text);
        QGuiApplication::setPalette(palette);
        QCoreApplication::processEvents();
    }

    PrivateBus bus;
    QString address = bus.address();
    Portal portal;
};

TEST_F(ColorSchemeTest, isDarkWhenTheDesktopAsksForIt)
{
    portal.settings["org.freedesktop.appearance"]["color-scheme"] = 1u;
    openPortal();
    ColorScheme scheme(address);
    QSignalSpy changed(&scheme, &ColorScheme::isDarkChanged);
    EXPECT_FALSE(scheme.isDark());
    ASSERT_TRUE(waitUntil([&] { return scheme.isDark(); }));
    EXPECT_EQ(changed.count(), 1);
}

TEST_F(ColorSchemeTest, isLightWhenTheDesktopAsksForItWhateverThePalette)
{
    setPalette(Qt::black, Qt::white);
    portal.settings["org.freedesktop.appearance"]["color-scheme"] = 2u;
    openPortal();
    ColorScheme scheme(address);
    EXPECT_TRUE(scheme.isDark());
    EXPECT_TRUE(waitUntil([&] { return !scheme.isDark(); }));
}

TEST_F(ColorSchemeTest, followsTheDesktopLive)
{
    portal.settings["org.freedesktop.appearance"]["color-scheme"] = 1u;
    openPortal();
    ColorScheme scheme(address);
    ASSERT_TRUE(waitUntil([&] { return scheme.isDark(); }));
    change("org.freedesktop.appearance", "color-scheme", 2u);
    EXPECT_TRUE(waitUntil([&] { return !scheme.isDark(); }));
    change("org.freedesktop.appearance", "color-scheme", 1u);
    EXPECT_TRUE(waitUntil([&] { return scheme.isDark(); }));
    change("org.freedesktop.appearance", "color-scheme", 0u);
    EXPECT_TRUE(waitUntil([&] { return !scheme.isDark(); }));
}

TEST_F(ColorSchemeTest, leavesItToThePaletteWithoutABus)
{
    ColorScheme scheme{QString()};
    EXPECT_FALSE(scheme.isDark());
    setPalette(Qt::black, Qt::white);
    EXPECT_TRUE(scheme.isDark());
    setPalette(Qt::white, Qt::black);
    EXPECT_FALSE(scheme.isDark());
}

TEST_F(ColorSchemeTest, leavesItToThePaletteWithoutAPortal)
{
    setPalette(Qt::black, Qt::white);
    ColorScheme scheme(address);
    QTest::qWait(200);
    EXPECT_TRUE(scheme.isDark());
    EXPECT_FALSE(scheme.hasReducedMotion());
}

TEST_F(ColorSchemeTest, isSettledOnceThePortalHasAnswered)
{
    portal.settings["org.freedesktop.appearance"]["color-scheme"] = 1u;
    openPortal();
    ColorScheme scheme(address, std::chrono::milliseconds(patience));
    EXPECT_FALSE(scheme.isSettled());
    std::vector<bool> isDarkWhenSettled;
    QObject::connect(&scheme, &ColorScheme::isSettledChanged, [&] { isDarkWhenSettled.push_back(scheme.isDark()); });
    ASSERT_TRUE(waitUntil([&] { return scheme.isSettled(); }));
    EXPECT_EQ(isDarkWhenSettled, std::vector<bool>{true});
}

TEST_F(ColorSchemeTest, isSettledOnceThePortalHasAnsweredAlsoIfTheWindowTakesLongToBeMade)
{
    portal.settings["org.freedesktop.appearance"]["color-scheme"] = 1u;
    openPortal();
    ColorScheme scheme(address, std::chrono::seconds(2));
    QTest::qSleep(2500);
    std::vector<bool> isDarkWhenSettled;
    QObject::connect(&scheme, &ColorScheme::isSettledChanged, [&] { isDarkWhenSettled.push_back(scheme.isDark()); });
    ASSERT_TRUE(waitUntil([&] { return scheme.isSettled(); }));
    EXPECT_EQ(isDarkWhenSettled, std::vector<bool>{true});
}

TEST_F(ColorSchemeTest, isSettledAtOnceWithoutABus)
{
    EXPECT_TRUE(ColorScheme(QString()).isSettled());
}

TEST_F(ColorSchemeTest, doesNotWaitForAPortalThatIsSilent)
{
    portal.answers = false;
    openPortal();
    QElapsedTimer timer;
    timer.start();
    {
        ColorScheme scheme(address);
        ASSERT_TRUE(waitUntil([&] { return scheme.isSettled(); }));
        EXPECT_GE(timer.elapsed(), 200) << "it is waited for";
        EXPECT_LT(timer.elapsed(), 20000) << "but not as long as the bus waits, which is 25 seconds";
        EXPECT_FALSE(scheme.isDark());
    }
    EXPECT_LT(timer.elapsed(), 20000) << "who waits for the portal waits 25 seconds";
}

TEST_F(ColorSchemeTest, doesNotMindABusThatIsGone)
{
    ColorScheme scheme("unix:path=/nonexistent/bus");
    QTest::qWait(100);
    EXPECT_FALSE(scheme.isDark());
}

TEST_F(ColorSchemeTest, reducesMotionWhenTheDesktopAsksForItInEitherWay)
{
    portal.settings["org.gnome.desktop.interface"]["enable-animations"] = false;
    openPortal();
    ColorScheme scheme(address);
    EXPECT_FALSE(scheme.hasReducedMotion());
    ASSERT_TRUE(waitUntil([&] { return scheme.hasReducedMotion(); }));
    change("org.gnome.desktop.interface", "enable-animations", true);
    ASSERT_TRUE(waitUntil([&] { return !scheme.hasReducedMotion(); }));
    change("org.freedesktop.appearance", "reduced-motion", 1u);
    ASSERT_TRUE(waitUntil([&] { return scheme.hasReducedMotion(); }));
    change("org.freedesktop.appearance", "reduced-motion", 0u);
    EXPECT_TRUE(waitUntil([&] { return !scheme.hasReducedMotion(); }));
}

} // namespace

} // namespace sorvanta

#include "color_scheme_test.moc"
