#include <QCoreApplication>
#include <QStandardPaths>

#include <gtest/gtest.h>

// The address sanitizer would end the process where the system only says that memory does not suffice.
extern "C" const char *__asan_default_options();
extern "C" const char *__asan_default_options()
{
    return "allocator_may_return_null=1";
}

int main(int argumentCount, char **arguments)
{
    QStandardPaths::setTestModeEnabled(true);
    QCoreApplication application(argumentCount, arguments);
    testing::InitGoogleTest(&argumentCount, arguments);
    return RUN_ALL_TESTS();
}
