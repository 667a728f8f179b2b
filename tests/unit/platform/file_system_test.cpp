#include "platform/file_system.h"

#include "platform/atomic_file.h"
#include "platform/error.h"
#include "platform/file_descriptor.h"
#include "support/held_file.h"
#include "support/printing.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <chrono>
#include <future>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace sorvanta;

namespace {

int modeOf(const QString &path)
{
    struct stat status { };
    EXPECT_EQ(::lstat(QFile::encodeName(path).constData(), &status), 0);
    return status.st_mode & 07777;
}

template<typename Work>
QString failureOf(Work work)
{
    try {
        work();
    } catch (const Error &error) {
        return QString::number(error.code()) + ' ' + error.localizedDescription();
    }
    return "none";
}

class FileSystem : public testing::Test {
protected:
    FileSystem() { ::umask(022); }

    QString path(const QString &name) const { return folder.filePath(name); }
    QStringList names() const
    {
        return QDir(folder.path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot | QDir::System);
    }
    QString folderName() const { return QFileInfo(folder.path()).fileName(); }
    void put(const QString &name, const QByteArray &bytes) const
    {
        QFile file(path(name));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        ASSERT_EQ(file.write(bytes), bytes.size());
    }

    QTemporaryDir folder;
    const QString longName = QString(300, 'n');
};

TEST_F(FileSystem, readsAWholeFileWithWhateverIsInIt)
{
    QByteArray bytes(300'000, 'x');
    bytes[5] = '\0';
    put("a", bytes);
    put("empty", {});
    EXPECT_EQ(readFile(path("a")), bytes);
    EXPECT_EQ(readFile(path("empty")), QByteArray());
}

TEST_F(FileSystem, readsAFileThatIsLentOutOnceItIsBack)
{
    put("a", "lent");
    HeldFile held(path("a"));
    auto reader = std::async(std::launch::async, [this] { return readFile(path("a")); });
    EXPECT_EQ(reader.wait_for(std::chrono::milliseconds(100)), std::future_status::timeout);
    held.letGo();
    EXPECT_EQ(reader.get(), "lent");
}

TEST_F(FileSystem, readsFilesThatTellNoSize)
{
    EXPECT_EQ(readFile("/proc/self/comm").trimmed(), QByteArray("platform_test"));
    EXPECT_GT(readFile("/proc/self/maps").size(), 1000);
}

TEST_F(FileSystem, tellsThatMemoryDoesNotSufficeForAFile)
{
    QTemporaryDir other("/dev/shm/huge-XXXXXX");
    const QString huge = other.filePath("huge");
    writeFileAtomically(huge, "x");
    ASSERT_EQ(::truncate(QFile::encodeName(huge).constData(), off_t(1) << 62), 0);
    EXPECT_EQ(failureOf([&] { readFile(huge); }), "263 The file “huge” couldn’t be opened.");
}

TEST_F(FileSystem, tellsWhyAFileCannotBeRead)
{
    ASSERT_EQ(::mkfifo(QFile::encodeName(path("pipe")).constData(), 0600), 0);
    EXPECT_EQ(failureOf([&] { readFile(path("a")); }),
              "260 The file “a” couldn’t be opened because there is no such file.");
    EXPECT_EQ(failureOf([&] { readFile(folder.path()); }), "256 The file “" + folderName() + "” couldn’t be opened.");
    EXPECT_EQ(failureOf([&] { readFile(path("pipe")); }), "256 The file “pipe” couldn’t be opened.");
    EXPECT_EQ(failureOf([&] { readFile(path(longName)); }), "258 The file “" + longName + "” couldn’t be opened.");
}

TEST_F(FileSystem, writesAPrivateFileAndNothingBesideIt)
{
    writeFileAtomically(path("a.txt"), "first");
    EXPECT_EQ(readFile(path("a.txt")), "first");
    EXPECT_EQ(modeOf(path("a.txt")), 0600);
    writeFileAtomically(path("a.txt"), "");
    EXPECT_EQ(readFile(path("a.txt")), "");
    EXPECT_EQ(names(), QStringList{"a.txt"});
}

TEST_F(FileSystem, replacesAFileInsteadOfWritingIntoIt)
{
    put("old", "old");
    ASSERT_EQ(::link(QFile::encodeName(path("old")).constData(), QFile::encodeName(path("other")).constData()), 0);
    writeFileAtomically(path("old"), "new");
    EXPECT_EQ(readFile(path("old")), "new");
    EXPECT_EQ(readFile(path("other")), "old");
    EXPECT_EQ(modeOf(path("old")), 0600);
}

TEST_F(FileSystem, writesAFileOfUsualAccessAsTheUmaskAdmits)
{
    writeFileAtomically(path("a"), "new", FileAccess::Usual);
    EXPECT_EQ(modeOf(path("a")), 0644);
    ::umask(077);
    writeFileAtomically(path("b"), "new", FileAccess::Usual);
    EXPECT_EQ(modeOf(path("b")), 0600);
    ::umask(002);
    writeFileAtomically(path("c"), "new", FileAccess::Usual);
    EXPECT_EQ(modeOf(path("c")), 0664);
    EXPECT_EQ(names(), (QStringList{"a", "b", "c"}));
}

TEST_F(FileSystem, keepsThePermissionsOfAFileThatItReplacesWithUsualAccess)
{
    for (const mode_t mode : {0600, 0640, 0444, 0777}) {
        put("old", "old");
        ASSERT_EQ(::chmod(QFile::encodeName(path("old")).constData(), mode | S_ISGID), 0);
        writeFileAtomically(path("old"), "new", FileAccess::Usual);
        EXPECT_EQ(readFile(path("old")), "new");
        EXPECT_EQ(modeOf(path("old")), mode);
        ASSERT_TRUE(QFile::remove(path("old")));
    }
}

TEST_F(FileSystem, keepsThePermissionsOfWhatALinkLeadsTo)
{
    put("real", "old");
    ASSERT_EQ(::chmod(QFile::encodeName(path("real")).constData(), 0640), 0);
    ASSERT_TRUE(QFile::link(path("real"), path("link")));
    writeFileAtomically(path("link"), "new", FileAccess::Usual);
    EXPECT_EQ(modeOf(path("real")), 0640);
}

TEST_F(FileSystem, writesThroughASymbolicLink)
{
    QDir(folder.path()).mkdir("elsewhere");
    put("elsewhere/real", "old");
    ASSERT_TRUE(QFile::link(path("elsewhere/real"), path("link")));
    writeFileAtomically(path("link"), "new");
    EXPECT_TRUE(QFileInfo(path("link")).isSymLink());
    EXPECT_EQ(readFile(path("elsewhere/real")), "new");
}

TEST_F(FileSystem, writesThroughSymbolicLinksToWhereNothingLiesYet)
{
    QDir(folder.path()).mkdir("elsewhere");
    ASSERT_TRUE(QFile::link("elsewhere/second", path("first")));
    ASSERT_TRUE(QFile::link("../real", path("elsewhere/second")));
    writeFileAtomically(path("first"), "new");
    EXPECT_TRUE(QFileInfo(path("first")).isSymLink());
    EXPECT_TRUE(QFileInfo(path("elsewhere/second")).isSymLink());
    EXPECT_FALSE(QFileInfo(path("real")).isSymLink());
    EXPECT_EQ(readFile(path("real")), "new");
}

TEST_F(FileSystem, keepsALinkThatItCannotFollow)
{
    ASSERT_TRUE(QFile::link(path("gone/real"), path("lost")));
    ASSERT_TRUE(QFile::link(path("loop"), path("loop")));
    EXPECT_EQ(failureOf([&] { writeFileAtomically(path("lost"), "new"); }), "4 The folder “gone” doesn’t exist.");
    EXPECT_EQ(failureOf([&] { writeFileAtomically(path("loop"), "new"); }),
              "512 The file “loop” couldn’t be saved in the folder “" + folderName() + "”.");
    EXPECT_TRUE(QFileInfo(path("lost")).isSymLink());
    EXPECT_TRUE(QFileInfo(path("loop")).isSymLink());
    EXPECT_EQ(names(), (QStringList{"loop", "lost"}));
}

TEST_F(FileSystem, removesUnfinishedFilesOnceTheyAreOld)
{
    const auto age = [&](const QString &name, int seconds) {
        QFile file(path(name));
        ASSERT_TRUE(file.open(QIODevice::ReadWrite));
        ASSERT_TRUE(file.setFileTime(QDateTime::currentDateTime().addSecs(-seconds), QFile::FileModificationTime));
    };
    const QStringList kept{".sorvanta-Ab12cd", ".sorvanta-abcde", ".sorvanta-abcdefg", "a.sorvanta-abcdef", "h.json"};
    for (const QString &name : kept)
        age(name, name == ".sorvanta-Ab12cd" ? 30 : 90);
    age(".sorvanta-Xy12cd", 90);
    makeFolder(path("inner"));
    age("inner/.sorvanta-Xy12cd", 90);
    removeUnfinishedFiles(path("gone"));
    removeUnfinishedFiles(folder.path());
    EXPECT_EQ(names(), kept + QStringList{"inner"});
    EXPECT_TRUE(itemExists(path("inner/.sorvanta-Xy12cd")));
}

TEST_F(FileSystem, leavesNoLitterWhenAWriteFails)
{
    put("file", "kept");
    QDir(folder.path()).mkdir("taken");
    put("taken/inner", "kept");
    const QStringList before = names();
    EXPECT_EQ(failureOf([&] { writeFileAtomically(path("taken"), "new"); }),
              "512 The file “taken” couldn’t be saved in the folder “" + folderName() + "”.");
    EXPECT_EQ(failureOf([&] { writeFileAtomically(path(longName), "new"); }),
              "514 The file “" + longName + "” couldn’t be saved in the folder “" + folderName() + "”.");
    EXPECT_EQ(failureOf([&] { writeFileAtomically(path("gone/a"), "new"); }), "4 The folder “gone” doesn’t exist.");
    EXPECT_EQ(failureOf([&] { writeFileAtomically(path("file/a"), "new"); }),
              "512 The file “a” couldn’t be saved in the folder “file”.");
    EXPECT_EQ(names(), before);
    EXPECT_EQ(readFile(path("file")), "kept");
    EXPECT_EQ(readFile(path("taken/inner")), "kept");
}

TEST_F(FileSystem, showsAFileThatIsWrittenInPiecesOnlyOnceItIsWhole)
{
    put("a", "old");
    const QByteArray piece(3'000'000, 'p');
    {
        AtomicFile file(path("a"));
        for (int i = 0; i < 3; ++i)
            file.write(piece);
        EXPECT_EQ(readFile(path("a")), "old");
        file.commit();
    }
    EXPECT_EQ(readFile(path("a")), piece.repeated(3));
    {
        AtomicFile abandoned(path("a"));
        abandoned.write("new");
    }
    EXPECT_EQ(readFile(path("a")), piece.repeated(3));
    EXPECT_EQ(names(), QStringList{"a"});
}

TEST_F(FileSystem, appendsWhatFollowsInAnotherFile)
{
    const QByteArray rest = QByteArray("0123456789").repeated(1'000'000);
    put("old", "head" + rest);
    const FileDescriptor old = opened(encodedPath(path("old")), O_RDONLY);
    AtomicFile file(path("new"));
    file.write("beginning");
    EXPECT_TRUE(file.appendRestOf(old.number(), 4));
    const std::optional<FileStamp> stamp = file.commit();
    EXPECT_EQ(readFile(path("new")), "beginning" + rest);
    EXPECT_EQ(stamp, stampOf(opened(encodedPath(path("new")), O_RDONLY).number()));
    EXPECT_NE(stamp, stampOf(old.number()));
}

TEST_F(FileSystem, saysThatItCannotAppendAndLeavesNothing)
{
    put("old", "content");
    const FileDescriptor writable = opened(encodedPath(path("old")), O_WRONLY);
    {
        AtomicFile file(path("new"));
        EXPECT_FALSE(file.appendRestOf(writable.number(), 0));
    }
    EXPECT_EQ(names(), QStringList{"old"});
    EXPECT_EQ(stampOf(-1), std::nullopt);
}

TEST_F(FileSystem, copiesAFileAndLeavesTheSource)
{
    const QByteArray bytes = QByteArray("0123456789").repeated(100'000);
    put("a.wav", bytes);
    put("empty", {});
    copyFile(path("a.wav"), path("b.wav"));
    copyFile(path("empty"), path("c"));
    EXPECT_EQ(readFile(path("b.wav")), bytes);
    EXPECT_EQ(readFile(path("a.wav")), bytes);
    EXPECT_EQ(readFile(path("c")), "");
    EXPECT_EQ(modeOf(path("b.wav")), 0600);
}

TEST_F(FileSystem, copiesAPrivateFileToOneOfUsualAccess)
{
    writeFileAtomically(path("a"), "private");
    copyFile(path("a"), path("b"), FileAccess::Usual);
    EXPECT_EQ(modeOf(path("b")), 0644);
    ::umask(027);
    copyFile(path("a"), path("c"), FileAccess::Usual);
    EXPECT_EQ(modeOf(path("c")), 0640);
}

TEST_F(FileSystem, copiesFromOneFileSystemToAnother)
{
    QTemporaryDir other("/dev/shm/copy-XXXXXX");
    ASSERT_TRUE(other.isValid());
    put("a.wav", QByteArray(200'000, 'w'));
    copyFile(path("a.wav"), other.filePath("b.wav"));
    EXPECT_EQ(readFile(other.filePath("b.wav")), QByteArray(200'000, 'w'));
}

TEST_F(FileSystem, tellsWhyAFileCannotBeCopiedAndKeepsWhatIsThere)
{
    put("a.wav", "sound");
    put("b.wav", "older");
    QDir(folder.path()).mkdir("folder");
    const QStringList before = names();
    EXPECT_EQ(failureOf([&] { copyFile(path("gone.wav"), path("c.wav")); }),
              "4 “gone.wav” couldn’t be copied to “" + folderName()
                  + "” because either the former doesn’t exist, or the folder containing the latter doesn’t exist.");
    EXPECT_EQ(failureOf([&] { copyFile(path("a.wav"), path("gone/c.wav")); }),
              "4 “a.wav” couldn’t be copied to “gone” because either the former doesn’t exist, or the folder "
              "containing the latter doesn’t exist.");
    EXPECT_EQ(failureOf([&] { copyFile(path("a.wav"), path("b.wav")); }),
              "516 “a.wav” couldn’t be copied to “" + folderName()
                  + "” because an item with the same name already exists.");
    EXPECT_EQ(failureOf([&] { copyFile(path("folder"), path("c.wav")); }), "256 The file “folder” couldn’t be opened.");
    EXPECT_EQ(names(), before);
    EXPECT_EQ(readFile(path("b.wav")), "older");
}

TEST_F(FileSystem, leavesNoHalfCopyBehind)
{
    // The kernel opens it and then refuses to give the bytes: that is no fault of the copy.
    EXPECT_EQ(failureOf([&] { copyFile("/proc/self/mem", path("c")); }), "256 The file “mem” couldn’t be opened.");
    EXPECT_EQ(names(), QStringList());
}

TEST_F(FileSystem, copiesWhatTheSystemDoesNotCopyByItself)
{
    copyFile("/proc/self/cmdline", path("c"));
    EXPECT_EQ(readFile(path("c")), readFile("/proc/self/cmdline"));
    EXPECT_TRUE(readFile(path("c")).contains("platform_test"));
}

TEST_F(FileSystem, replacesAFileByACopyOfAnother)
{
    const QByteArray bytes = QByteArray("0123456789").repeated(100'000);
    put("a.wav", bytes);
    put("b.wav", "older");
    replaceByCopy(path("a.wav"), path("b.wav"));
    replaceByCopy(path("a.wav"), path("c.wav"));
    for (const char *name : {"a.wav", "b.wav", "c.wav"})
        EXPECT_EQ(readFile(path(name)), bytes) << name;
    EXPECT_EQ(modeOf(path("c.wav")), 0600);
    EXPECT_EQ(names(), (QStringList{"a.wav", "b.wav", "c.wav"}));
}

TEST_F(FileSystem, givesACopyThatReplacesAFileItsPermissions)
{
    writeFileAtomically(path("a"), "private");
    put("b", "older");
    QFile::setPermissions(path("b"), QFile::ReadOwner | QFile::WriteOwner | QFile::ReadGroup);
    replaceByCopy(path("a"), path("b"), FileAccess::Usual);
    replaceByCopy(path("a"), path("c"), FileAccess::Usual);
    EXPECT_EQ(modeOf(path("b")), 0640);
    EXPECT_EQ(modeOf(path("c")), 0644);
}

TEST_F(FileSystem, leavesWhatACopyWasToReplaceIfTheCopyFails)
{
    put("a.wav", "sound");
    put("b.wav", "older");
    QDir(folder.path()).mkpath("full/inner");
    const QStringList before = names();
    EXPECT_EQ(failureOf([&] { replaceByCopy(path("gone.wav"), path("b.wav")); }),
              "4 “gone.wav” couldn’t be copied to “" + folderName()
                  + "” because either the former doesn’t exist, or the folder containing the latter doesn’t exist.");
    EXPECT_EQ(failureOf([&] { replaceByCopy(path("full"), path("b.wav")); }),
              "256 The file “full” couldn’t be opened.");
    EXPECT_EQ(failureOf([&] { replaceByCopy("/proc/self/mem", path("b.wav")); }),
              "256 The file “mem” couldn’t be opened.");
    EXPECT_EQ(readFile(path("b.wav")), "older");
    EXPECT_EQ(failureOf([&] { replaceByCopy(path("a.wav"), path("gone/c.wav")); }),
              "4 The folder “gone” doesn’t exist.");
    EXPECT_EQ(failureOf([&] { replaceByCopy(path("a.wav"), path("full")); }),
              "512 The file “full” couldn’t be saved in the folder “" + folderName() + "”.");
    EXPECT_EQ(names(), before);
}

TEST_F(FileSystem, movesAFileOverAnother)
{
    put("new", "n");
    put("old", "o");
    moveItem(path("new"), path("old"));
    EXPECT_EQ(names(), QStringList("old"));
    EXPECT_EQ(readFile(path("old")), "n");
}

TEST_F(FileSystem, tellsWhyAFileCannotBeMovedAndKeepsIt)
{
    put("a", "x");
    EXPECT_EQ(failureOf([this] { moveItem(path("a"), path("gone/a")); }),
              "4 “a” couldn’t be moved to “gone” because either the former doesn’t exist, or the folder containing the "
              "latter doesn’t exist.");
    QDir(folder.path()).mkpath("full/folder");
    EXPECT_EQ(failureOf([this] { moveItem(path("a"), path("full")); }).first(3), "512");
    EXPECT_EQ(readFile(path("a")), "x");
}

TEST_F(FileSystem, makesMissingFoldersForTheUserAlone)
{
    makeFolder(path("a/b/c"));
    for (const char *name : {"a", "a/b", "a/b/c"})
        EXPECT_EQ(modeOf(path(name)), 0700) << name;
    QFile::setPermissions(path("a"), QFile::Permissions(0x7755));
    const int before = modeOf(path("a"));
    makeFolder(path("a/d"));
    makeFolder(path("a"));
    EXPECT_EQ(modeOf(path("a")), before);
}

TEST_F(FileSystem, tellsWhyAFolderCannotBeMade)
{
    put("file", "kept");
    EXPECT_EQ(failureOf([&] { makeFolder(path("file")); }),
              "516 The file “file” couldn’t be saved in the folder “" + folderName()
                  + "” because a file with the same name already exists.");
    EXPECT_EQ(failureOf([&] { makeFolder(path("file/a")); }),
              "516 The file “file” couldn’t be saved in the folder “" + folderName()
                  + "” because a file with the same name already exists.");
    EXPECT_EQ(readFile(path("file")), "kept");
}

TEST_F(FileSystem, removesFilesLinksAndEmptyFoldersOnly)
{
    put("a", "a");
    put("target", "kept");
    QFile::link(path("target"), path("link"));
    QDir(folder.path()).mkdir("empty");
    makeFolder(path("full"));
    put("full/inner", "kept");
    removeItem(path("a"));
    removeItem(path("link"));
    removeItem(path("empty"));
    EXPECT_EQ(failureOf([&] { removeItem(path("full")); }), "512 “full” couldn’t be removed.");
    EXPECT_EQ(failureOf([&] { removeItem(path("a")); }), "4 “a” couldn’t be removed.");
    EXPECT_EQ(names(), (QStringList{"full", "target"}));
    EXPECT_EQ(readFile(path("full/inner")), "kept");
}

TEST_F(FileSystem, seesWhateverLiesAtAPath)
{
    put("file", "");
    QFile::link(path("file"), path("link"));
    QFile::link(path("gone"), path("broken"));
    EXPECT_TRUE(itemExists(path("file")));
    EXPECT_TRUE(itemExists(folder.path()));
    EXPECT_TRUE(itemExists(path("link")));
    EXPECT_FALSE(itemExists(path("broken")));
    EXPECT_FALSE(itemExists(path("gone")));
    EXPECT_FALSE(itemExists(""));
    EXPECT_FALSE(itemExists(path(longName)));
}

TEST_F(FileSystem, takesForMissingOnlyWhatIsCertainlyNotThere)
{
    put("file", "");
    QFile::link(path("gone"), path("broken"));
    QFile::link(path("loop"), path("loop"));
    EXPECT_TRUE(itemIsMissing(path("gone")));
    EXPECT_TRUE(itemIsMissing(path("gone/a")));
    EXPECT_TRUE(itemIsMissing(path("file/a")));
    EXPECT_TRUE(itemIsMissing(path("broken")));
    EXPECT_FALSE(itemIsMissing(path("file")));
    EXPECT_FALSE(itemIsMissing(folder.path()));
    EXPECT_FALSE(itemIsMissing(path("loop")));
    EXPECT_EQ(failureOf([&] { copyFile(path("loop"), path("copy")); }), "256 The file “loop” couldn’t be opened.");
}

TEST_F(FileSystem, knowsAnItemByWhateverNameItGoes)
{
    put("file", "same");
    put("other", "same");
    QFile::link(path("file"), path("link"));
    EXPECT_TRUE(isSameItem(path("file"), path("file")));
    EXPECT_TRUE(isSameItem(path("file"), path(".//file")));
    EXPECT_TRUE(isSameItem(path("link"), path("file")));
    EXPECT_FALSE(isSameItem(path("file"), path("other")));
    EXPECT_FALSE(isSameItem(path("gone"), path("gone")));
    EXPECT_FALSE(isSameItem(path("file"), path("gone")));
}

TEST_F(FileSystem, takesAPathWithAZeroForNoPathAtAll)
{
    put("file", "kept");
    const QString zero = path("file") + QChar(u'\0') + ".txt";
    EXPECT_FALSE(itemExists(zero));
    EXPECT_NE(failureOf([&] { readFile(zero); }), "none");
    EXPECT_NE(failureOf([&] { removeItem(zero); }), "none");
    EXPECT_NE(failureOf([&] { writeFileAtomically(zero, "new"); }), "none");
    EXPECT_EQ(readFile(path("file")), "kept");
}

TEST_F(FileSystem, takesNamesInAnyScript)
{
    writeFileAtomically(path("Überweisung 会議 🎙.txt"), "x");
    EXPECT_EQ(names(), QStringList{"Überweisung 会議 🎙.txt"});
}

} // namespace
