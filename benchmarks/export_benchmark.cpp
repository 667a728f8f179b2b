#include "export/document_export.h"
#include "export/text_export.h"

#include <benchmark/benchmark.h>

// A transcript of ten hours: 12,000 segments of 75 characters, 900 kB of text with quotes, apostrophes, slashes and
// other scripts. What a format costs is to be compared with EncodeText, the same text made UTF-8 and nothing else.

using namespace sorvanta;
using enum ExportFormat;

namespace {

constexpr int segmentCount = 12'000;
constexpr int millisecondsOfASegment = 3000;

QString timecode(int milliseconds)
{
    return QString::asprintf("%02d:%02d:%02d.%03d", milliseconds / 3'600'000, milliseconds / 60'000 % 60,
                             milliseconds / 1000 % 60, milliseconds % 1000);
}

ExportInput tenHours()
{
    const QString lines[] = {
        u"So what we are looking at here is the third chapter, and it's \"long\" & slow"_qs,
        u"Over 3/4 of all boats leave the harbour before the tide turns, as they do."_qs,
        u"Und das heißt für uns: die Überprüfung läuft, 会議は三時に始まります。"_qs,
        u"The rest of it is of no concern to anybody who was not there that evening."_qs,
    };
    ExportInput input;
    for (int i = 0; i < segmentCount; ++i) {
        const int start = i * millisecondsOfASegment;
        input.segments.append({timecode(start), timecode(start + millisecondsOfASegment), lines[i % 4]});
        input.text += lines[i % 4] + u'\n';
    }
    return input;
}

const ExportInput &transcript()
{
    static const ExportInput input = tenHours();
    return input;
}

void EncodeText(benchmark::State &state)
{
    const ExportInput &input = transcript();
    for (auto _ : state)
        benchmark::DoNotOptimize(input.text.toUtf8());
    state.counters["bytes"] = static_cast<double>(input.text.toUtf8().size());
}

void Render(benchmark::State &state, ExportFormat format)
{
    const ExportInput &input = transcript();
    for (auto _ : state)
        benchmark::DoNotOptimize(renderExport(format, input));
    state.counters["bytes"] = static_cast<double>(renderExport(format, input)->toUtf8().size());
}

void RenderDocument(benchmark::State &state, ExportFormat format)
{
    const ExportInput &input = transcript();
    for (auto _ : state)
        benchmark::DoNotOptimize(renderDocument(format, input.text));
    state.counters["bytes"] = static_cast<double>(renderDocument(format, input.text).size());
}

/// A word of a million letters, which is broken wherever a line is full.
void RenderWord(benchmark::State &state, ExportFormat format)
{
    QString word(1'000'000, Qt::Uninitialized);
    for (qsizetype i = 0; i < word.size(); ++i)
        word[i] = QChar(static_cast<char16_t>(u'a' + (i * 7 + i / 26) % 26));
    for (auto _ : state)
        benchmark::DoNotOptimize(renderDocument(format, word));
}

BENCHMARK(EncodeText)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Render, txt, txt)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Render, srt, srt)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Render, vtt, vtt)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Render, csv, csv)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Render, markdown, markdown)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Render, html, html)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Render, json, json)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(RenderDocument, docx, docx)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(RenderDocument, pdf, pdf)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(RenderWord, pdf, pdf)->Unit(benchmark::kMillisecond);

} // namespace
