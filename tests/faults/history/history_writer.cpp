#include "history/transcription_history_store.h"

#include <QCoreApplication>

#include <cstdio>

using namespace sorvanta;

/// Adds one entry after the other to the history in the folder that the argument names, until it is killed. After
/// each it prints how many there are, one number a line.
int main(int argumentCount, char **arguments)
{
    QCoreApplication application(argumentCount, arguments);
    if (argumentCount != 2)
        return 2;
    HistorySurroundings surroundings = HistorySurroundings::ofThisUser();
    surroundings.baseFolder = QString::fromLocal8Bit(arguments[1]);
    TranscriptionHistoryStore store(surroundings);
    const QString padding = u"A line of a long transcript.\n"_qs.repeated(100);
    while (!store.errorMessage()) {
        const QString number = QString::number(store.entries().size() + 1);
        store.addEntry({.text = number + u'\n' + padding, .sourceLabel = number});
        std::printf("%lld\n", static_cast<long long>(store.entries().size()));
        std::fflush(stdout);
    }
    std::fprintf(stderr, "%s\n", qPrintable(store.errorText()));
    return 1;
}
