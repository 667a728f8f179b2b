#include "delivery_fixture.h"

#include "export/document_export.h"
#include "export/text_export.h"
#include "export/transcript_export.h"

namespace sorvanta {

namespace {

class TranscriptExports : public DeliveryTest {
protected:
    TranscriptExports()
        : delivery(settings(transcriptionDelivery))
        , exports({.input =
                       [this](ExportFormat format) {
                           asked << format;
                           return input;
                       },
                   .nothingForCsv = "No transcript available for CSV.",
                   .messages = messages()},
                  delivery)
    {
    }

    QByteArray saved(ExportFormat format)
    {
        exports.save(format);
        panels.answer(path("file"));
        return bytes("file");
    }

    ExportInput input{.text = " - One\nTwo ",
                      .segments = {{"00:00:00.000", "00:00:01.500", "One"}, {"00:00:01.500", "00:00:03.000", "Two"}}};
    QList<ExportFormat> asked;
    ExportDelivery delivery;
    TranscriptExport exports;
};

class EveryTranscriptExport : public TranscriptExports, public testing::WithParamInterface<ExportFormat> { };

TEST_P(EveryTranscriptExport, isRenderedAndSavedOrDownloaded)
{
    const ExportFormat format = GetParam();
    name = "talk_transcription";
    const QByteArray content =
        isDocument(format) ? renderDocument(format, input.text) : renderExport(format, input)->toUtf8();
    EXPECT_EQ(saved(format), content);
    EXPECT_EQ(message, "Saved " + shortLabel(format) + " to file");
    ASSERT_EQ(panels.saveRequests.size(), 1);
    EXPECT_EQ(panels.saveRequests.first().name, "talk_transcription." + fileExtension(format));
    EXPECT_EQ(panels.saveRequests.first().extensions, allowedTypes(format));

    exports.download(format);
    EXPECT_EQ(message, "Saved " + shortLabel(format) + " to Downloads/talk_transcription." + fileExtension(format));
    EXPECT_EQ(bytes("Downloads/talk_transcription." + fileExtension(format)), content);
    EXPECT_EQ(asked, QList({format, format})) << "what is shown may differ by format";
    EXPECT_EQ(error, std::nullopt);
}

INSTANTIATE_TEST_SUITE_P(, EveryTranscriptExport, testing::ValuesIn(allExportFormats),
                         [](const auto &test) { return fileExtension(test.param).toStdString(); });

struct Nothing {
    ExportFormat format;
    std::optional<QString> error; ///< of the save item
};

class EmptyTranscriptExport : public TranscriptExports, public testing::WithParamInterface<Nothing> { };

TEST_P(EmptyTranscriptExport, savesNothing)
{
    input = {};
    exports.save(GetParam().format);
    EXPECT_EQ(panels.saveRequests.size(), 0);
    EXPECT_EQ(error, GetParam().error);
    EXPECT_EQ(message, std::nullopt);
    EXPECT_EQ(messagesSet, GetParam().error ? 1 : 0);
}

TEST_P(EmptyTranscriptExport, downloadsNothingAndSaysNothing)
{
    input = {};
    exports.download(GetParam().format);
    expectThatNothingHappened();
}

INSTANTIATE_TEST_SUITE_P(, EmptyTranscriptExport,
                         testing::Values(Nothing{ExportFormat::txt, {}},
                                         Nothing{ExportFormat::srt, "No timestamped transcript available for SRT."},
                                         Nothing{ExportFormat::vtt, "No timestamped transcript available for VTT."},
                                         Nothing{ExportFormat::csv, "No transcript available for CSV."},
                                         Nothing{ExportFormat::docx, {}}, Nothing{ExportFormat::pdf, {}},
                                         Nothing{ExportFormat::markdown, {}}, Nothing{ExportFormat::html, {}},
                                         Nothing{ExportFormat::json, {}}),
                         [](const auto &test) { return fileExtension(test.param.format).toStdString(); });

TEST_F(TranscriptExports, aBlankTextIsStillATextForPlainTextAndDocuments)
{
    input = {.text = " \n"};
    EXPECT_EQ(saved(ExportFormat::txt), " \n");
    for (const ExportFormat format : {ExportFormat::docx, ExportFormat::pdf})
        EXPECT_EQ(saved(format), renderDocument(format, input.text));
    const auto panelsBefore = panels.saveRequests.size();
    for (const ExportFormat format : {ExportFormat::markdown, ExportFormat::html, ExportFormat::json})
        exports.save(format);
    EXPECT_EQ(panels.saveRequests.size(), panelsBefore);
}

TEST(NoTimestampsMessage, namesTheFormat)
{
    EXPECT_EQ(noTimestampsMessage(ExportFormat::srt), "No timestamped transcript available for SRT.");
    EXPECT_EQ(noTimestampsMessage(ExportFormat::csv), "No timestamped transcript available for CSV.");
}

TEST_F(TranscriptExports, theErrorOfASaveWithoutTimesLeavesTheStatus)
{
    message = "Done";
    input.segments.clear();
    exports.save(ExportFormat::srt);
    EXPECT_EQ(error, "No timestamped transcript available for SRT.");
    EXPECT_EQ(message, "Done");
}

TEST_F(TranscriptExports, whatIsSavedIsWhatWasShownWhenTheItemWasChosen)
{
    input = {.text = "then"};
    exports.save(ExportFormat::txt);
    input = {.text = "later"};
    panels.answer(path("file"));
    EXPECT_EQ(bytes("file"), "then");
}

class FailingDocument : public DeliveryTest {
protected:
    FailingDocument()
        : delivery(settings(transcriptionDelivery))
        , exports({.input = [](ExportFormat) -> ExportInput { throw Error("Export", 1, "It cannot be done."); },
                   .nothingForCsv = {},
                   .messages = messages()},
                  delivery)
    {
        message = "Done";
    }

    ExportDelivery delivery;
    TranscriptExport exports;
};

TEST_F(FailingDocument, isReportedWithItsDescriptionBySaving)
{
    exports.save(ExportFormat::docx);
    EXPECT_EQ(error, "Could not save DOCX: It cannot be done.");
    EXPECT_EQ(message, "Done");
    EXPECT_EQ(panels.saveRequests.size(), 0);
}

TEST_F(FailingDocument, isReportedWithoutItsDescriptionByDownloading)
{
    exports.download(ExportFormat::docx);
    EXPECT_EQ(error, "Could not generate DOCX.");
    EXPECT_EQ(message, "Done");
    EXPECT_EQ(namesIn(downloads), QStringList());
}

} // namespace

} // namespace sorvanta
