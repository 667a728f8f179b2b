#include "history/history_json.h"
#include "history/transcription_history_store.h"
#include "platform/file_system.h"
#include "support/history_entries.h"
#include "support/history_surroundings.h"
#include "support/printing.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QMap>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace sorvanta;

namespace {

constexpr qint64 page = 4096;

/// A history of 40 kB on a disk that is then filled up.
class FullDisk : public testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_FALSE(disk.isEmpty()) << "there is no small disk: start this by with_small_disk.sh";
        store.emplace(surroundings.in(base));
        store->addEntry({.text = QString(40'000, 'x'), .sourceLabel = "old"});
        ASSERT_EQ(store->errorMessage(), std::nullopt);
    }

    void TearDown() override
    {
        QDir(base).removeRecursively();
        QFile::remove(filler.fileName());
    }

    /// Takes all room of the disk but that many bytes.
    void fill(qint64 room)
    {
        ASSERT_TRUE(filler.open(QIODevice::WriteOnly | QIODevice::Unbuffered));
        const QByteArray bytes(page, 'f');
        while (filler.write(bytes) == bytes.size()) { }
        ASSERT_GT(filler.size(), room);
        ASSERT_TRUE(filler.resize(filler.size() - room));
        filler.close();
    }

    /// All files of the history by name, with what they hold.
    QMap<QString, QByteArray> files() const
    {
        QMap<QString, QByteArray> result;
        QDirIterator iterator(base, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
        while (iterator.hasNext()) {
            const QString path = iterator.next();
            result.insert(path.mid(base.size() + 1), readFile(path));
        }
        return result;
    }

    QString outOfSpace(const QString &name) const
    {
        return "You can’t save the file “" + name + "” because the volume “" + disk + "” is out of space.";
    }

    const QString disk = qEnvironmentVariable("SORVANTA_SMALL_DISK");
    const QString base = disk + "/sorvanta";
    const QString secondName = "whisper-1770000000127-0000ad";
    QFile filler{disk + "/filler"};
    FakeHistorySurroundings surroundings;
    std::optional<TranscriptionHistoryStore> store;
};

TEST_F(FullDisk, refusesATextAndKeepsEverything)
{
    const QMap<QString, QByteArray> before = files();
    const QList<TranscriptionHistoryEntry> entries = store->entries();
    fill(0);
    store->addEntry({.text = "new"});
    EXPECT_EQ(store->errorMessage(), "Unable to save history: " + outOfSpace(secondName + ".txt"));
    EXPECT_EQ(files(), before);
    EXPECT_EQ(store->entries(), entries);
}

TEST_F(FullDisk, refusesTheListButKeepsTheOldOneAndTheNewText)
{
    QMap<QString, QByteArray> expected = files();
    expected.insert("transcripts/" + secondName + ".txt", "new");
    fill(5 * page);
    store->addEntry({.text = "new"});
    EXPECT_EQ(store->errorMessage(), "Unable to save history: " + outOfSpace("transcription-history.json"));
    EXPECT_EQ(files(), expected);
    EXPECT_EQ(store->entries().size(), 2);

    ASSERT_TRUE(filler.remove());
    store->addEntry({.text = "newest"});
    EXPECT_EQ(store->errorMessage(), std::nullopt);
    EXPECT_EQ(decodedHistory(readFile(store->historyPath())), store->entries());
    EXPECT_EQ(store->entries().size(), 3);
}

TEST_F(FullDisk, refusesARecordingAndLeavesNoHalfOfIt)
{
    QTemporaryDir elsewhere;
    const QString recording = elsewhere.filePath("talk.wav");
    writeFileAtomically(recording, QByteArray(2'000'000, 's'));
    QMap<QString, QByteArray> expected = files();
    expected.insert("transcripts/" + secondName + ".txt", "new");
    store->addEntry({.text = "new", .recordingPath = recording});
    EXPECT_EQ(store->errorMessage(), "Unable to save history: " + outOfSpace(secondName + ".wav"));
    EXPECT_EQ(files(), expected);
    EXPECT_EQ(store->entries().size(), 1);
    EXPECT_EQ(readFile(recording).size(), 2'000'000);
}

TEST_F(FullDisk, doesNotReplaceADamagedHistoryThatItCannotKeep)
{
    const QByteArray damaged = readFile(store->historyPath()).chopped(1);
    writeFileAtomically(store->historyPath(), damaged);
    store->reload();
    fill(5 * page);
    store->addEntry({.text = "new"});
    EXPECT_TRUE(store->errorText().startsWith(
        "Unable to save history: You can’t save the file “transcription-history.json.unreadable-"))
        << store->errorText().toStdString();
    EXPECT_TRUE(store->errorText().endsWith("” because the volume “" + disk + "” is out of space."));
    EXPECT_EQ(readFile(store->historyPath()), damaged);
    EXPECT_EQ(files().keys().filter(".unreadable-"), QStringList());

    ASSERT_TRUE(filler.remove());
    store->addEntry({.text = "newest"});
    EXPECT_EQ(store->errorMessage(), std::nullopt);
    const QStringList copies = files().keys().filter(".unreadable-");
    ASSERT_EQ(copies.size(), 1);
    EXPECT_EQ(files().value(copies.first()), damaged);
}

TEST_F(FullDisk, refusesTheListAfterADeletionButKeepsTheOldOne)
{
    store->addEntry({.text = "short"});
    const QByteArray history = readFile(store->historyPath());
    const QString deleted = store->entries().first().id;
    fill(0);
    store->deleteEntry(deleted);
    EXPECT_EQ(store->errorMessage(), "Unable to update history: " + outOfSpace("transcription-history.json"));
    EXPECT_EQ(store->entries().size(), 1);
    EXPECT_EQ(readFile(store->historyPath()), history);
    EXPECT_FALSE(files().contains("transcripts/" + secondName + ".txt"));
}

} // namespace
