#include "history/transcription_history_store.h"

#include "history/history_json.h"
#include "platform/folders.h"
#include "support/history_store_fixture.h"

#include <QRegularExpression>
#include <QSignalSpy>
#include <QStandardPaths>

#include <gmock/gmock.h>

#include <random>

#include <sys/stat.h>

using namespace sorvanta;

namespace {

using Entry = TranscriptionHistoryEntry;

class HistoryStore : public HistoryStoreTest {
protected:
    QList<Entry> saved() const { return decodedHistory(readFile(historyPath())); }
};

TEST_F(HistoryStore, makesItsFoldersForTheUserAloneAndWritesNoFile)
{
    EXPECT_EQ(store().entries(), QList<Entry>());
    EXPECT_EQ(store().errorMessage(), std::nullopt);
    for (const char *name : {"", "/transcripts", "/recordings"}) {
        struct stat status { };
        ASSERT_EQ(::stat((base + name).toUtf8().constData(), &status), 0) << name;
        EXPECT_EQ(status.st_mode & 07777, 0700u) << name;
    }
    EXPECT_EQ(namesIn(""), (QStringList{"recordings", "transcripts"}));
    EXPECT_EQ(store().historyPath(), base + "/transcription-history.json");
    EXPECT_EQ(store().transcriptsDirectory(), base + "/transcripts");
    EXPECT_EQ(store().recordingsDirectory(), base + "/recordings");
}

TEST_F(HistoryStore, mendsMissingFoldersBeforeItAdds)
{
    store();
    QDir(base).removeRecursively();
    store().addEntry({.text = "x"});
    EXPECT_EQ(store().errorMessage(), std::nullopt);
    EXPECT_EQ(namesIn(""), (QStringList{"recordings", "transcription-history.json", "transcripts"}));
    store().ensureDirectories();
    EXPECT_EQ(store().errorMessage(), std::nullopt);
}

TEST_F(HistoryStore, readsAnEmptyArrayAsAnEmptyList)
{
    putHistory("[]");
    EXPECT_EQ(store().entries(), QList<Entry>());
    EXPECT_EQ(store().errorMessage(), std::nullopt);
}

TEST_F(HistoryStore, readsItsFileAtTheStartSortedAndDoesNotRewriteIt)
{
    const QByteArray bytes = encodedHistory(
        {historyEntry("bad", "not a date"), historyEntry("no fraction", "2030-01-01T00:00:00Z"),
         historyEntry("old", "2020-01-01T00:00:00.000Z"), historyEntry("new", "2021-01-01T00:00:00.000Z")});
    putHistory(bytes);
    EXPECT_EQ(historyIds(store().entries()), (QStringList{"new", "old", "bad", "no fraction"}));
    EXPECT_EQ(readFile(historyPath()), bytes);
}

TEST_F(HistoryStore, addsAnEntryWithAllThatItIsGiven)
{
    const QString source = recording("talk.M4A", "recorded");
    *surroundings.now = 1'770'000'000.1239;
    store().addEntry({.text = " \n\u200BHello\nthere é \u2028",
                      .srtText = " 1\n00:00 --> 00:01\nHello\n",
                      .sourceLabel = source,
                      .model = "Large v3",
                      .language = "de",
                      .diarization = true,
                      .recordingPath = source});
    Entry expected;
    expected.id = "1770000000123-0000aa";
    expected.text = "Hello\nthere é";
    expected.sourceLabel = source;
    expected.model = "Large v3";
    expected.language = "de";
    expected.diarization = true;
    expected.txtPath = base + "/transcripts/whisper-1770000000124-0000ab.txt";
    expected.srtPath = base + "/transcripts/whisper-1770000000124-0000ab.srt";
    expected.recordingPath = base + "/recordings/whisper-1770000000124-0000ab.M4A";
    expected.createdAt = "2026-02-02T02:40:00.126Z";
    EXPECT_EQ(store().entries(), QList{expected});
    EXPECT_EQ(store().errorMessage(), std::nullopt);
    EXPECT_EQ(saved(), QList{expected});
    EXPECT_EQ(readFile(expected.txtPath), "Hello\nthere é");
    EXPECT_EQ(readFile(*expected.srtPath), " 1\n00:00 --> 00:01\nHello\n");
    EXPECT_EQ(readFile(*expected.recordingPath), "recorded");
    EXPECT_EQ(readFile(source), "recorded");
    EXPECT_EQ(namesIn("transcripts").size(), 2);
    EXPECT_EQ(namesIn("recordings").size(), 1);
}

TEST_F(HistoryStore, savesInTheLayoutOfTheFile)
{
    store().addEntry({.text = "Hello", .sourceLabel = "/music/a.wav", .model = "Base", .language = "auto"});
    EXPECT_EQ(readFile(historyPath()), QByteArray(R"([
  {
    "createdAt" : "2026-02-02T02:40:00.126Z",
    "diarization" : false,
    "id" : "1770000000123-0000aa",
    "language" : "auto",
    "model" : "Base",
    "sourceLabel" : "/music/a.wav",
    "text" : "Hello",
    "txtPath" : "BASE/transcripts/whisper-1770000000124-0000ab.txt"
  }
])")
                                           .replace("BASE", base.toUtf8()));
}

TEST_F(HistoryStore, addsNothingForBlankTextWithoutARecording)
{
    putHistory("damaged");
    const std::optional<QString> message = store().errorMessage();
    ASSERT_TRUE(message);
    QDir(path("transcripts")).removeRecursively();
    store().addEntry({.text = " \n\t\u00A0", .srtText = "1", .sourceLabel = "s", .replaceExisting = true});
    EXPECT_TRUE(store().entries().isEmpty());
    EXPECT_EQ(store().errorMessage(), message);
    EXPECT_FALSE(itemExists(path("transcripts")));
    EXPECT_EQ(*surroundings.count, 0);
}

TEST_F(HistoryStore, addsARecordingWithoutText)
{
    store().addEntry({.text = "  \n ", .sourceLabel = "s", .recordingPath = recording("talk.wav")});
    ASSERT_EQ(store().entries().size(), 1);
    const Entry entry = store().entries().first();
    EXPECT_EQ(entry.text, "");
    EXPECT_TRUE(itemExists(entry.txtPath));
    EXPECT_EQ(readFile(entry.txtPath), "");
    EXPECT_EQ(readFile(entry.recordingPath.value()), "sound");
    EXPECT_EQ(entry.srtPath, std::nullopt);
}

TEST_F(HistoryStore, takesAnEmptyRecordingPathForAPathButForNoRecording)
{
    store().addEntry({.text = " ", .recordingPath = ""});
    ASSERT_EQ(store().entries().size(), 1);
    EXPECT_EQ(store().entries().first().recordingPath, std::nullopt);
    EXPECT_EQ(store().errorMessage(), std::nullopt);
}

TEST_F(HistoryStore, addsAnEntryWithoutTheRecordingIfThatHasGone)
{
    store().addEntry({.text = "x", .recordingPath = outside.filePath("gone.wav")});
    ASSERT_EQ(store().entries().size(), 1);
    EXPECT_EQ(store().entries().first().recordingPath, std::nullopt);
    EXPECT_EQ(store().errorMessage(), std::nullopt);
    EXPECT_EQ(namesIn("recordings"), QStringList());
}

TEST_F(HistoryStore, storesARecordingWithoutExtensionAsWav)
{
    store().addEntry({.text = "x", .recordingPath = recording("recorded")});
    EXPECT_EQ(store().entries().first().recordingPath, base + "/recordings/whisper-1770000000124-0000ab.wav");
    EXPECT_EQ(namesIn("recordings"), QStringList{"whisper-1770000000124-0000ab.wav"});
}

TEST_F(HistoryStore, replacesWhatLiesWhereTheCopyOfARecordingGoes)
{
    store();
    writeFileAtomically(path("recordings/whisper-1770000000124-0000ab.wav"), "older");
    store().addEntry({.text = "x", .recordingPath = recording("a.wav")});
    EXPECT_EQ(readFile(store().entries().first().recordingPath.value()), "sound");
    EXPECT_EQ(store().errorMessage(), std::nullopt);
}

TEST_F(HistoryStore, writesNoSubtitlesOfNothingButWhiteSpace)
{
    store().addEntry({.text = "x", .srtText = " \n\t "});
    store().addEntry({.text = "x", .srtText = ""});
    store().addEntry({.text = "x"});
    for (const Entry &entry : store().entries())
        EXPECT_EQ(entry.srtPath, std::nullopt);
    EXPECT_EQ(namesIn("transcripts").filter(".srt"), QStringList());
}

TEST_F(HistoryStore, putsTheNewEntryFirstWhateverItsDate)
{
    putHistory(encodedHistory({historyEntry("future", "2099-01-01T00:00:00.000Z")}));
    store().addEntry({.text = "x"});
    EXPECT_EQ(historyIds(store().entries()), (QStringList{"1770000000123-0000aa", "future"}));
    EXPECT_EQ(historyIds(saved()), (QStringList{"1770000000123-0000aa", "future"}));
    store().reload();
    EXPECT_EQ(historyIds(store().entries()), (QStringList{"future", "1770000000123-0000aa"}));
}

TEST_F(HistoryStore, replacesTheEntryOfARecordingByItsTranscript)
{
    const QString source = recording("meeting.m4a");
    store().addEntry({.sourceLabel = source, .recordingPath = source, .replaceExisting = true});
    const Entry first = store().entries().first();
    store().addEntry({.text = "Hello", .sourceLabel = source, .recordingPath = source, .replaceExisting = true});
    ASSERT_EQ(store().entries().size(), 1);
    const Entry second = store().entries().first();
    EXPECT_EQ(second.text, "Hello");
    EXPECT_FALSE(itemExists(first.txtPath));
    EXPECT_FALSE(itemExists(first.recordingPath.value()));
    EXPECT_NE(second.recordingPath, first.recordingPath);
    EXPECT_EQ(readFile(second.recordingPath.value()), "sound");
    EXPECT_EQ(saved(), QList{second});
    EXPECT_TRUE(itemExists(source));
}

TEST_F(HistoryStore, copiesItsOwnRecordingBeforeTheReplacedEntryTakesItAway)
{
    const QString source = recording("meeting.m4a");
    store().addEntry({.text = "first", .sourceLabel = source, .recordingPath = source});
    for (const char *detour : {"", "/../recordings/"}) {
        const Entry old = store().entries().first();
        const QString stored = old.recordingPath.value();
        const QString named = *detour ? path("recordings") + detour + QFileInfo(stored).fileName() : stored;
        store().addEntry({.text = "next", .sourceLabel = source, .recordingPath = named, .replaceExisting = true});
        EXPECT_EQ(store().errorMessage(), std::nullopt);
        ASSERT_EQ(store().entries().size(), 1);
        const QString copy = store().entries().first().recordingPath.value_or("none");
        EXPECT_NE(copy, stored);
        EXPECT_EQ(readFile(copy), "sound");
        EXPECT_EQ(namesIn("recordings"), QStringList{QFileInfo(copy).fileName()});
        EXPECT_FALSE(itemExists(old.txtPath));
        EXPECT_EQ(saved(), store().entries());
    }
}

TEST_F(HistoryStore, comparesRecordingPathsCharacterByCharacter)
{
    const QStringList paths{"/r/a.wav", "/r//a.wav", "/r/./a.wav", "/r/A.wav", "/r/a.wav/"};
    QList<Entry> entries;
    for (const QString &other : paths) {
        entries.append(historyEntry(QString::number(entries.size())));
        entries.last().recordingPath = other;
    }
    putHistory(encodedHistory(entries));
    store().addEntry({.text = "x", .sourceLabel = "s", .recordingPath = "/r/a.wav", .replaceExisting = true});
    EXPECT_EQ(historyIds(store().entries()), (QStringList{"1770000000123-0000aa", "1", "2", "3", "4"}));
}

TEST_F(HistoryStore, deletesTextsAndSubtitlesWhereverTheyLie)
{
    Entry entry = historyEntry("1");
    entry.txtPath = recording("a.txt");
    entry.srtPath = recording("a.srt");
    putHistory(encodedHistory({entry}));
    store().deleteEntry("1");
    EXPECT_FALSE(itemExists(entry.txtPath));
    EXPECT_FALSE(itemExists(*entry.srtPath));
}

TEST_F(HistoryStore, clearsAwayOldUnfinishedFilesAtTheStart)
{
    store();
    const QStringList old{path(".sorvanta-abcdef"), path("transcripts/.sorvanta-abcdef"), path(".sorvanta-settings")};
    for (const QString &name : old) {
        QFile file(name);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        ASSERT_TRUE(file.setFileTime(QDateTime::currentDateTime().addSecs(-90), QFile::FileModificationTime));
    }
    writeFileAtomically(path(".sorvanta-fedcba"), "in use");
    EXPECT_EQ(storeAfterRestart().errorMessage(), std::nullopt);
    EXPECT_EQ(namesIn(""), (QStringList{".sorvanta-fedcba", ".sorvanta-settings", "recordings", "transcripts"}))
        << "one is in use, the other not of this form";
    EXPECT_EQ(namesIn("transcripts"), QStringList());
}

TEST_F(HistoryStore, keepsTwoRunsOverTheSameFileApart)
{
    store().addEntry({.text = "one", .sourceLabel = "/a.wav"});
    store().addEntry({.text = "two", .sourceLabel = "/a.wav"});
    ASSERT_EQ(store().entries().size(), 2);
    EXPECT_EQ(store().entries()[0].text, "two");
    EXPECT_EQ(store().entries()[1].text, "one");
}

TEST_F(HistoryStore, findsWhatToReplaceByExactSourceOrRecordingOnly)
{
    Entry bySource = historyEntry("source");
    bySource.sourceLabel = "/a.wav";
    Entry byRecording = historyEntry("recording");
    byRecording.recordingPath = "/a.wav";
    Entry otherCase = historyEntry("case");
    otherCase.sourceLabel = "/A.wav";
    Entry sameId = historyEntry("source");
    putHistory(encodedHistory({bySource, historyEntry("other"), byRecording, otherCase, sameId}));
    QSignalSpy reset(store().list(), &QAbstractItemModel::modelReset);
    store().addEntry({.text = "x", .sourceLabel = "/a.wav", .recordingPath = "/a.wav", .replaceExisting = true});
    EXPECT_EQ(historyIds(store().entries()), (QStringList{"1770000000123-0000aa", "other", "case"}));
    EXPECT_EQ(reset.count(), 0);
}

TEST_F(HistoryStore, doesNotTakeAnEmptyRecordingPathForThatOfAnotherEntry)
{
    Entry emptyPath = historyEntry("empty");
    emptyPath.recordingPath = "";
    putHistory(encodedHistory({emptyPath, historyEntry("none")}));
    store().addEntry({.text = "x", .sourceLabel = "s", .recordingPath = "", .replaceExisting = true});
    store().addEntry({.text = "x", .sourceLabel = "t", .replaceExisting = true});
    EXPECT_EQ(store().entries().size(), 4);
}

TEST_F(HistoryStore, deletesAnEntryWithItsFiles)
{
    store().addEntry({.text = "keep", .srtText = "1", .recordingPath = recording("a.wav")});
    store().addEntry({.text = "go", .srtText = "2", .recordingPath = recording("b.wav")});
    const Entry gone = store().entries()[0];
    const Entry kept = store().entries()[1];
    store().deleteEntry(gone.id);
    EXPECT_EQ(store().entries(), QList{kept});
    EXPECT_EQ(saved(), QList{kept});
    for (const QString &file : {gone.txtPath, *gone.srtPath, *gone.recordingPath})
        EXPECT_FALSE(itemExists(file));
    for (const QString &file : {kept.txtPath, *kept.srtPath, *kept.recordingPath})
        EXPECT_TRUE(itemExists(file));
    EXPECT_TRUE(itemExists(outside.filePath("b.wav")));
    EXPECT_EQ(store().errorMessage(), std::nullopt);
}

TEST_F(HistoryStore, deletesTheFirstOfEntriesWithTheSameIdOnly)
{
    Entry first = historyEntry("1", "2026-01-02T00:00:00.000Z");
    Entry second = historyEntry("1", "2026-01-01T00:00:00.000Z");
    putHistory(encodedHistory({first, second}));
    store().deleteEntry("1");
    EXPECT_EQ(store().entries(), QList{second});
}

TEST_F(HistoryStore, doesNothingForAnUnknownId)
{
    putHistory("damaged");
    const std::optional<QString> message = store().errorMessage();
    ASSERT_TRUE(message);
    store().deleteEntry("unknown");
    EXPECT_EQ(store().errorMessage(), message);
    EXPECT_EQ(readFile(historyPath()), "damaged");
}

TEST_F(HistoryStore, neverDeletesARecordingOutsideOfItsFolder)
{
    const QString kept = recording("kept.wav");
    store();
    makeFolder(path("recordings/deeper"));
    writeFileAtomically(path("recordings/deeper/a.wav"), "kept");
    writeFileAtomically(path("a.wav"), "kept");
    QList<Entry> entries;
    for (const QString &file : {kept, path("recordings/deeper/a.wav"), path("recordings/../a.wav")}) {
        entries.append(historyEntry(QString::number(entries.size())));
        entries.last().recordingPath = file;
    }
    putHistory(encodedHistory(entries));
    store().reload();
    for (const Entry &entry : entries) {
        store().deleteEntry(entry.id);
        EXPECT_TRUE(itemExists(*entry.recordingPath)) << entry.recordingPath->toStdString();
    }
    EXPECT_TRUE(store().entries().isEmpty());
}

TEST_F(HistoryStore, forgetsWhatItDoesNotKnowAtTheNextSave)
{
    QByteArray bytes = encodedHistory({historyEntry("1")});
    putHistory(bytes.replace("\"id\"", "\"rating\" : 5,\n \"srtPath\" : null,\n \"id\""));
    ASSERT_EQ(historyIds(store().entries()), QStringList{"1"});
    store().addEntry({.text = "x"});
    EXPECT_FALSE(readFile(historyPath()).contains("rating"));
    EXPECT_FALSE(readFile(historyPath()).contains("srtPath"));
}

TEST_F(HistoryStore, followsAFileThatSomeoneElseChanged)
{
    store().addEntry({.text = "x"});
    putHistory(encodedHistory({historyEntry("other")}));
    store().reload();
    EXPECT_EQ(historyIds(store().entries()), QStringList{"other"});
    QFile::remove(historyPath());
    store().reload();
    EXPECT_TRUE(store().entries().isEmpty());
    EXPECT_EQ(store().errorMessage(), std::nullopt);
}

TEST_F(HistoryStore, announcesRowsAndDoesNotRebuildTheListWhenItIsReadAgain)
{
    store();
    QSignalSpy inserted(store().list(), &QAbstractItemModel::rowsInserted);
    QSignalSpy removed(store().list(), &QAbstractItemModel::rowsRemoved);
    QSignalSpy reset(store().list(), &QAbstractItemModel::modelReset);
    store().addEntry({.text = "x"});
    store().reload();
    store().deleteEntry(store().entries().first().id);
    EXPECT_EQ(inserted.count(), 1);
    EXPECT_EQ(removed.count(), 1);
    EXPECT_EQ(reset.count(), 0);
}

TEST_F(HistoryStore, savesExactlyItsListWhateverWasDoneBefore)
{
    std::mt19937 random(20260202);
    const auto oneOf = [&](int count) { return static_cast<int>(random() % static_cast<unsigned>(count)); };
    for (int step = 0; step < 600; ++step) {
        switch (oneOf(8)) {
        case 0:
            store().reload();
            continue;
        case 1:
            if (store().entries().isEmpty())
                continue;
            store().deleteEntry(store().entries()[oneOf(static_cast<int>(store().entries().size()))].id);
            break;
        case 2: // fails after entries have been replaced
            QDir(path("transcripts")).removeRecursively();
            writeFileAtomically(path("transcripts"), "no folder");
            store().addEntry({.text = "lost", .sourceLabel = QString::number(oneOf(6)), .replaceExisting = true});
            EXPECT_TRUE(store().errorMessage());
            removeItem(path("transcripts"));
            continue;
        default:
            store().addEntry({.text = u"Ünï %1"_qs.arg(step),
                              .sourceLabel = QString::number(oneOf(6)),
                              .replaceExisting = oneOf(4) == 0});
        }
        ASSERT_EQ(store().errorMessage(), std::nullopt) << step;
        ASSERT_EQ(readFile(historyPath()), encodedHistory(store().entries())) << step;
    }
    EXPECT_GT(store().entries().size(), 5);
}

TEST_F(HistoryStore, findsEverythingAgainAfterARestart)
{
    store().addEntry({.text = "one", .srtText = "1", .sourceLabel = "a", .model = "m", .language = "de"});
    *surroundings.now += 10;
    store().addEntry({.text = "two", .recordingPath = recording("b.wav")});
    const QList<Entry> before = store().entries();
    EXPECT_EQ(storeAfterRestart().entries(), before);
}

TEST(HistoryBaseFolder, liesInTheApplicationSupportFolderOrElseAmongTemporaryFiles)
{
    EXPECT_EQ(historyBaseFolder(QString("/home/me/.local/share")), "/home/me/.local/share/sorvanta");
    EXPECT_EQ(historyBaseFolder(std::nullopt), temporaryFolder() + "/sorvanta");
}

TEST(SharedHistory, isOneStoreOfThisUser)
{
    QTemporaryDir data;
    QStandardPaths::setTestModeEnabled(false);
    qputenv("XDG_DATA_HOME", data.path().toUtf8());
    TranscriptionHistoryStore &store = TranscriptionHistoryStore::shared();
    EXPECT_EQ(store.historyPath(), data.filePath("sorvanta/transcription-history.json"));
    EXPECT_EQ(&store, &TranscriptionHistoryStore::shared());

    const qint64 before = QDateTime::currentMSecsSinceEpoch();
    store.addEntry({.text = "x"});
    store.addEntry({.text = "y"});
    const qint64 after = QDateTime::currentMSecsSinceEpoch();
    ASSERT_EQ(store.entries().size(), 2);
    const Entry entry = store.entries().first();
    const QRegularExpression idPattern("^([0-9]+)-([0-9a-f]{6})$");
    const auto id = idPattern.match(entry.id);
    ASSERT_TRUE(id.hasMatch()) << entry.id.toStdString();
    EXPECT_GE(id.captured(1).toLongLong(), before);
    EXPECT_LE(id.captured(1).toLongLong(), after);
    EXPECT_NE(store.entries()[1].id.right(6), entry.id.right(6));
    const QRegularExpression namePattern("/whisper-[0-9]+-([0-9a-f]{6})\\.txt$");
    const auto name = namePattern.match(entry.txtPath);
    ASSERT_TRUE(name.hasMatch()) << entry.txtPath.toStdString();
    EXPECT_NE(name.captured(1), id.captured(2));
    QStandardPaths::setTestModeEnabled(true);
}

} // namespace
