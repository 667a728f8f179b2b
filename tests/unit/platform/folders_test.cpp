#include "platform/folders.h"

#include "support/printing.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QDir>
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

/// A home of its own, with the user's choice of folders in it.
class DownloadsFolder : public testing::Test {
protected:
    DownloadsFolder()
    {
        QStandardPaths::setTestModeEnabled(false);
        qputenv("HOME", m_home.path().toUtf8());
        qunsetenv("XDG_CONFIG_HOME");
        QDir(m_home.path()).mkpath(u".config"_qs);
    }
    ~DownloadsFolder() override
    {
        restore("HOME", m_homeBefore);
        restore("XDG_CONFIG_HOME", m_configBefore);
        QStandardPaths::setTestModeEnabled(true);
    }

    QString inHome(const QString &name) const { return m_home.filePath(name); }
    QString make(const QString &name) const
    {
        QDir(m_home.path()).mkpath(name);
        return inHome(name);
    }
    void choose(const QByteArray &line) const
    {
        QFile file(inHome(u".config/user-dirs.dirs"_qs));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write("XDG_DOWNLOAD_DIR=" + line + '\n');
    }

private:
    static void restore(const char *name, const QByteArray &before)
    {
        before.isNull() ? qunsetenv(name) : qputenv(name, before);
    }

    QTemporaryDir m_home;
    QByteArray m_homeBefore = qgetenv("HOME");
    QByteArray m_configBefore = qgetenv("XDG_CONFIG_HOME");
};

TEST_F(DownloadsFolder, isTheUsualOneUnlessTheUserChoseAnother)
{
    const QString usual = make(u"Downloads"_qs);
    EXPECT_EQ(downloadsFolder(), usual);
    const QString chosen = make(u"Heruntergeladen/Größe"_qs);
    choose("\"$HOME/Heruntergeladen/Größe\"");
    EXPECT_EQ(downloadsFolder(), chosen);
    choose('"' + chosen.toUtf8() + "/\"");
    EXPECT_EQ(downloadsFolder(), chosen);
}

TEST_F(DownloadsFolder, isNoneIfItIsNotThere)
{
    EXPECT_EQ(downloadsFolder(), std::nullopt);
    make(u"Downloads"_qs);
    choose("\"$HOME/gone\"");
    EXPECT_EQ(downloadsFolder(), std::nullopt);
    QFile file(inHome(u"gone"_qs));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    EXPECT_EQ(downloadsFolder(), std::nullopt) << "no folder";
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
