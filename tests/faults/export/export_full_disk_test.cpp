#include "export/batch_export.h"
#include "export/export_delivery.h"
#include "platform/error.h"
#include "platform/file_system.h"
#include "support/fake_file_panels.h"
#include "support/printing.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <optional>

namespace sorvanta {

namespace {

/// Exports onto a disk that has room for next to nothing.
class ExportOnFullDisk : public testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_FALSE(disk.isEmpty()) << "there is no small disk: start this by with_small_disk.sh";
        writeFileAtomically(disk + "/talk.txt", "old");
        ASSERT_TRUE(filler.open(QIODevice::WriteOnly | QIODevice::Unbuffered));
        const QByteArray bytes(4096, 'f');
        while (filler.write(bytes) == bytes.size()) { }
        filler.close();
    }
    void TearDown() override
    {
        for (const QString &name : names())
            QFile::remove(disk + '/' + name);
    }

    QStringList names() const { return QDir(disk).entryList(QDir::Files | QDir::Hidden, QDir::Name); }
    QString outOfSpace(const QString &name) const
    {
        return "You can’t save the file “" + name + "” because the volume “" + disk + "” is out of space.";
    }
    ExportMessages messages()
    {
        return {.setMessage = [this](const std::optional<QString> &text) { message = text; },
                .setError = [this](const std::optional<QString> &text) { error = text; }};
    }
    ExportDelivery::Settings settings(const DeliveryForm &form)
    {
        return {.form = form,
                .panels = panels,
                .defaultName = [](const QString &extension) { return "talk." + extension; },
                .messages = messages(),
                .downloadsFolder = [this] { return std::optional(disk); }};
    }

    const QString disk = qEnvironmentVariable("SORVANTA_SMALL_DISK");
    QFile filler{disk + "/filler"};
    FakeFilePanels panels;
    std::optional<QString> message = "Done";
    std::optional<QString> error;
    const DeliveryContent large{.text = QString(100'000, 'x')};
};

TEST_F(ExportOnFullDisk, aFailedSaveLeavesTheOldFileAndNothingBesideIt)
{
    ExportDelivery delivery(settings(transcriptionDelivery));
    delivery.saveWithPanel(large, "txt", {"txt"}, "Saved TXT");
    panels.answer(disk + "/talk.txt");
    EXPECT_EQ(error, "Could not save TXT: " + outOfSpace("talk.txt"));
    EXPECT_EQ(message, "Done");
    EXPECT_EQ(readFile(disk + "/talk.txt"), "old");
    EXPECT_EQ(names(), QStringList({"filler", "talk.txt"}));
}

TEST_F(ExportOnFullDisk, aFailedDownloadLeavesNothing)
{
    ExportDelivery delivery(settings(transcriptionDelivery));
    delivery.saveToDownloads(large, "txt", "Saved TXT");
    EXPECT_EQ(error, "Could not save TXT to Downloads: " + outOfSpace("talk-2.txt"));
    EXPECT_EQ(message, "Done");
    EXPECT_EQ(names(), QStringList({"filler", "talk.txt"}));
}

TEST_F(ExportOnFullDisk, ofTheHistoryACopyThatFailsLeavesNoHalfOfItAndTheStoredFile)
{
    const QTemporaryDir elsewhere;
    const QString stored = elsewhere.filePath("stored.srt");
    writeFileAtomically(stored, QByteArray(100'000, 's'));
    ExportDelivery delivery(settings(historyDelivery));
    delivery.saveWithPanel({.sourcePath = stored}, "srt", {"srt"}, "Saved SRT");
    panels.answer(disk + "/walk.srt");
    EXPECT_EQ(error, "Export failed: " + outOfSpace("walk.srt"));
    EXPECT_EQ(message, std::nullopt);
    EXPECT_EQ(names(), QStringList({"filler", "talk.txt"}));
    EXPECT_EQ(readFile(stored).size(), 100'000);
    delivery.saveToDownloads({.sourcePath = stored}, "srt", "Saved SRT");
    EXPECT_EQ(error, "Download failed: " + outOfSpace("talk.srt"));
}

TEST_F(ExportOnFullDisk, aCopyThatFailsLeavesTheFileThatItWasToReplace)
{
    const QTemporaryDir elsewhere;
    const QString recording = elsewhere.filePath("recording.wav");
    writeFileAtomically(recording, QByteArray(1'000'000, 's'));
    try {
        replaceByCopy(recording, disk + "/talk.txt", FileAccess::Usual);
        ADD_FAILURE() << "there is room";
    } catch (const Error &failure) {
        EXPECT_EQ(failure.localizedDescription(), outOfSpace("talk.txt"));
    }
    EXPECT_EQ(readFile(disk + "/talk.txt"), "old");
    EXPECT_EQ(names(), QStringList({"filler", "talk.txt"}));
}

TEST_F(ExportOnFullDisk, exportAllStopsAtTheFileThatFindsNoRoom)
{
    ASSERT_TRUE(filler.resize(filler.size() - 16'384));
    const QList<BatchExportSource> sources{{.path = "small", .input = {.text = "small"}},
                                           {.path = "large", .input = {.text = QString(100'000, 'x')}},
                                           {.path = "last", .input = {.text = "last"}}};
    BatchExport batch(
        {.sourceCount = [&] { return sources.size(); },
         .source = [&](qsizetype index) { return sources[index]; },
         .panels = panels,
         .defaultName = [](const QString &extension, const QString &path) { return path + '.' + extension; },
         .messages = messages()});
    batch.exportAll(ExportFormat::txt);
    panels.answer(disk);
    EXPECT_EQ(error, "Failed to export TXT: " + outOfSpace("large.txt"));
    EXPECT_EQ(message, "Done");
    EXPECT_EQ(names(), QStringList({"filler", "small.txt", "talk.txt"}));
}

} // namespace

} // namespace sorvanta
