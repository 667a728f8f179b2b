#include <QCoreApplication>
#include <QStandardPaths>

#include <gtest/gtest.h>

int main(int argumentCount, char **arguments)
{
    QStandardPaths::setTestModeEnabled(true);
    QCoreApplication application(argumentCount, arguments);
    testing::InitGoogleTest(&argumentCount, arguments);
    return RUN_ALL_TESTS();
}
