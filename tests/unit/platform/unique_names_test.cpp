#include "platform/unique_names.h"

#include "support/printing.h"

#include <QFile>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace sorvanta;

namespace {

TEST(NewDatedName, isPrefixMinuteAndSixLowerCaseCharacters)
{
    const QDateTime time(QDate(2026, 2, 3), QTime(4, 5, 59));
    const QString name = newDatedName(u"microphone_"_qs, time);
    EXPECT_TRUE(QRegularExpression(u"^microphone_2026-02-03_04-05_[0-9a-f]{6}$"_qs).match(name).hasMatch())
        << name.toStdString();
    EXPECT_NE(newDatedName(u"a"_qs, time), newDatedName(u"a"_qs, time));
}

TEST(FreePath, countsOnFromTwoWhileSomethingLiesThere)
{
    QTemporaryDir folder;
    const auto take = [&](const QString &name) { return QFile(folder.filePath(name)).open(QIODevice::WriteOnly); };
    EXPECT_EQ(freePath(folder.path(), u"talk"_qs, u"m4a"_qs), folder.filePath(u"talk.m4a"_qs));
    ASSERT_TRUE(take(u"talk.m4a"_qs));
    EXPECT_EQ(freePath(folder.path(), u"talk"_qs, u"m4a"_qs), folder.filePath(u"talk-2.m4a"_qs));
    ASSERT_TRUE(take(u"talk-2.m4a"_qs));
    EXPECT_EQ(freePath(folder.path(), u"talk"_qs, u"m4a"_qs), folder.filePath(u"talk-3.m4a"_qs));
    ASSERT_TRUE(QFile::link(u"/nowhere"_qs, folder.filePath(u"talk-3.m4a"_qs)));
    EXPECT_EQ(freePath(folder.path(), u"talk"_qs, u"m4a"_qs), folder.filePath(u"talk-4.m4a"_qs))
        << "a link to nowhere takes its name too";
}

TEST(FreePath, needsNoExtension)
{
    QTemporaryDir folder;
    EXPECT_EQ(freePath(folder.path(), u"talk"_qs, QString()), folder.filePath(u"talk"_qs));
    ASSERT_TRUE(QFile(folder.filePath(u"talk"_qs)).open(QIODevice::WriteOnly));
    EXPECT_EQ(freePath(folder.path(), u"talk"_qs, QString()), folder.filePath(u"talk-2"_qs));
}

} // namespace
