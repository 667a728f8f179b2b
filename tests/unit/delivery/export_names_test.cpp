#include "export/export_names.h"

#include "support/printing.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <ostream>

using namespace sorvanta;

namespace {

struct Named {
    const char *screen;
    ExportNaming naming;
    std::optional<QString> source;
    QString extension;
    QString name;
};

void PrintTo(const Named &row, std::ostream *out)
{
    *out << row.screen << " " << (row.source ? row.source->toStdString() : "none") << " "
         << row.extension.toStdString();
}

ExportNaming batchOf(qsizetype count)
{
    return batchNaming([count] { return count; });
}

class DefaultExportName : public testing::TestWithParam<Named> { };

TEST_P(DefaultExportName, isTheOneOfTheScreen)
{
    EXPECT_EQ(defaultExportName(GetParam().naming, GetParam().extension, GetParam().source), GetParam().name);
}

INSTANTIATE_TEST_SUITE_P(
    , DefaultExportName,
    testing::Values(
        Named{"file", transcriptionNaming(), "/music/talk.wav", "txt", "talk_transcription.txt"},
        Named{"file", transcriptionNaming(), "/music/talk.wav", "md", "talk_transcription.md"},
        Named{"file", transcriptionNaming(), std::nullopt, "srt", "transcript_transcription.srt"},
        Named{"file", transcriptionNaming(), "/music/archive.tar.gz", "json", "archive.tar_transcription.json"},
        Named{"file", transcriptionNaming(), "/music/no extension", "txt", "no extension_transcription.txt"},
        Named{"file", transcriptionNaming(), "/music/.hidden", "txt", ".hidden_transcription.txt"},
        Named{"file", transcriptionNaming(), "/music/ends.", "txt", "ends._transcription.txt"},
        Named{"file", transcriptionNaming(), "/music/ä \"quoted\" %1 \n🙂.m4a", "pdf",
              "ä \"quoted\" %1 \n🙂_transcription.pdf"},
        Named{"meeting", meetingNaming(), "/rec/meeting_2026-02-02_02-40_ab12cd.m4a", "txt",
              "meeting_2026-02-02_02-40_ab12cd_transcription.txt"},
        Named{"batch", batchOf(1), "/music/talk.mp3", "csv", "talk_transcription.csv"},
        Named{"batch", batchOf(7), "/music/talk.mp3", "csv", "talk_transcription.csv"},
        Named{"batch", batchOf(0), std::nullopt, "csv", "transcript.csv"},
        Named{"batch", batchOf(1), std::nullopt, "csv", "transcript.csv"},
        Named{"batch", batchOf(2), std::nullopt, "csv", "batch_transcription.csv"},
        Named{"history", historyNaming(), "/music/talk.wav", "docx", "talk_history.docx"},
        Named{"history", historyNaming(), "Unknown source", "wav", "Unknown source_history.wav"},
        Named{"history", historyNaming(), "", "html", "transcript_history.html"},
        Named{"history", historyNaming(), "/", "html", "transcript_history.html"},
        Named{"history", historyNaming(), "/music/folder/", "txt", "folder_history.txt"}));

TEST(DefaultExportNameOfAMeeting, withoutARecordingIsANewOneEachTime)
{
    const QRegularExpression pattern(R"(^meeting_(\d{4}-\d\d-\d\d_\d\d-\d\d)_[0-9a-f]{6}_transcription\.txt$)");
    const QDateTime before = QDateTime::currentDateTime().addSecs(-60);
    const QString first = defaultExportName(meetingNaming(), "txt", std::nullopt);
    const auto match = pattern.match(first);
    ASSERT_TRUE(match.hasMatch()) << first.toStdString();
    const QDateTime time = QDateTime::fromString(match.captured(1), "yyyy-MM-dd_HH-mm");
    EXPECT_GE(time, before);
    EXPECT_LE(time, QDateTime::currentDateTime());
    EXPECT_NE(defaultExportName(meetingNaming(), "txt", std::nullopt), first);
}

class UniqueNames : public testing::Test {
protected:
    void make(const QString &name) const
    {
        QFile file(path(name));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    }
    QString path(const QString &name) const { return folder.filePath(name); }
    QString download(const QString &name) const { return uniqueDownloadURL(path(name)).mid(folder.path().size() + 1); }
    QString inFolder(const QString &name) const
    {
        return uniqueFolderURL(folder.path(), name).mid(folder.path().size() + 1);
    }

    QTemporaryDir folder;
};

TEST_F(UniqueNames, aFreeNameStays)
{
    EXPECT_EQ(download("talk_transcription.txt"), "talk_transcription.txt");
    EXPECT_EQ(inFolder("talk_transcription.txt"), "talk_transcription.txt");
}

TEST_F(UniqueNames, aDownloadIsCountedFromTwo)
{
    make("talk_transcription.txt");
    EXPECT_EQ(download("talk_transcription.txt"), "talk_transcription-2.txt");
    make("talk_transcription-2.txt");
    make("talk_transcription-4.txt");
    EXPECT_EQ(download("talk_transcription.txt"), "talk_transcription-3.txt");
    EXPECT_EQ(download("talk_transcription.srt"), "talk_transcription.srt") << "another extension is another name";
}

TEST_F(UniqueNames, aFileInAChosenFolderIsCountedFromOneInBrackets)
{
    make("talk_transcription.txt");
    EXPECT_EQ(inFolder("talk_transcription.txt"), "talk_transcription (1).txt");
    make("talk_transcription (1).txt");
    make("talk_transcription (3).txt");
    EXPECT_EQ(inFolder("talk_transcription.txt"), "talk_transcription (2).txt");
}

TEST_F(UniqueNames, withoutAnExtensionThereIsNoPoint)
{
    make("talk");
    EXPECT_EQ(download("talk"), "talk-2");
    EXPECT_EQ(inFolder("talk"), "talk (1)");
}

TEST_F(UniqueNames, theCountGoesOnWithoutALimit)
{
    make("a.txt");
    for (int i = 1; i <= 120; ++i) {
        make(QString("a-%1.txt").arg(i));
        make(QString("a (%1).txt").arg(i));
    }
    EXPECT_EQ(download("a.txt"), "a-121.txt");
    EXPECT_EQ(inFolder("a.txt"), "a (121).txt");
}

TEST_F(UniqueNames, aFolderAndALinkThatLeadsNowhereTakeTheirNamesToo)
{
    ASSERT_TRUE(QDir(folder.path()).mkdir("a.txt"));
    ASSERT_TRUE(QFile::link("/nowhere", path("b.txt")));
    EXPECT_EQ(download("a.txt"), "a-2.txt");
    EXPECT_EQ(download("b.txt"), "b-2.txt");
    EXPECT_EQ(inFolder("a.txt"), "a (1).txt");
    EXPECT_EQ(inFolder("b.txt"), "b (1).txt");
}

TEST_F(UniqueNames, signsOfPatternsInANameAreTakenAsTheyAre)
{
    make("100%1 %2.txt");
    EXPECT_EQ(download("100%1 %2.txt"), "100%1 %2-2.txt");
    EXPECT_EQ(inFolder("100%1 %2.txt"), "100%1 %2 (1).txt");
}

} // namespace
