#include "app/style/look.h"
#include "ui/support/ui_test.h"

#include <QAccessible>
#include <QApplication>
#include <QTemporaryDir>

#include <gtest/gtest.h>

int main(int argumentCount, char **arguments)
{
    // Before the application object, which reads them.
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("QT_QUICK_BACKEND", "software");
    qputenv("QT_SCALE_FACTOR", "1");
    qunsetenv("DBUS_SESSION_BUS_ADDRESS");
    qputenv("XDG_RUNTIME_DIR", "/nonexistent");
    const QTemporaryDir home;
    qputenv("XDG_DATA_HOME", home.filePath("data").toLocal8Bit());
    qputenv("XDG_CONFIG_HOME", home.filePath("config").toLocal8Bit());
    QApplication application(argumentCount, arguments);
    QAccessible::setActive(true);
    sorvanta::applyLook();
    sorvanta::failOnQtWarnings();
    testing::InitGoogleTest(&argumentCount, arguments);
    return RUN_ALL_TESTS();
}
