#include "platform/folders.h"

#include "support/printing.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QFile>
#include <QRegularExpression>
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
