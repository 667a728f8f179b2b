// Whole files, written by hand, byte for byte: golden/<transcript>.<extension>.

#include "export/text_export.h"
#include "platform/file_system.h"
#include "support/printing.h"

#include <gtest/gtest.h>

#include <string>

using namespace sorvanta;
using enum ExportFormat;

namespace {

struct Transcript {
    const char *name;
    ExportInput input;
};

/// What an engine says of a short recording.
Transcript plain()
{
    return {"plain",
            {.text = "Good morning, everyone.\nWelcome to the harbour.\nLet's begin.",
             .segments = {{"00:00:00.000", "00:00:02.500", "Good morning, everyone."},
                          {"00:00:02.500", "00:00:06.040", "Welcome to the harbour."},
                          {"00:00:06.040", "00:00:07.999", "Let's begin."}}}};
}

/// Characters that mean something to a format, texts with blanks at their ends, and times in no order.
Transcript marked()
{
    return {"marked",
            {.text = "\n  She said: \"Tom & Jerry <live>\", it's 50% off.\nשלום, עולם 🎙 — 3.14 / 2\n"
                     "  *bold* \\ [link](x) -> --> &amp; 👩‍👩‍👧\t\n- café\x01, \"\"quoted\"\", 1,5\n\n",
             .segments = {{"00:00:00.000", "00:00:02.500", "She said: \"Tom & Jerry <live>\", it's 50% off."},
                          {"00:59:59.999", "01:00:00.000", "שלום, עולם 🎙 — 3.14 / 2"},
                          {"99:59:59.000", "99:59:59.999", "  *bold* \\ [link](x) -> --> &amp; 👩‍👩‍👧\t"},
                          {"00:00:01.000", "00:00:00.500", "- café\x01, \"\"quoted\"\", 1,5"}}}};
}

/// A text of several lines with blanks around it, and no times.
Transcript untimed()
{
    return {"untimed",
            {.text = "\n\t First line, with \"quotes\" & <marks>.\n\n*Second* line's 1/2.\nThird line.\u00A0\n\n"}};
}

struct Golden {
    Transcript transcript;
    ExportFormat format;

    std::string fileName() const { return std::string(transcript.name) + '.' + fileExtension(format).toStdString(); }
};

void PrintTo(const Golden &golden, std::ostream *out)
{
    *out << golden.fileName();
}

std::vector<Golden> goldenFiles()
{
    std::vector<Golden> files;
    for (const ExportFormat format : {txt, srt, vtt, csv, markdown, html, json}) {
        files.push_back({plain(), format});
        files.push_back({marked(), format});
        if (format != srt && format != vtt)
            files.push_back({untimed(), format});
    }
    return files;
}

class GoldenFile : public testing::TestWithParam<Golden> { };

TEST_P(GoldenFile, isWhatIsRenderedByteForByte)
{
    const auto content = renderExport(GetParam().format, GetParam().transcript.input);
    ASSERT_TRUE(content);
    EXPECT_EQ(content->toUtf8(), readFile(SORVANTA_GOLDEN_EXPORTS "/" + QString::fromStdString(GetParam().fileName())));
}

INSTANTIATE_TEST_SUITE_P(Files, GoldenFile, testing::ValuesIn(goldenFiles()), [](const auto &golden) {
    return golden.param.transcript.name + ('_' + fileExtension(golden.param.format).toStdString());
});

TEST(UntimedTranscript, hasNoSubtitles)
{
    EXPECT_EQ(renderExport(srt, untimed().input), std::nullopt);
    EXPECT_EQ(renderExport(vtt, untimed().input), std::nullopt);
}

} // namespace
