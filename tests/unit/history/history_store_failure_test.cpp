#include "history/transcription_history_store.h"

#include "history/history_json.h"
#include "support/history_store_fixture.h"

#include <QSignalSpy>

using namespace sorvanta;

namespace {

using Entry = TranscriptionHistoryEntry;

const QString missing = "The data couldn’t be read because it is missing.";
const QString badFormat = "The data couldn’t be read because it isn’t in the correct format.";

class HistoryStoreFailures : public HistoryStoreTest {
protected:
    /// The folder stands where the file would have to be written.
    void blockWith(const QString &name) const { makeFolder(path(name)); }
    QString firstCopy() const
    {
        const QStringList copies = namesIn("").filter(".unreadable-");
        return copies.isEmpty() ? QString() : copies.first();
    }
};

TEST_F(HistoryStoreFailures, aFileThatLacksSomethingLeavesTheListAndTheFileAsTheyWere)
{
    store().addEntry({.text = "x"});
    const QList<Entry> before = store().entries();
    QByteArray bytes = encodedHistory({historyEntry("1"), historyEntry("2")});
    const qsizetype last = bytes.lastIndexOf("\"txtPath\"");
    bytes.replace(last, 9, "\"path\"");
    putHistory(bytes);
    QSignalSpy changed(&store(), &TranscriptionHistoryStore::errorMessageChanged);
    store().reload();
    EXPECT_TRUE(store().errorMessage().value().startsWith("Unable to read history: " + missing))
        << store().errorText().toStdString();
    EXPECT_EQ(changed.count(), 1);
    EXPECT_EQ(store().entries(), before);
    EXPECT_EQ(readFile(historyPath()), bytes);
}

TEST_F(HistoryStoreFailures, aDamagedFileAtTheStartLeavesTheListEmptyAndTheFileAsItWas)
{
    putHistory("[{\"id\":");
    EXPECT_TRUE(store().entries().isEmpty());
    EXPECT_TRUE(store().errorText().startsWith("Unable to read history: " + badFormat
                                               + " The file will be kept as “transcription-history.json.unreadable-"));
    EXPECT_EQ(readFile(historyPath()), "[{\"id\":");
    EXPECT_EQ(firstCopy(), "");
}

TEST_F(HistoryStoreFailures, aDamagedFileIsKeptWhenTheNextSaveReplacesIt)
{
    putHistory("damaged");
    const QString message = store().errorText();
    store().addEntry({.text = "x"});
    EXPECT_EQ(store().errorMessage(), std::nullopt);
    ASSERT_NE(firstCopy(), "");
    EXPECT_TRUE(message.contains("“" + firstCopy() + "”"));
    EXPECT_EQ(readFile(path(firstCopy())), "damaged");
    EXPECT_EQ(decodedHistory(readFile(historyPath())), store().entries());
    store().addEntry({.text = "y"});
    EXPECT_EQ(namesIn("").filter(".unreadable-").size(), 1);
}

TEST_F(HistoryStoreFailures, aHistoryThatCannotBeKeptIsNotReplaced)
{
    blockWith("transcription-history.json");
    writeFileAtomically(path("transcription-history.json/inner"), "kept");
    EXPECT_TRUE(store().errorText().startsWith(
        "Unable to read history: The file “transcription-history.json” couldn’t be opened. "));
    store().addEntry({.text = "x"});
    EXPECT_EQ(store().errorMessage(),
              "Unable to save history: The file “transcription-history.json” couldn’t be opened.");
    EXPECT_EQ(readFile(path("transcription-history.json/inner")), "kept");
    EXPECT_EQ(store().entries().size(), 1);
}

TEST_F(HistoryStoreFailures, aGoodReadClearsTheMessage)
{
    putHistory("damaged");
    ASSERT_TRUE(store().errorMessage());
    QSignalSpy changed(&store(), &TranscriptionHistoryStore::errorMessageChanged);
    putHistory("[]");
    store().reload();
    EXPECT_EQ(store().errorMessage(), std::nullopt);
    EXPECT_EQ(store().errorText(), "");
    EXPECT_EQ(changed.count(), 1);
}

TEST_F(HistoryStoreFailures, aFileThatHasGoneClearsTheMessage)
{
    putHistory("damaged");
    ASSERT_TRUE(store().errorMessage());
    QFile::remove(historyPath());
    store().reload();
    EXPECT_EQ(store().errorMessage(), std::nullopt);
}

TEST_F(HistoryStoreFailures, aTextThatCannotBeWrittenAddsNoEntry)
{
    store();
    blockWith("transcripts/whisper-1770000000124-0000ab.txt");
    store().addEntry({.text = "x", .srtText = "1", .recordingPath = recording("a.wav")});
    EXPECT_EQ(store().errorMessage(),
              "Unable to save history: The file “whisper-1770000000124-0000ab.txt” couldn’t be saved in the folder "
              "“transcripts”.");
    EXPECT_TRUE(store().entries().isEmpty());
    EXPECT_EQ(namesIn("transcripts"), QStringList{"whisper-1770000000124-0000ab.txt"});
    EXPECT_EQ(namesIn("recordings"), QStringList());
    EXPECT_FALSE(itemExists(historyPath()));
}

TEST_F(HistoryStoreFailures, subtitlesThatCannotBeWrittenLeaveTheTextBehind)
{
    store();
    blockWith("transcripts/whisper-1770000000124-0000ab.srt");
    store().addEntry({.text = "x", .srtText = "1", .recordingPath = recording("a.wav")});
    EXPECT_EQ(store().errorMessage(),
              "Unable to save history: The file “whisper-1770000000124-0000ab.srt” couldn’t be saved in the folder "
              "“transcripts”.");
    EXPECT_TRUE(store().entries().isEmpty());
    EXPECT_EQ(readFile(path("transcripts/whisper-1770000000124-0000ab.txt")), "x");
    EXPECT_EQ(namesIn("recordings"), QStringList());
}

TEST_F(HistoryStoreFailures, aRecordingThatCannotBeCopiedLeavesTheTextsBehind)
{
    store();
    store().addEntry({.text = "x", .srtText = "1", .recordingPath = outside.path()});
    EXPECT_EQ(store().errorMessage(),
              "Unable to save history: The file “" + QDir(outside.path()).dirName() + "” couldn’t be opened.");
    EXPECT_TRUE(store().entries().isEmpty());
    EXPECT_EQ(namesIn("transcripts"),
              (QStringList{"whisper-1770000000124-0000ab.srt", "whisper-1770000000124-0000ab.txt"}));
    EXPECT_EQ(namesIn("recordings"), QStringList());
    EXPECT_FALSE(itemExists(historyPath()));
}

TEST_F(HistoryStoreFailures, anOldCopyThatCannotBeRemovedIsTold)
{
    store();
    makeFolder(path("recordings/whisper-1770000000124-0000ab.wav"));
    writeFileAtomically(path("recordings/whisper-1770000000124-0000ab.wav/inner"), "kept");
    store().addEntry({.text = "x", .recordingPath = recording("a.wav")});
    EXPECT_EQ(store().errorMessage(),
              "Unable to save history: “whisper-1770000000124-0000ab.wav” couldn’t be removed.");
    EXPECT_TRUE(store().entries().isEmpty());
    EXPECT_EQ(readFile(path("recordings/whisper-1770000000124-0000ab.wav/inner")), "kept");
}

TEST_F(HistoryStoreFailures, replacedEntriesAreGoneFromTheListButNotFromTheFileIfTheNewOneFails)
{
    const QString source = recording("a.wav");
    store().addEntry({.text = "old", .sourceLabel = source, .recordingPath = source});
    const Entry old = store().entries().first();
    const QByteArray bytes = readFile(historyPath());
    blockWith("transcripts/whisper-1770000000127-0000ad.txt");
    store().addEntry({.text = "new", .sourceLabel = source, .recordingPath = source, .replaceExisting = true});
    EXPECT_EQ(store().errorMessage(),
              "Unable to save history: The file “whisper-1770000000127-0000ad.txt” couldn’t be saved in the folder "
              "“transcripts”.");
    EXPECT_TRUE(store().entries().isEmpty());
    EXPECT_FALSE(itemExists(old.txtPath));
    EXPECT_FALSE(itemExists(old.recordingPath.value()));
    EXPECT_EQ(readFile(historyPath()), bytes);
}

TEST_F(HistoryStoreFailures, aStoredRecordingThatIsToBeCopiedStaysIfTheNewEntryFails)
{
    const QString source = recording("a.wav");
    store().addEntry({.text = "old", .sourceLabel = source, .recordingPath = source});
    const Entry old = store().entries().first();
    blockWith("transcripts/whisper-1770000000127-0000ad.txt");
    store().addEntry(
        {.text = "new", .sourceLabel = source, .recordingPath = old.recordingPath, .replaceExisting = true});
    EXPECT_TRUE(store().errorMessage());
    EXPECT_TRUE(store().entries().isEmpty());
    EXPECT_FALSE(itemExists(old.txtPath));
    EXPECT_EQ(readFile(old.recordingPath.value()), "sound");
}

TEST_F(HistoryStoreFailures, aHistoryThatTheSystemCannotLookAtIsNoMissingOne)
{
    makeFolder(base);
    ASSERT_TRUE(QFile::link(historyPath(), historyPath()));
    EXPECT_TRUE(store().errorText().startsWith(
        "Unable to read history: The file “transcription-history.json” couldn’t be opened. "));
    store().addEntry({.text = "x"});
    EXPECT_EQ(store().errorMessage(),
              "Unable to save history: The file “transcription-history.json” couldn’t be opened.");
    EXPECT_TRUE(QFileInfo(historyPath()).isSymLink());
}

TEST_F(HistoryStoreFailures, aHistoryTooLargeForMemoryIsToldAndKept)
{
    QTemporaryDir other("/dev/shm/huge-XXXXXX");
    const QString huge = other.filePath("huge.json");
    writeFileAtomically(huge, "x");
    ASSERT_EQ(::truncate(QFile::encodeName(huge).constData(), off_t(1) << 62), 0);
    makeFolder(base);
    ASSERT_TRUE(QFile::link(huge, historyPath()));
    EXPECT_TRUE(store().errorText().startsWith(
        "Unable to read history: The file “transcription-history.json” couldn’t be opened. The file will be kept"));
    EXPECT_TRUE(store().entries().isEmpty());
    EXPECT_EQ(QFileInfo(huge).size(), qint64(1) << 62);
}

TEST_F(HistoryStoreFailures, anEntryStaysInTheListIfOnlyTheListCannotBeSaved)
{
    store();
    blockWith("transcription-history.json");
    store().addEntry({.text = "x"});
    EXPECT_EQ(
        store().errorMessage(),
        "Unable to save history: The file “transcription-history.json” couldn’t be saved in the folder “sorvanta”.");
    ASSERT_EQ(store().entries().size(), 1);
    EXPECT_EQ(readFile(store().entries().first().txtPath), "x");
    EXPECT_EQ(namesIn(""), (QStringList{"recordings", "transcription-history.json", "transcripts"}));
}

TEST_F(HistoryStoreFailures, theNextSaveThatWorksSavesEverythingAndClearsTheMessage)
{
    store();
    blockWith("transcription-history.json");
    store().addEntry({.text = "one"});
    ASSERT_TRUE(store().errorMessage());
    QDir(base).rmdir("transcription-history.json");
    store().addEntry({.text = "two"});
    EXPECT_EQ(store().errorMessage(), std::nullopt);
    EXPECT_EQ(decodedHistory(readFile(historyPath())), store().entries());
    EXPECT_EQ(store().entries().size(), 2);
}

TEST_F(HistoryStoreFailures, aDeletedEntryStaysDeletedIfTheListCannotBeSaved)
{
    store().addEntry({.text = "x", .recordingPath = recording("a.wav")});
    const Entry entry = store().entries().first();
    QFile::remove(historyPath());
    blockWith("transcription-history.json");
    store().deleteEntry(entry.id);
    EXPECT_EQ(store().errorMessage(),
              "Unable to update history: The file “transcription-history.json” couldn’t be saved in the folder "
              "“sorvanta”.");
    EXPECT_TRUE(store().entries().isEmpty());
    EXPECT_FALSE(itemExists(entry.txtPath));
    EXPECT_FALSE(itemExists(entry.recordingPath.value()));
}

TEST_F(HistoryStoreFailures, aDeletionThatWorksClearsTheMessage)
{
    store().addEntry({.text = "x"});
    blockWith("transcripts/whisper-1770000000127-0000ad.txt");
    store().addEntry({.text = "y"});
    ASSERT_TRUE(store().errorMessage());
    store().deleteEntry(store().entries().first().id);
    EXPECT_EQ(store().errorMessage(), std::nullopt);
}

TEST_F(HistoryStoreFailures, foldersThatCannotBeMadeAreToldByTheWriteThatNeedsThem)
{
    makeFolder(base);
    writeFileAtomically(path("transcripts"), "a file");
    EXPECT_EQ(store().errorMessage(), std::nullopt);
    EXPECT_TRUE(itemExists(path("recordings")));
    store().addEntry({.text = "x"});
    EXPECT_EQ(store().errorMessage(),
              "Unable to save history: The file “whisper-1770000000124-0000ab.txt” couldn’t be saved in the folder "
              "“transcripts”.");
    EXPECT_EQ(readFile(path("transcripts")), "a file");
}

TEST_F(HistoryStoreFailures, aBaseFolderThatCannotBeMadeIsSilentAtTheStart)
{
    writeFileAtomically(outside.filePath("data"), "a file");
    EXPECT_EQ(store().errorMessage(), std::nullopt);
    store().addEntry({.text = "x"});
    EXPECT_TRUE(store().errorText().startsWith("Unable to save history: "));
    EXPECT_TRUE(store().entries().isEmpty());
}

TEST_F(HistoryStoreFailures, aFileThatCannotBeRemovedHindersNothing)
{
    store();
    makeFolder(path("transcripts/full.txt"));
    writeFileAtomically(path("transcripts/full.txt/inner"), "kept");
    writeFileAtomically(path("recordings/a.wav"), "sound");
    Entry entry = historyEntry("1");
    entry.txtPath = path("transcripts/full.txt");
    entry.recordingPath = path("recordings/a.wav");
    putHistory(encodedHistory({entry}));
    store().reload();
    store().deleteEntry("1");
    EXPECT_EQ(store().errorMessage(), std::nullopt);
    EXPECT_TRUE(store().entries().isEmpty());
    EXPECT_FALSE(itemExists(path("recordings/a.wav")));
    EXPECT_EQ(readFile(path("transcripts/full.txt/inner")), "kept");
    EXPECT_EQ(readFile(historyPath()), "[\n\n]");
}

} // namespace
