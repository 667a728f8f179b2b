#include "platform/desktop/single_instance.h"

#include <QCoreApplication>
#include <QSocketNotifier>

#include <cstdio>

#include <unistd.h>

namespace {

void say(const char *words)
{
    std::puts(words);
    std::fflush(stdout);
}

} // namespace

/// One start of an application on the bus at the address that is its argument. Says whether it is the first or the
/// second, and whenever its window is wanted; ends when it is the second, or with its standard input.
int main(int argumentCount, char **arguments)
{
    QCoreApplication application(argumentCount, arguments);
    const sorvanta::SingleInstance instance(QCoreApplication::arguments().value(1));
    say(instance.isSecond() ? "second" : "first");
    if (instance.isSecond())
        return 0;
    QObject::connect(&instance, &sorvanta::SingleInstance::activated, [] { say("wanted"); });
    const QSocketNotifier input(STDIN_FILENO, QSocketNotifier::Read);
    QObject::connect(&input, &QSocketNotifier::activated, &application, &QCoreApplication::quit);
    return QCoreApplication::exec();
}
