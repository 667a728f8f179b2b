#include "history/history_file.h"

#include "history/history_json.h"
#include "platform/error.h"
#include "platform/file_system.h"
#include "support/history_entries.h"
#include "support/printing.h"

#include <QDateTime>
#include <QDir>
#include <QTemporaryDir>
#include <QThreadPool>

#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/stat.h>

using namespace sorvanta;

namespace {

class HistoryFiles : public testing::Test {
protected:
    QStringList names() const
    {
        return QDir(folder.path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
    }
    QByteArray bytes(const QString &name) const { return readFile(folder.filePath(name)); }
    void put(const QString &name, const QByteArray &content) const
    {
        writeFileAtomically(folder.filePath(name), content);
    }

    QString readFailure()
    {
        try {
            file.read();
        } catch (const Error &error) {
            return error.localizedDescription();
        }
        return "none";
    }

    /// Writes a list and then more of them, each with one more entry before the others.
    QList<TranscriptionHistoryEntry> writtenOneByOne(const QStringList &ids)
    {
        QList<TranscriptionHistoryEntry> entries{historyEntry(ids.first())};
        file.write(entries);
        for (const QString &id : ids.sliced(1)) {
            entries.prepend(historyEntry(id));
            file.writeWithNewEntry(entries);
        }
        return entries;
    }

    /// As nobody else would: another text, and no trace of the change.
    void changeWithoutTrace(const char *text, const char *other) const
    {
        const QString path = folder.filePath("h.json");
        struct stat before;
        ASSERT_EQ(::stat(path.toUtf8().constData(), &before), 0);
        QFile changed(path);
        ASSERT_TRUE(changed.open(QIODevice::ReadWrite));
        changed.write(bytes("h.json").replace(text, other));
        changed.close();
        const timespec times[] = {before.st_atim, before.st_mtim};
        ASSERT_EQ(::utimensat(AT_FDCWD, path.toUtf8().constData(), times, 0), 0);
    }

    static double secondsAgo(double seconds) { return QDateTime::currentMSecsSinceEpoch() / 1000.0 - seconds; }
    /// @param secondsSince1970 when the file shall have been written
    void setWritten(double secondsSince1970) const
    {
        const timespec time{static_cast<time_t>(secondsSince1970), 0};
        const timespec times[] = {time, time};
        ASSERT_EQ(::utimensat(AT_FDCWD, folder.filePath("h.json").toUtf8().constData(), times, 0), 0);
    }

    bool isFoundAsWritten(const QList<TranscriptionHistoryEntry> &entries)
    {
        file.compare(entries);
        QThreadPool::globalInstance()->waitForDone();
        return file.isKnownToBeAsWritten();
    }

    double now = QDateTime(QDate(2026, 2, 3), QTime(4, 5, 6, 789)).toMSecsSinceEpoch() / 1000.0;
    QTemporaryDir folder;
    HistoryFile file{folder.filePath("h.json"), [this] { return now; }};
    const QString copyName = "h.json.unreadable-2026-02-03_04-05-06";
};

TEST_F(HistoryFiles, holdNothingIfTheyAreNotThere)
{
    EXPECT_EQ(file.read(), QList<TranscriptionHistoryEntry>());
    EXPECT_EQ(names(), QStringList());
}

TEST_F(HistoryFiles, giveBackWhatWasWrittenInItsOrder)
{
    const QList<TranscriptionHistoryEntry> entries = {historyEntry("old", "2020-01-01T00:00:00.000Z"),
                                                      historyEntry("new", "2021-01-01T00:00:00.000Z")};
    file.write(entries);
    EXPECT_EQ(file.read(), entries);
    EXPECT_EQ(names(), QStringList{"h.json"});
}

TEST_F(HistoryFiles, tellUnderWhichNameAnUnreadableOneWillBeKept)
{
    put("h.json", "[{}]");
    EXPECT_EQ(readFailure(), "The data couldn’t be read because it is missing. The file will be kept as “" + copyName
                                 + "” when the history is next saved.");
    EXPECT_EQ(bytes("h.json"), "[{}]");
    EXPECT_EQ(names(), QStringList{"h.json"});
}

TEST_F(HistoryFiles, areCopiedAsideOnceBeforeAnUnreadableOneIsReplaced)
{
    put("h.json", "damaged");
    EXPECT_NE(readFailure(), "none");
    now += 100;
    file.write({historyEntry("1")});
    EXPECT_EQ(bytes(copyName), "damaged");
    EXPECT_EQ(file.read(), QList{historyEntry("1")});
    file.write({});
    EXPECT_EQ(names(), (QStringList{"h.json", copyName}));
}

TEST_F(HistoryFiles, keepTheirPromisedNameHoweverOftenTheyCannotBeRead)
{
    put("h.json", "damaged");
    EXPECT_TRUE(readFailure().contains(copyName));
    now += 100;
    EXPECT_TRUE(readFailure().contains(copyName));
}

TEST_F(HistoryFiles, neverTakeTheNameOfAnEarlierCopy)
{
    put(copyName, "earlier");
    put(copyName + "-2", "second");
    put("h.json", "damaged");
    EXPECT_TRUE(readFailure().contains("“" + copyName + "-3”"));
    put(copyName + "-3", "came in between");
    file.write({});
    EXPECT_EQ(bytes(copyName), "earlier");
    EXPECT_EQ(bytes(copyName + "-2"), "second");
    EXPECT_EQ(bytes(copyName + "-3"), "came in between");
    EXPECT_EQ(bytes(copyName + "-4"), "damaged");
}

TEST_F(HistoryFiles, neverTakeTheNameOfALinkThatLeadsNowhere)
{
    ASSERT_TRUE(QFile::link("/nowhere", folder.filePath(copyName)));
    put("h.json", "damaged");
    EXPECT_TRUE(readFailure().contains("“" + copyName + "-2”"));
    ASSERT_TRUE(QFile::link("/nowhere", folder.filePath(copyName + "-2")));
    file.write({});
    EXPECT_EQ(bytes(copyName + "-3"), "damaged");
    EXPECT_TRUE(QFileInfo(folder.filePath(copyName)).isSymLink());
}

TEST_F(HistoryFiles, areNeitherMissingNorReplacedIfTheSystemCannotLookAtThem)
{
    ASSERT_TRUE(QFile::link(folder.filePath("h.json"), folder.filePath("h.json")));
    EXPECT_TRUE(readFailure().startsWith("The file “h.json” couldn’t be opened. The file will be kept as “"));
    EXPECT_THROW(file.write({}), Error);
    EXPECT_TRUE(QFileInfo(folder.filePath("h.json")).isSymLink());
}

TEST_F(HistoryFiles, areWrittenWhereALinkLeadsWhetherSomethingLiesThereOrNot)
{
    makeFolder(folder.filePath("elsewhere"));
    ASSERT_TRUE(QFile::link("elsewhere/real.json", folder.filePath("h.json")));
    EXPECT_EQ(file.read(), QList<TranscriptionHistoryEntry>());
    for (const char *id : {"1", "2"}) {
        file.write({historyEntry(id)});
        EXPECT_EQ(file.read(), QList{historyEntry(id)});
        EXPECT_EQ(bytes("elsewhere/real.json"), bytes("h.json"));
        EXPECT_TRUE(QFileInfo(folder.filePath("h.json")).isSymLink());
    }
    put("elsewhere/real.json", "damaged");
    EXPECT_NE(readFailure(), "none");
    file.write({});
    EXPECT_EQ(bytes(copyName), "damaged");
    EXPECT_EQ(bytes("elsewhere/real.json"), "[\n\n]");
    EXPECT_TRUE(QFileInfo(folder.filePath("h.json")).isSymLink());
}

TEST_F(HistoryFiles, areNotReplacedIfTheyCannotBeCopiedAside)
{
    makeFolder(folder.filePath("h.json"));
    EXPECT_TRUE(readFailure().startsWith("The file “h.json” couldn’t be opened. The file will be kept as “"));
    EXPECT_THROW(file.write({}), Error);
    EXPECT_THROW(file.write({}), Error);
    EXPECT_EQ(names(), QStringList{"h.json"});
}

TEST_F(HistoryFiles, areNotCopiedAsideOnceTheyHaveGoneOrHaveBeenMended)
{
    put("h.json", "damaged");
    EXPECT_NE(readFailure(), "none");
    removeItem(folder.filePath("h.json"));
    file.write({});
    EXPECT_EQ(names(), QStringList{"h.json"});

    put("h.json", "damaged");
    EXPECT_NE(readFailure(), "none");
    put("h.json", "[]");
    EXPECT_EQ(readFailure(), "none");
    file.write({});
    EXPECT_EQ(names(), QStringList{"h.json"});
}

TEST_F(HistoryFiles, holdTheSameBytesWhetherEntriesCameOneByOneOrTogether)
{
    const QList<TranscriptionHistoryEntry> entries = writtenOneByOne({"1", "2", "3", "4"});
    EXPECT_EQ(historyIds(entries), (QStringList{"4", "3", "2", "1"}));
    EXPECT_EQ(bytes("h.json"), encodedHistory(entries));
    EXPECT_EQ(names(), QStringList{"h.json"});
}

TEST_F(HistoryFiles, takeTheirFirstEntryAfterAnEmptyListAndWithoutAFile)
{
    file.writeWithNewEntry({historyEntry("1")});
    EXPECT_EQ(bytes("h.json"), encodedHistory({historyEntry("1")}));
    file.write({});
    file.writeWithNewEntry({historyEntry("2")});
    EXPECT_EQ(bytes("h.json"), encodedHistory({historyEntry("2")}));
}

TEST_F(HistoryFiles, giveTheirOwnBytesToTheNextOneAsLongAsNobodyChangedThem)
{
    QList<TranscriptionHistoryEntry> entries = writtenOneByOne({"1", "2"});
    changeWithoutTrace("Text of 1", "TEXT OF 1");

    entries.prepend(historyEntry("3"));
    file.writeWithNewEntry(entries);
    EXPECT_EQ(bytes("h.json"), encodedHistory(entries).replace("Text of 1", "TEXT OF 1"));
}

TEST_F(HistoryFiles, areKnownAgainWhereTheyHoldTheListInTheFormThatItIsWrittenIn)
{
    writtenOneByOne({"1", "2"});
    QList<TranscriptionHistoryEntry> entries = file.read();
    EXPECT_FALSE(file.isKnownToBeAsWritten()) << "until it was looked at";
    EXPECT_TRUE(isFoundAsWritten(entries));
    changeWithoutTrace("Text of 1", "TEXT OF 1");

    entries.prepend(historyEntry("3"));
    file.writeWithNewEntry(entries);
    EXPECT_EQ(bytes("h.json"), encodedHistory(entries).replace("Text of 1", "TEXT OF 1"))
        << "the file's own bytes were taken";
}

TEST_F(HistoryFiles, areNotKnownInAnotherFormOrderOrWithMoreBehind)
{
    const QList<TranscriptionHistoryEntry> entries = {historyEntry("1"), historyEntry("2")};
    const QByteArray written = encodedHistory(entries);
    const auto isKnown = [&](const QByteArray &content) {
        put("h.json", content);
        file.read();
        return isFoundAsWritten(entries);
    };
    EXPECT_TRUE(isKnown(written));
    EXPECT_FALSE(isKnown(QByteArray(written).replace(" : ", ": ")));
    EXPECT_FALSE(isKnown(written + "\n"));
    EXPECT_FALSE(isKnown(encodedHistory({entries[1], entries[0]})));
    EXPECT_FALSE(isKnown("[\n\n]"));
    removeItem(folder.filePath("h.json"));
    file.read();
    EXPECT_FALSE(isFoundAsWritten(entries));
}

TEST_F(HistoryFiles, areWrittenAnewIfTheyChangedAfterTheyWereLookedAt)
{
    QList<TranscriptionHistoryEntry> entries = writtenOneByOne({"1", "2"});
    entries = file.read();
    ASSERT_TRUE(isFoundAsWritten(entries));
    put("h.json", bytes("h.json").replace("Text", "text"));
    entries.prepend(historyEntry("3"));
    file.writeWithNewEntry(entries);
    EXPECT_EQ(bytes("h.json"), encodedHistory(entries));
}

TEST_F(HistoryFiles, areNoLongerKnownOnceTheyAreReadAgain)
{
    writtenOneByOne({"1", "2"});
    ASSERT_TRUE(isFoundAsWritten(file.read()));
    put("h.json", "[{\"unknown\":1," + encodedHistory({historyEntry("5")}).sliced(6));
    file.read();
    EXPECT_FALSE(file.isKnownToBeAsWritten());
}

TEST_F(HistoryFiles, areNotDecodedAgainAsLongAsNobodyWroteToThem)
{
    put("h.json", encodedHistory({historyEntry("1"), historyEntry("2")}));
    setWritten(secondsAgo(5));
    const QList<TranscriptionHistoryEntry> entries = file.read();
    EXPECT_TRUE(file.read().isSharedWith(entries));
    EXPECT_TRUE(isFoundAsWritten(entries));
    EXPECT_TRUE(file.read().isSharedWith(entries));
    EXPECT_TRUE(file.isKnownToBeAsWritten()) << "that stays known";

    put("h.json", encodedHistory({historyEntry("1"), historyEntry("3")}));
    setWritten(secondsAgo(5));
    EXPECT_EQ(historyIds(file.read()), (QStringList{"1", "3"})) << "another file";
    EXPECT_FALSE(file.isKnownToBeAsWritten());
    changeWithoutTrace("Text of 3", "TEXT OF 3");
    setWritten(secondsAgo(4));
    EXPECT_EQ(file.read().last().text, "TEXT OF 3") << "the same file, written at another time";
    put("h.json", "damaged");
    EXPECT_NE(readFailure(), "none");
    removeItem(folder.filePath("h.json"));
    EXPECT_EQ(file.read(), QList<TranscriptionHistoryEntry>());
}

TEST_F(HistoryFiles, areDecodedAgainIfTheyWereWrittenJustBeforeTheyWereRead)
{
    put("h.json", encodedHistory({historyEntry("1")}));
    setWritten(secondsAgo(1));
    file.read();
    changeWithoutTrace("Text of 1", "TEXT OF 1");
    EXPECT_EQ(file.read().first().text, "TEXT OF 1");
    setWritten(secondsAgo(-60));
    file.read();
    changeWithoutTrace("TEXT OF 1", "Text of 1");
    EXPECT_EQ(file.read().first().text, "Text of 1");
}

TEST_F(HistoryFiles, holdTheWholeListAfterAnybodyElseWroteToThem)
{
    QList<TranscriptionHistoryEntry> entries = writtenOneByOne({"1", "2"});
    const auto add = [&](const char *id) {
        entries.prepend(historyEntry(id));
        file.writeWithNewEntry(entries);
        EXPECT_EQ(bytes("h.json"), encodedHistory(entries)) << id;
    };
    QFile changed(folder.filePath("h.json"));
    ASSERT_TRUE(changed.open(QIODevice::ReadWrite));
    changed.write("[\n  {\n    \"createdAt\" : \"3");
    changed.close();
    ASSERT_TRUE(changed.open(QIODevice::ReadWrite));
    changed.setFileTime(QDateTime::currentDateTime().addSecs(5), QFileDevice::FileModificationTime);
    changed.close();
    add("written into");

    put("h.json", bytes("h.json").replace("Text", "text"));
    add("replaced");

    removeItem(folder.filePath("h.json"));
    add("removed");

    makeFolder(folder.filePath("elsewhere"));
    ASSERT_TRUE(QFile::rename(folder.filePath("h.json"), folder.filePath("elsewhere/h.json")));
    ASSERT_TRUE(QFile::link("elsewhere/h.json", folder.filePath("h.json")));
    add("moved behind a link");
    EXPECT_EQ(bytes("elsewhere/h.json"), encodedHistory(entries));
}

TEST_F(HistoryFiles, holdTheWholeListAfterEntriesWereTakenOut)
{
    QList<TranscriptionHistoryEntry> entries = writtenOneByOne({"1", "2", "3"});
    entries.removeAt(1);
    entries.prepend(historyEntry("4"));
    file.writeWithNewEntry(entries);
    EXPECT_EQ(bytes("h.json"), encodedHistory(entries));
}

TEST_F(HistoryFiles, holdTheWholeListAfterAWriteThatFailed)
{
    QList<TranscriptionHistoryEntry> entries = writtenOneByOne({"1", "2"});
    ASSERT_TRUE(QFile::rename(folder.path(), folder.path() + "-away"));
    entries.prepend(historyEntry("3"));
    EXPECT_THROW(file.writeWithNewEntry(entries), Error);
    ASSERT_TRUE(QFile::rename(folder.path() + "-away", folder.path()));
    EXPECT_EQ(historyIds(decodedHistory(bytes("h.json"))), (QStringList{"2", "1"}));
    entries.prepend(historyEntry("4"));
    file.writeWithNewEntry(entries);
    EXPECT_EQ(bytes("h.json"), encodedHistory(entries));
}

TEST_F(HistoryFiles, holdTheWholeListAfterTheyWereRead)
{
    QList<TranscriptionHistoryEntry> entries = writtenOneByOne({"1", "2"});
    put("h.json", "[{\"unknown\":1," + encodedHistory({historyEntry("5")}).sliced(6));
    entries = file.read();
    ASSERT_EQ(historyIds(entries), QStringList{"5"});
    entries.prepend(historyEntry("6"));
    file.writeWithNewEntry(entries);
    EXPECT_EQ(bytes("h.json"), encodedHistory(entries));
}

} // namespace
