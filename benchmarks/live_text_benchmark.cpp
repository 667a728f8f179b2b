// What a run costs the main thread: a transcript of ten hours, 12,000 timed lines in 12,000 chunks with log lines in
// front and behind, taken chunk by chunk, beside recomputing everything from the whole output at each chunk.

#include "core/live_transcript.h"
#include "core/transcript_lines_model.h"
#include "core/transcript_text.h"
#include "core/transcription_progress.h"
#include "platform/utf8_stream.h"

#include <QCoreApplication>
#include <QFile>
#include <QStringList>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <malloc.h>
#include <numeric>
#include <vector>

using namespace sorvanta;
using Clock = std::chrono::steady_clock;

namespace {

constexpr int lineCount = 12000;
constexpr double secondsOfALine = 3.0;

QString timecode(double seconds)
{
    const int whole = static_cast<int>(seconds);
    return QStringLiteral("%1:%2:%3.000")
        .arg(whole / 3600, 2, 10, QLatin1Char('0'))
        .arg(whole / 60 % 60, 2, 10, QLatin1Char('0'))
        .arg(whole % 60, 2, 10, QLatin1Char('0'));
}

std::vector<QByteArray> tenHoursOfOutput()
{
    std::vector<QByteArray> chunks;
    for (int i = 0; i < 60; ++i)
        chunks.push_back("whisper_model_load: n_vocab = 51865, and so on for a line\n");
    chunks.push_back("main: processing 'interview.wav' (576000000 samples, 36000.0 sec), 4 threads\n");
    for (int i = 0; i < lineCount; ++i) {
        chunks.push_back(QStringLiteral("[%1 --> %2]   Line %3 of a long talk about harbours and boats.\n")
                             .arg(timecode(i * secondsOfALine), timecode((i + 1) * secondsOfALine))
                             .arg(i)
                             .toUtf8());
    }
    for (int i = 0; i < 12; ++i)
        chunks.push_back("whisper_print_timings:     load time =    50.00 ms\n");
    return chunks;
}

double residentMegabytes()
{
    QFile file(QStringLiteral("/proc/self/statm"));
    if (!file.open(QIODevice::ReadOnly))
        return 0.0;
    return file.readAll().split(' ').at(1).toDouble() * 4096.0 / 1e6;
}

struct Cost {
    std::vector<double> milliseconds; // of each chunk, sorted

    double total() const { return std::accumulate(milliseconds.begin(), milliseconds.end(), 0.0); }
    double median() const { return milliseconds[milliseconds.size() / 2]; }
    double worst() const { return milliseconds.back(); }
};

template<typename Work>
Cost costOf(const std::vector<QByteArray> &chunks, Work work)
{
    Cost cost;
    cost.milliseconds.reserve(chunks.size());
    for (const QByteArray &chunk : chunks) {
        const auto begin = Clock::now();
        work(chunk);
        cost.milliseconds.push_back(std::chrono::duration<double, std::milli>(Clock::now() - begin).count());
    }
    std::sort(cost.milliseconds.begin(), cost.milliseconds.end());
    return cost;
}

void print(const char *name, const Cost &cost)
{
    std::printf("%-28s median %8.4f ms   worst %8.3f ms   whole run %9.1f ms\n", name, cost.median(), cost.worst(),
                cost.total());
}

Cost chunkByChunk(const std::vector<QByteArray> &chunks, qsizetype outputSize)
{
    lastTimedEnd(u"[00:00:00.000 --> 00:00:01.000]"); // loads what any run needs, whatever its length
    malloc_trim(0);
    const double before = residentMegabytes();
    Utf8Stream stream; // the worker's copy of the output counts for the memory
    LiveTranscript transcript;
    TranscriptLinesModel lines(transcript);
    ProgressScanner scanner;
    TranscriptionProgress progress;
    progress.begin(Clock::now());
    const Cost cost = costOf(chunks, [&](const QByteArray &chunk) {
        const QString piece = stream.append(chunk).value();
        const qsizetype from = transcript.rawOutput().size();
        const qsizetype lineStart = transcript.unfinishedLineStart();
        lines.apply(transcript.append(piece));
        progress.update(scanner.scan(transcript.rawOutput(), from, lineStart), Clock::now());
    });
    malloc_trim(0);
    const double grown = residentMegabytes() - before;
    print("chunk by chunk", cost);
    std::printf("%-28s %.2f MB for %.2f MB of output: %.1f times its size\n", "memory of the run", grown,
                static_cast<double>(outputSize) / 1e6, grown * 1e6 / static_cast<double>(outputSize));
    if (lines.count() != lineCount || progress.progress != 1.0)
        std::printf("WRONG RESULT: %d lines\n", lines.count());
    return cost;
}

Cost fromTheBeginning(const std::vector<QByteArray> &chunks)
{
    QByteArray output;
    QStringList rows;
    TranscriptionProgress progress;
    progress.begin(Clock::now());
    const Cost cost = costOf(chunks, [&](const QByteArray &chunk) {
        output += chunk;
        const QString text = QString::fromUtf8(output);
        rows = cleanWhisperOutput(text).split(u'\n');
        progress.update(text, Clock::now());
    });
    print("recomputed at each chunk", cost);
    return cost;
}

} // namespace

int main(int argumentCount, char **arguments)
{
    QCoreApplication application(argumentCount, arguments);
    const auto chunks = tenHoursOfOutput();
    const qsizetype size = std::accumulate(chunks.begin(), chunks.end(), qsizetype(0),
                                           [](qsizetype sum, const QByteArray &chunk) { return sum + chunk.size(); });
    const Cost incremental = chunkByChunk(chunks, size);
    const Cost whole = fromTheBeginning(chunks);
    std::printf("%-28s %.0f times in all, %.0f times at the median chunk\n", "recomputing costs",
                whole.total() / incremental.total(), whole.median() / incremental.median());
    return 0;
}
