#include "delivery_fixture.h"

#include "export/batch_export.h"
#include "export/document_export.h"
#include "export/export_names.h"
#include "export/text_export.h"

namespace sorvanta {

namespace {

using testing::UnorderedElementsAre;

class ExportAll : public DeliveryTest {
protected:
    ExportAll()
        : batch({.sourceCount = [this] { return sources.size(); },
                 .source =
                     [this](qsizetype index) {
                         if (failure)
                             throw *failure;
                         return sources[index];
                     },
                 .panels = panels,
                 .defaultName =
                     [](const QString &extension, const QString &source) {
                         return defaultExportName(batchNaming([] { return 3; }), extension, source);
                     },
                 .messages = messages()})
    {
    }

    void exportAll(ExportFormat format, const std::optional<QString> &place)
    {
        const qsizetype before = panels.folderPrompts.size();
        batch.exportAll(format);
        if (panels.folderPrompts.size() > before)
            panels.answer(place);
    }
    void exportAll(ExportFormat format) { exportAll(format, downloads); }

    QList<BatchExportSource> sources{
        {.path = "/a/one.wav", .input = {.text = " One\n", .segments = {{"00:00:00.000", "00:00:01.500", "One"}}}},
        {.path = "/b/two.mp3", .input = {.text = " \n "}},
        {.path = "/c/three.mp4", .input = {.text = "Three"}},
    };
    std::optional<Error> failure;
    BatchExport batch;
};

TEST_F(ExportAll, asksForAFolderWithItsPrompt)
{
    batch.exportAll(ExportFormat::txt);
    EXPECT_EQ(panels.folderPrompts, QStringList("Choose Folder"));
    EXPECT_EQ(messagesSet, 0);
}

TEST_F(ExportAll, writesThoseThatHaveContentAndCountsThem)
{
    error = "earlier error";
    exportAll(ExportFormat::txt);
    EXPECT_THAT(namesIn(downloads), UnorderedElementsAre("one_transcription.txt", "three_transcription.txt"));
    EXPECT_EQ(bytes("Downloads/one_transcription.txt"), " One\n") << "not trimmed";
    EXPECT_EQ(bytes("Downloads/three_transcription.txt"), "Three");
    EXPECT_EQ(message, "Exported 2 TXT file(s) to Downloads");
    EXPECT_EQ(error, std::nullopt);
}

TEST_F(ExportAll, ofOneFileSaysFilesToo)
{
    exportAll(ExportFormat::srt);
    EXPECT_THAT(namesIn(downloads), UnorderedElementsAre("one_transcription.srt"));
    EXPECT_EQ(message, "Exported 1 SRT file(s) to Downloads");
}

struct Written {
    ExportFormat format;
    QStringList names;
    QString message;
};

class ExportAllAs : public ExportAll, public testing::WithParamInterface<Written> { };

TEST_P(ExportAllAs, writesWhatTheFormatHasContentFor)
{
    exportAll(GetParam().format);
    EXPECT_EQ(namesIn(downloads), GetParam().names);
    EXPECT_EQ(message, GetParam().message);
    const ExportInput &first = sources.first().input;
    EXPECT_EQ(bytes("Downloads/" + GetParam().names.first()), isDocument(GetParam().format)
                                                                  ? renderDocument(GetParam().format, first.text)
                                                                  : renderExport(GetParam().format, first)->toUtf8());
    for (const QString &file : GetParam().names)
        EXPECT_EQ(modeOf("Downloads/" + file), 0644);
}

INSTANTIATE_TEST_SUITE_P(
    , ExportAllAs,
    testing::Values(Written{ExportFormat::txt,
                            {"one_transcription.txt", "three_transcription.txt"},
                            "Exported 2 TXT file(s) to Downloads"},
                    Written{ExportFormat::srt, {"one_transcription.srt"}, "Exported 1 SRT file(s) to Downloads"},
                    Written{ExportFormat::vtt, {"one_transcription.vtt"}, "Exported 1 VTT file(s) to Downloads"},
                    Written{ExportFormat::csv,
                            {"one_transcription.csv", "three_transcription.csv"},
                            "Exported 2 CSV file(s) to Downloads"},
                    Written{ExportFormat::docx,
                            {"one_transcription.docx", "three_transcription.docx"},
                            "Exported 2 DOCX file(s) to Downloads"},
                    Written{ExportFormat::pdf,
                            {"one_transcription.pdf", "three_transcription.pdf"},
                            "Exported 2 PDF file(s) to Downloads"},
                    Written{ExportFormat::markdown,
                            {"one_transcription.md", "three_transcription.md"},
                            "Exported 2 Markdown file(s) to Downloads"},
                    Written{ExportFormat::html,
                            {"one_transcription.html", "three_transcription.html"},
                            "Exported 2 HTML file(s) to Downloads"},
                    Written{ExportFormat::json,
                            {"one_transcription.json", "three_transcription.json"},
                            "Exported 2 JSON file(s) to Downloads"}),
    [](const auto &test) { return fileExtension(test.param.format).toStdString(); });

TEST_F(ExportAll, ofABlankTextWithSegmentsWritesRowsButNoPlainText)
{
    sources = {{.path = "/a/one.wav", .input = {.text = " ", .segments = {{"00:00:00.000", "00:00:01.500", "One"}}}}};
    exportAll(ExportFormat::csv);
    EXPECT_EQ(message, "Exported 1 CSV file(s) to Downloads");
    exportAll(ExportFormat::txt);
    EXPECT_EQ(message, "No TXT exports available.");
}

TEST_F(ExportAll, twiceIntoOneFolderCountsInBrackets)
{
    exportAll(ExportFormat::txt);
    exportAll(ExportFormat::txt);
    EXPECT_THAT(namesIn(downloads), UnorderedElementsAre("one_transcription.txt", "one_transcription (1).txt",
                                                         "three_transcription.txt", "three_transcription (1).txt"));
    EXPECT_EQ(message, "Exported 2 TXT file(s) to Downloads");
}

TEST_F(ExportAll, filesOfOneNameFromTwoFoldersStandSideBySide)
{
    sources = {{.path = "/x/a.wav", .input = {.text = "first"}}, {.path = "/y/a.wav", .input = {.text = "second"}}};
    exportAll(ExportFormat::txt);
    EXPECT_EQ(bytes("Downloads/a_transcription.txt"), "first");
    EXPECT_EQ(bytes("Downloads/a_transcription (1).txt"), "second");
}

TEST_F(ExportAll, withoutTimedLinesSaysThatThereIsNothing)
{
    sources.removeFirst();
    error = "earlier error";
    exportAll(ExportFormat::srt);
    EXPECT_EQ(message, "No SRT exports available.");
    EXPECT_EQ(error, "earlier error");
    EXPECT_EQ(panels.folderPrompts.size(), 0);
}

TEST_F(ExportAll, withoutResultsSaysThatThereIsNothingByTheShortLabel)
{
    sources.clear();
    exportAll(ExportFormat::markdown);
    EXPECT_EQ(message, "No Markdown exports available.");
}

TEST_F(ExportAll, isOverWithoutAWordIfThePanelIsDeclined)
{
    exportAll(ExportFormat::txt, std::nullopt);
    EXPECT_EQ(messagesSet, 0);
    EXPECT_EQ(namesIn(downloads), QStringList());
}

TEST_F(ExportAll, afterAFailedRenderingWritesNothingAndAsksNothing)
{
    message = "Done";
    failure.emplace("Export", 1, "It cannot be done.");
    exportAll(ExportFormat::docx);
    EXPECT_EQ(error, "Failed to export DOCX: It cannot be done.");
    EXPECT_EQ(message, "Done");
    EXPECT_EQ(panels.folderPrompts.size(), 0);
    EXPECT_EQ(namesIn(downloads), QStringList());
}

TEST_F(ExportAll, stopsAtTheFirstFailureAndKeepsWhatWasWritten)
{
    message = "Done";
    sources.insert(2, {.path = '/' + QString(250, 'n'), .input = {.text = "The name of this is too long."}});
    exportAll(ExportFormat::markdown);
    EXPECT_THAT(namesIn(downloads), UnorderedElementsAre("one_transcription.md"));
    EXPECT_TRUE(error && error->startsWith("Failed to export Markdown: The file “nnn")) << error->toStdString();
    EXPECT_TRUE(error && error->endsWith("_transcription.md” couldn’t be saved in the folder “Downloads”."));
    EXPECT_EQ(message, "Done");
}

TEST_F(ExportAll, intoAFolderThatWentIsAFailure)
{
    exportAll(ExportFormat::txt, path("gone"));
    EXPECT_EQ(error, "Failed to export TXT: The folder “gone” doesn’t exist.");
}

TEST_F(ExportAll, writesWhatWasThereWhenItWasChosen)
{
    batch.exportAll(ExportFormat::txt);
    sources.clear();
    panels.answer(downloads);
    EXPECT_EQ(namesIn(downloads).size(), 2);
}

} // namespace

} // namespace sorvanta
