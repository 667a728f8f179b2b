#include "platform/folders.h"

#include "support/printing.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QFile>
#include <QRegularExpression>
#include <QStandardPaths>
#include <QTemporaryDir>

using namespace sorvanta;

namespace {

TEST(Folders, theTemporaryFolderIsThatOfTheSystem)
{
    const QByteArray before = qgetenv("TMPDIR");
    QTemporaryDir folder;
    qputenv("TMPDIR", folder.path().toUtf8());
    EXPECT_EQ(temporaryFolder(), folder.path());
    qputenv("TMPDIR", "/a/folder/that/is/missing");
    EXPECT_EQ(temporaryFolder(), u"/tmp"_qs);
    QFile file(folder.filePath(u"file"_qs));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    qputenv("TMPDIR", file.fileName().toUtf8());
    EXPECT_EQ(temporaryFolder(), u"/tmp"_qs) << "no folder";
    before.isEmpty() ? qunsetenv("TMPDIR") : qputenv("TMPDIR", before);
}

TEST(Folders, theFolderForDataIsTheOneThatTheUserNamesIfItIsAbsolute)
{
    const QByteArray before = qgetenv("XDG_DATA_HOME");
    const QByteArray home = qgetenv("HOME");
    QStandardPaths::setTestModeEnabled(false);
    qputenv("HOME", "/home/me");
    const auto folderFor = [](const QByteArray &named) {
        qputenv("XDG_DATA_HOME", named);
        return applicationSupportFolder();
    };
    EXPECT_EQ(folderFor("/data"), u"/data"_qs);
    EXPECT_EQ(folderFor("//data//of/./me/../you//"), u"/data/of/you"_qs);
    EXPECT_EQ(folderFor(""), u"/home/me/.local/share"_qs);
    EXPECT_EQ(folderFor("data"), u"/home/me/.local/share"_qs);
    EXPECT_EQ(folderFor("./data"), u"/home/me/.local/share"_qs);
    before.isNull() ? qunsetenv("XDG_DATA_HOME") : qputenv("XDG_DATA_HOME", before);
    home.isNull() ? qunsetenv("HOME") : qputenv("HOME", home);
    QStandardPaths::setTestModeEnabled(true);
}

TEST(Folders, temporaryPathsAreNamedByNewUuids)
{
    const QString path = newTemporaryPath(u"meeting-transcribe-"_qs, u"wav"_qs);
    EXPECT_TRUE(path.startsWith(temporaryFolder() + u"/meeting-transcribe-"_qs)) << path.toStdString();
    EXPECT_TRUE(path.endsWith(u".wav"_qs));
    EXPECT_NE(path, newTemporaryPath(u"meeting-transcribe-"_qs, u"wav"_qs));
    EXPECT_FALSE(newTemporaryPath(QString(), QString()).contains(u'.'));
}

TEST(Folders, uuidsAreInUpperCaseWithoutBraces)
{
    static const QRegularExpression form(u"^[0-9A-F]{8}-[0-9A-F]{4}-[0-9A-F]{4}-[0-9A-F]{4}-[0-9A-F]{12}$"_qs);
    EXPECT_TRUE(form.match(newUuidText()).hasMatch()) << newUuidText().toStdString();
    EXPECT_NE(newUuidText(), newUuidText());
}

TEST(Folders, resourcesLieBesideTheFolderOfTheProgram)
{
    EXPECT_TRUE(resourceFolder().endsWith(u"/lib/sorvanta"_qs));
    EXPECT_FALSE(resourceFolder().contains(u".."_qs));
}

} // namespace
