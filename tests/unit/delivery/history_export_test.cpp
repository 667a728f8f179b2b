#include "delivery_fixture.h"

#include "export/document_export.h"
#include "export/history_export.h"
#include "export/text_export.h"
#include "support/history_entries.h"

namespace sorvanta {

namespace {

class HistoryExports : public DeliveryTest {
protected:
    HistoryExports()
        : delivery(settings(historyDelivery))
        , exports([this] { return entry; }, delivery)
    {
        entry = historyEntry("1");
        entry->text = "[00:00:00.000 --> 00:00:01.500]   - One & two";
        entry->txtPath = path("stored.txt");
    }

    QByteArray saved(ExportFormat format)
    {
        exports.save(format);
        panels.answer(path("file"));
        EXPECT_EQ(message, "Exported to file");
        return bytes("file");
    }

    std::optional<TranscriptionHistoryEntry> entry;
    ExportDelivery delivery;
    HistoryExport exports;
};

TEST_F(HistoryExports, aStoredTextIsCopiedAndTheOneInMemoryIsNot)
{
    put("stored.txt", "stored\xff text");
    put("file", "what was there before");
    EXPECT_EQ(saved(ExportFormat::txt), "stored\xff text");
    EXPECT_EQ(bytes("stored.txt"), "stored\xff text");
}

TEST_F(HistoryExports, withoutTheStoredTextTheOneInMemoryIsWritten)
{
    EXPECT_EQ(saved(ExportFormat::txt), entry->text.toUtf8());
    entry->txtPath = "";
    EXPECT_EQ(saved(ExportFormat::txt), entry->text.toUtf8());
}

TEST_F(HistoryExports, anEmptyTextIsWrittenAsAnEmptyFile)
{
    entry->text = "";
    EXPECT_EQ(saved(ExportFormat::txt), "");
    EXPECT_TRUE(QFileInfo::exists(path("file")));
}

TEST_F(HistoryExports, storedSubtitlesAreCopiedByteForByte)
{
    entry->srtPath = put("stored.srt", "1\r\n00:00:00,000 --> 00:00:09,000\r\nStored\xe9\r\n");
    EXPECT_EQ(saved(ExportFormat::srt), "1\r\n00:00:00,000 --> 00:00:09,000\r\nStored\xe9\r\n");
}

TEST_F(HistoryExports, withoutStoredSubtitlesTheyAreRendered)
{
    entry->srtPath = path("gone.srt");
    EXPECT_EQ(saved(ExportFormat::srt), "1\n00:00:00,000 --> 00:00:01,500\n- One & two\n");
}

TEST_F(HistoryExports, otherTextFormatsAreRenderedOfTheEntry)
{
    const ExportInput input{.text = entry->text, .segments = {{"00:00:00.000", "00:00:01.500", "- One & two"}}};
    for (const ExportFormat format :
         {ExportFormat::vtt, ExportFormat::csv, ExportFormat::markdown, ExportFormat::html, ExportFormat::json})
        EXPECT_EQ(saved(format), renderExport(format, input)->toUtf8()) << shortLabel(format).toStdString();
}

TEST_F(HistoryExports, documentsAreMadeOfTheTrimmedText)
{
    entry->text = "\n  one\n two \u2028\n";
    for (const ExportFormat format : {ExportFormat::docx, ExportFormat::pdf})
        EXPECT_EQ(saved(format), renderDocument(format, "one\n two")) << shortLabel(format).toStdString();
}

class EveryHistoryExport : public HistoryExports, public testing::WithParamInterface<ExportFormat> { };

TEST_P(EveryHistoryExport, isDownloadedInTheWordsOfTheHistory)
{
    name = "talk_history";
    exports.download(GetParam());
    EXPECT_EQ(message, "Saved to Downloads/talk_history." + fileExtension(GetParam()));
    EXPECT_EQ(namesIn(downloads), QStringList("talk_history." + fileExtension(GetParam())));
    exports.save(GetParam());
    ASSERT_EQ(panels.saveRequests.size(), 1);
    EXPECT_EQ(panels.saveRequests.first().extensions, allowedTypes(GetParam()));
}

TEST_P(EveryHistoryExport, withoutAnEntryDoesNothing)
{
    entry.reset();
    exports.save(GetParam());
    exports.download(GetParam());
    expectThatNothingHappened();
}

TEST_P(EveryHistoryExport, ofABlankTextDoesNothingUnlessItIsPlainText)
{
    entry->text = " \n ";
    exports.save(GetParam());
    if (GetParam() == ExportFormat::txt) {
        EXPECT_EQ(panels.saveRequests.size(), 1);
        return;
    }
    exports.download(GetParam());
    expectThatNothingHappened();
}

INSTANTIATE_TEST_SUITE_P(, EveryHistoryExport, testing::ValuesIn(allExportFormats),
                         [](const auto &test) { return fileExtension(test.param).toStdString(); });

TEST_F(HistoryExports, anEntryCanBeExportedByItsFileOrByItsText)
{
    EXPECT_TRUE(canExport(*entry)) << "the text in memory";
    entry->text = " \n";
    EXPECT_FALSE(canExport(*entry));
    put("stored.txt", "");
    EXPECT_TRUE(canExport(*entry)) << "the file, whatever is in it";
    entry->txtPath = "";
    EXPECT_FALSE(canExport(*entry));
}

} // namespace

} // namespace sorvanta
