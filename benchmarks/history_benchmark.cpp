#include "history/history_json.h"
#include "history/transcription_history_store.h"
#include "platform/file_system.h"
#include "support/history_entries.h"

#include <QDir>
#include <QTemporaryDir>
#include <QThreadPool>

#include <benchmark/benchmark.h>

#include <chrono>
#include <cstdlib>
#include <optional>

#include <fcntl.h>
#include <unistd.h>

// A history of 10,000 entries of 5 kB each, in the current folder, so that the disk is the one that is meant. What an
// addition costs is to be compared with WriteAndSync: the same bytes written and synced, and nothing else done.

using namespace sorvanta;

namespace {

enum Script { Latin, Mixed };

QString transcript(Script script)
{
    const QString line = script == Latin
                             ? u"So what we are looking at here is the third chapter, and it is \"long\".\n"_qs
                             : u"Und das heißt für uns: die Überprüfung läuft, 会議は三時に始まります。\n"_qs;
    return line.repeated(5000 / line.toUtf8().size());
}

QList<TranscriptionHistoryEntry> manyEntries(Script script)
{
    QList<TranscriptionHistoryEntry> entries;
    for (int i = 0; i < 10'000; ++i) {
        const QString id = u"17700000%1-a1b2c3"_qs.arg(99'999 - i);
        entries.append(historyEntry(id, u"2026-02-02T02:%1:00.123Z"_qs.arg(59 - i / 200, 2, 10, QChar('0'))));
        entries.last().text = transcript(script);
    }
    return entries;
}

/// A history on disk, the same for all benchmarks of a script.
struct Place {
    explicit Place(Script script)
        : folder(QDir::currentPath() + "/history-benchmark-XXXXXX")
    {
        surroundings.baseFolder = folder.path();
        bytes = encodedHistory(manyEntries(script));
        writeFileAtomically(folder.filePath("transcription-history.json"), bytes);
    }

    static Place &of(const benchmark::State &state)
    {
        static Place latin(Latin);
        static Place mixed(Mixed);
        return state.range(0) == Latin ? latin : mixed;
    }

    QTemporaryDir folder;
    QByteArray bytes;
    HistorySurroundings surroundings = HistorySurroundings::ofThisUser();
};

void writeAndSync(const Place &place)
{
    const QByteArray path = place.folder.filePath("plain").toUtf8();
    const int file = ::open(path.constData(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
    if (file < 0
        || ::write(file, place.bytes.constData(), static_cast<size_t>(place.bytes.size())) != place.bytes.size()
        || ::fsync(file) != 0)
        std::abort();
    ::close(file);
    ::unlink(path.constData());
}

void Load(benchmark::State &state)
{
    const Place &place = Place::of(state);
    for (auto _ : state) {
        TranscriptionHistoryStore store(place.surroundings);
        if (store.entries().size() < 10'000)
            state.SkipWithError("the history was not read");
    }
}

void WriteAndSync(benchmark::State &state)
{
    const Place &place = Place::of(state);
    for (auto _ : state)
        writeAndSync(place);
}

void add(TranscriptionHistoryStore &store, benchmark::State &state)
{
    store.addEntry({.text = "One more.", .sourceLabel = "a.wav"});
    if (store.errorMessage())
        state.SkipWithError("the history was not saved");
}

void Add(benchmark::State &state)
{
    TranscriptionHistoryStore store(Place::of(state).surroundings);
    add(store, state);
    for (auto _ : state)
        add(store, state);
}

/// Adds and writes in turn, so that a disk that is busy elsewhere disturbs both alike. The first addition after a start
/// comes some time after it, as that of a user does: until then a worker has found the file in the store's own form.
void compareWithWriteAndSync(benchmark::State &state, bool isFirst)
{
    using Clock = std::chrono::steady_clock;
    const Place &place = Place::of(state);
    std::optional<TranscriptionHistoryStore> store;
    Clock::duration adding{};
    Clock::duration writing{};
    for (auto _ : state) {
        if (!store || isFirst) {
            state.PauseTiming();
            store.emplace(place.surroundings);
            QThreadPool::globalInstance()->waitForDone();
            if (!isFirst)
                add(*store, state);
            state.ResumeTiming();
        }
        const Clock::time_point start = Clock::now();
        add(*store, state);
        const Clock::time_point middle = Clock::now();
        writeAndSync(place);
        adding += middle - start;
        writing += Clock::now() - middle;
    }
    state.counters["ratio"] = std::chrono::duration<double>(adding) / std::chrono::duration<double>(writing);
}

void AddOverWriteAndSync(benchmark::State &state)
{
    compareWithWriteAndSync(state, false);
}

void FirstAddOverWriteAndSync(benchmark::State &state)
{
    compareWithWriteAndSync(state, true);
}

void Encode(benchmark::State &state)
{
    const QList<TranscriptionHistoryEntry> entries = manyEntries(static_cast<Script>(state.range(0)));
    for (auto _ : state)
        benchmark::DoNotOptimize(encodedHistory(entries));
}

void Decode(benchmark::State &state)
{
    const Place &place = Place::of(state);
    for (auto _ : state)
        benchmark::DoNotOptimize(decodedHistory(place.bytes));
}

void ReadFile(benchmark::State &state)
{
    const QString path = Place::of(state).folder.filePath("transcription-history.json");
    for (auto _ : state)
        benchmark::DoNotOptimize(readFile(path));
}

} // namespace

BENCHMARK(Load)->ArgName("script")->Arg(Latin)->Arg(Mixed)->Unit(benchmark::kMillisecond);
BENCHMARK(WriteAndSync)->ArgName("script")->Arg(Latin)->Arg(Mixed)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(Add)->ArgName("script")->Arg(Latin)->Arg(Mixed)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(AddOverWriteAndSync)->ArgName("script")->Arg(Latin)->Arg(Mixed)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(FirstAddOverWriteAndSync)
    ->ArgName("script")
    ->Arg(Latin)
    ->Arg(Mixed)
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime();
BENCHMARK(Encode)->ArgName("script")->Arg(Latin)->Arg(Mixed)->Unit(benchmark::kMillisecond);
BENCHMARK(Decode)->ArgName("script")->Arg(Latin)->Arg(Mixed)->Unit(benchmark::kMillisecond);
BENCHMARK(ReadFile)->ArgName("script")->Arg(Latin)->Arg(Mixed)->Unit(benchmark::kMillisecond);
