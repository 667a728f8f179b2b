#include "history/transcription_history_store.h"

#include <QCoreApplication>

#include <cstdio>

using namespace sorvanta;

namespace {

/// Adds an entry with a recording alone, and then one with a text that takes its place and its recording.
void addRecordingAndTranscript(TranscriptionHistoryStore &store, const QString &number, const QString &text,
                               const QString &recording)
{
    store.addEntry({.sourceLabel = number, .recordingPath = recording, .replaceExisting = true});
    const std::optional<QString> stored = store.entries().first().recordingPath;
    store.addEntry({.text = text, .sourceLabel = number, .recordingPath = stored, .replaceExisting = true});
}

} // namespace

/// Adds one entry after the other to the history in the folder that the first argument names, until it is killed; if
/// the second one names a recording, each with that. After each it prints how many there are, one number a line.
int main(int argumentCount, char **arguments)
{
    QCoreApplication application(argumentCount, arguments);
    if (argumentCount < 2 || argumentCount > 3)
        return 2;
    HistorySurroundings surroundings = HistorySurroundings::ofThisUser();
    surroundings.baseFolder = QString::fromLocal8Bit(arguments[1]);
    TranscriptionHistoryStore store(surroundings);
    const QString padding = u"A line of a long transcript.\n"_qs.repeated(100);
    while (!store.errorMessage()) {
        const QString number = QString::number(store.entries().size() + 1);
        const QString text = number + u'\n' + padding;
        if (argumentCount == 3)
            addRecordingAndTranscript(store, number, text, QString::fromLocal8Bit(arguments[2]));
        else
            store.addEntry({.text = text, .sourceLabel = number});
        std::printf("%lld\n", static_cast<long long>(store.entries().size()));
        std::fflush(stdout);
    }
    std::fprintf(stderr, "%s\n", qPrintable(store.errorText()));
    return 1;
}
