#include <QApplication>
#include <QStandardPaths>

#include <gtest/gtest.h>

int main(int argumentCount, char **arguments)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QStandardPaths::setTestModeEnabled(true);
    QApplication application(argumentCount, arguments);
    testing::InitGoogleTest(&argumentCount, arguments);
    return RUN_ALL_TESTS();
}
