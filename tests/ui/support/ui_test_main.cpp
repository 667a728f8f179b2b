#include "app/style/look.h"
#include "ui/support/ui_test.h"

#include <QAccessible>
#include <QGuiApplication>
#include <QStandardPaths>

#include <gtest/gtest.h>

int main(int argumentCount, char **arguments)
{
    // Before the application object, which reads them.
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("QT_QUICK_BACKEND", "software");
    qputenv("QT_SCALE_FACTOR", "1");
    qunsetenv("DBUS_SESSION_BUS_ADDRESS");
    qputenv("XDG_RUNTIME_DIR", "/nonexistent");
    QStandardPaths::setTestModeEnabled(true);
    QGuiApplication application(argumentCount, arguments);
    QAccessible::setActive(true);
    sorvanta::applyLook();
    sorvanta::failOnQtWarnings();
    testing::InitGoogleTest(&argumentCount, arguments);
    return RUN_ALL_TESTS();
}
