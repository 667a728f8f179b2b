#include "delivery_fixture.h"
#include "support/cramped_folder.h"

#include <sys/stat.h>
#include <unistd.h>

namespace sorvanta {

namespace {

using testing::ElementsAre;

class Delivery : public DeliveryTest {
protected:
    explicit Delivery(const DeliveryForm &form = transcriptionDelivery)
        : delivery(settings(form))
    {
    }

    void save(const DeliveryContent &content, const std::optional<QString> &answer, const QString &extension = "txt",
              const QString &savedWord = "Saved TXT")
    {
        delivery.saveWithPanel(content, extension, {extension}, savedWord);
        panels.answer(answer);
    }
    void download(const DeliveryContent &content, const QString &extension = "txt",
                  const QString &savedWord = "Saved TXT")
    {
        delivery.saveToDownloads(content, extension, savedWord);
    }
    /// An earlier message and an earlier error.
    void speak()
    {
        message = "earlier";
        error = "earlier error";
    }

    ExportDelivery delivery;
};

const DeliveryContent text{.text = u"Grüße 🙂\n"_qs};

TEST_F(Delivery, theSavePanelProposesTheNameAndTheAllowedTypes)
{
    delivery.saveWithPanel(text, "html", {"html", "htm"}, "Saved HTML");
    ASSERT_EQ(panels.saveRequests.size(), 1);
    EXPECT_EQ(panels.saveRequests.first().name, "talk.html");
    EXPECT_THAT(panels.saveRequests.first().extensions, ElementsAre("html", "htm"));
    EXPECT_EQ(messagesSet, 0);
}

TEST_F(Delivery, aSavedTextIsUtf8AndIsReportedByItsName)
{
    speak();
    save(text, path("my notes.txt"));
    EXPECT_EQ(bytes("my notes.txt"), "Grüße 🙂\n");
    EXPECT_EQ(message, "Saved TXT to my notes.txt");
    EXPECT_EQ(error, std::nullopt);
}

TEST_F(Delivery, savedBytesAreTheSameBytes)
{
    const QByteArray data("PK\0\xff\r\n\x1a", 7);
    save({.data = data}, path("a.docx"), "docx", "Saved DOCX");
    EXPECT_EQ(bytes("a.docx"), data);
    EXPECT_EQ(message, "Saved DOCX to a.docx");
}

TEST_F(Delivery, aDeclinedPanelChangesNothing)
{
    speak();
    save(text, std::nullopt);
    EXPECT_EQ(message, "earlier");
    EXPECT_EQ(error, "earlier error");
    EXPECT_EQ(messagesSet, 0);
    EXPECT_THAT(namesIn(folder.path()), ElementsAre("Downloads"));
}

TEST_F(Delivery, anExistingFileIsReplaced)
{
    put("a.txt");
    save(text, path("a.txt"));
    EXPECT_EQ(bytes("a.txt"), "Grüße 🙂\n");
    EXPECT_THAT(namesIn(folder.path()), ElementsAre("Downloads", "a.txt"));
}

TEST_F(Delivery, anExportIsAFileAsOtherProgramsMakeThem)
{
    save(text, path("a.txt"));
    EXPECT_EQ(modeOf("a.txt"), 0644);
    save({.data = "data"}, path("a.docx"), "docx", "Saved DOCX");
    EXPECT_EQ(modeOf("a.docx"), 0644);
    download(text);
    EXPECT_EQ(modeOf("Downloads/talk.txt"), 0644);
}

TEST_F(Delivery, aFileThatIsReplacedKeepsItsPermissions)
{
    put("a.txt");
    save(text, path("a.txt"));
    EXPECT_EQ(bytes("a.txt"), "Grüße 🙂\n");
    EXPECT_EQ(modeOf("a.txt"), 0600);
    ASSERT_EQ(::chmod(QFile::encodeName(path("a.txt")).constData(), 0664), 0);
    save(text, path("a.txt"));
    EXPECT_EQ(modeOf("a.txt"), 0664);
}

TEST_F(Delivery, aLinkStaysALinkAndWhatItLeadsToIsReplaced)
{
    put("real.txt");
    ASSERT_TRUE(QFile::link(path("real.txt"), path("link.txt")));
    save(text, path("link.txt"));
    EXPECT_EQ(bytes("real.txt"), "Grüße 🙂\n");
    EXPECT_TRUE(QFileInfo(path("link.txt")).isSymLink());
    EXPECT_EQ(message, "Saved TXT to link.txt");
}

TEST_F(Delivery, aFailedSaveIsReportedAndKeepsTheStatus)
{
    message = "Done";
    save(text, path("missing/a.txt"));
    EXPECT_EQ(error, "Could not save TXT: The folder “missing” doesn’t exist.");
    EXPECT_EQ(message, "Done");
    save({.data = "x"}, path("missing/a.docx"), "docx", "Saved DOCX");
    EXPECT_EQ(error, "Could not save DOCX: The folder “missing” doesn’t exist.");
}

TEST_F(Delivery, aFailureNamesTheExtensionAndNotTheFormat)
{
    save(text, path("missing/a.md"), "md", "Saved Markdown");
    EXPECT_EQ(error, "Could not save MD: The folder “missing” doesn’t exist.");
    save(text, path("a.md"), "md", "Saved Markdown");
    EXPECT_EQ(message, "Saved Markdown to a.md");
    EXPECT_EQ(error, std::nullopt);
}

TEST_F(Delivery, aFailedSaveLeavesTheOldFileAsItWas)
{
    const QString cramped = crampedFolder(path("deep"));
    const QString target = cramped + "/a";
    writeFileAtomically(path("old"), "old");
    ASSERT_EQ(::link(path("old").toUtf8(), target.toUtf8()), 0) << "a name of one byte is all that fits";
    save(text, target);
    EXPECT_TRUE(error && error->startsWith("Could not save TXT: The file “a” couldn’t be saved in the folder “"))
        << error.value_or("no error").toStdString();
    EXPECT_EQ(readFile(target), "old");
    EXPECT_THAT(namesIn(cramped), ElementsAre("a"));
}

TEST_F(Delivery, aFolderIsNotReplaced)
{
    QDir(folder.path()).mkpath("a.txt/inside");
    save(text, path("a.txt"));
    EXPECT_EQ(error, "Could not save TXT: The file “a.txt” couldn’t be saved in the folder “"
                         + QFileInfo(folder.path()).fileName() + "”.");
    EXPECT_TRUE(QFileInfo(path("a.txt/inside")).isDir());
    EXPECT_THAT(namesIn(folder.path()), ElementsAre("Downloads", "a.txt"));
}

TEST_F(Delivery, aNameThatIsTooLongIsAFailureInWords)
{
    const QString longName = QString(300, 'n') + ".txt";
    save(text, path(longName));
    EXPECT_TRUE(error && error->startsWith("Could not save TXT: The file “nnn"));
    name = QString(300, 'n');
    error.reset();
    download(text);
    EXPECT_TRUE(error && error->startsWith("Could not save TXT to Downloads: The file “nnn"));
    EXPECT_TRUE(error && error->endsWith(".txt” couldn’t be saved in the folder “Downloads”."));
    EXPECT_EQ(namesIn(downloads), QStringList());
}

TEST_F(Delivery, aNameOfTheGreatestLengthIsWritten)
{
    const QString longest = QString(255 - 4, 'n') + ".txt";
    save(text, path(longest));
    EXPECT_EQ(message, "Saved TXT to " + longest);
    EXPECT_EQ(bytes(longest), "Grüße 🙂\n");
}

TEST_F(Delivery, everyNameThatAFileSystemAllowsIsWrittenAndReported)
{
    for (const QString &odd :
         {u"a \"quoted\" name.txt"_qs, u"two\nlines.txt"_qs, u"*?<>|\\:.txt"_qs, u" blanks .txt"_qs, u"%1 %2.txt"_qs,
          u"~.txt"_qs, u"$HOME.txt"_qs, u"日本語 🙂.txt"_qs, u"-.txt"_qs, u"…"_qs}) {
        save(text, path(odd));
        EXPECT_EQ(message, "Saved TXT to " + odd);
        EXPECT_EQ(bytes(odd), "Grüße 🙂\n") << odd.toStdString();
    }
}

TEST_F(Delivery, downloadingThriceLeavesThreeFilesAndNamesTheLast)
{
    name = "x_transcription";
    error = "earlier error";
    download({.text = "1"});
    EXPECT_EQ(message, "Saved TXT to Downloads/x_transcription.txt");
    EXPECT_EQ(error, std::nullopt);
    download({.text = "2"});
    download({.text = "3"});
    EXPECT_EQ(message, "Saved TXT to Downloads/x_transcription-3.txt");
    EXPECT_THAT(namesIn(downloads),
                testing::UnorderedElementsAre("x_transcription.txt", "x_transcription-2.txt", "x_transcription-3.txt"));
    EXPECT_EQ(bytes("Downloads/x_transcription.txt"), "1");
    EXPECT_EQ(bytes("Downloads/x_transcription-3.txt"), "3");
    EXPECT_EQ(panels.saveRequests.size(), 0);
}

TEST_F(Delivery, withoutADownloadsFolderNothingIsWritten)
{
    hasDownloads = false;
    message = "Done";
    download(text);
    EXPECT_EQ(error, "Could not locate Downloads folder.");
    EXPECT_EQ(message, "Done");
    EXPECT_EQ(namesIn(downloads), QStringList());
}

TEST_F(Delivery, aFailedDownloadIsReportedAndKeepsTheStatus)
{
    message = "Done";
    QDir(downloads).removeRecursively();
    download({.data = "x"}, "pdf", "Saved PDF");
    EXPECT_EQ(error, "Could not save PDF to Downloads: The folder “Downloads” doesn’t exist.");
    EXPECT_EQ(message, "Done");
}

TEST_F(Delivery, anAnswerAfterItsEndIsNotHeard)
{
    {
        ExportDelivery brief(settings(transcriptionDelivery));
        brief.saveWithPanel(text, "txt", {"txt"}, "Saved TXT");
    }
    panels.answer(path("a.txt"));
    EXPECT_EQ(messagesSet, 0);
    EXPECT_FALSE(QFileInfo::exists(path("a.txt")));
}

TEST_F(Delivery, ofSeveralContentsTheFirstKindCounts)
{
    const QString source = put("stored.txt", "stored");
    save({.sourcePath = source, .data = "data", .text = u"text"_qs}, path("a"));
    EXPECT_EQ(bytes("a"), "stored");
    save({.data = "data", .text = u"text"_qs}, path("b"));
    EXPECT_EQ(bytes("b"), "data");
}

struct SavedFormat {
    ExportFormat format;
    QString word;
    QStringList types;
};

class FormatOfADelivery : public testing::TestWithParam<SavedFormat> { };

TEST_P(FormatOfADelivery, hasItsWordAndItsTypes)
{
    EXPECT_EQ(savedWord(GetParam().format), GetParam().word);
    EXPECT_EQ(allowedTypes(GetParam().format), GetParam().types);
}

INSTANTIATE_TEST_SUITE_P(, FormatOfADelivery,
                         testing::Values(SavedFormat{ExportFormat::txt, "Saved TXT", {"txt"}},
                                         SavedFormat{ExportFormat::srt, "Saved SRT", {"srt"}},
                                         SavedFormat{ExportFormat::vtt, "Saved VTT", {"vtt"}},
                                         SavedFormat{ExportFormat::csv, "Saved CSV", {"csv"}},
                                         SavedFormat{ExportFormat::docx, "Saved DOCX", {"docx"}},
                                         SavedFormat{ExportFormat::pdf, "Saved PDF", {"pdf"}},
                                         SavedFormat{ExportFormat::markdown, "Saved Markdown", {"md"}},
                                         SavedFormat{ExportFormat::html, "Saved HTML", {"html", "htm"}},
                                         SavedFormat{ExportFormat::json, "Saved JSON", {"json"}}));

class HistoryDelivery : public Delivery {
protected:
    HistoryDelivery()
        : Delivery(historyDelivery)
    {
    }
};

TEST_F(HistoryDelivery, messagesGoBeforeThePanelOpensAndStayAwayIfItIsDeclined)
{
    speak();
    delivery.saveWithPanel(text, "txt", {"txt"}, "Saved TXT");
    EXPECT_EQ(message, std::nullopt);
    EXPECT_EQ(error, std::nullopt);
    panels.answer(std::nullopt);
    EXPECT_EQ(message, std::nullopt);
    EXPECT_EQ(error, std::nullopt);
}

TEST_F(HistoryDelivery, aSaveSpeaksInItsOwnWords)
{
    save(text, path("a.md"), "md", "Saved Markdown");
    EXPECT_EQ(message, "Exported to a.md");
    EXPECT_EQ(error, std::nullopt);
    save(text, path("missing/a.md"), "md", "Saved Markdown");
    EXPECT_EQ(message, std::nullopt);
    EXPECT_EQ(error, "Export failed: The folder “missing” doesn’t exist.");
}

TEST_F(HistoryDelivery, aDownloadSpeaksInItsOwnWords)
{
    speak();
    download(text, "md", "Saved Markdown");
    download(text, "md", "Saved Markdown");
    EXPECT_EQ(message, "Saved to Downloads/talk-2.md");
    EXPECT_EQ(error, std::nullopt);
    QDir(downloads).removeRecursively();
    download(text);
    EXPECT_EQ(message, std::nullopt);
    EXPECT_EQ(error, "Download failed: The folder “Downloads” doesn’t exist.");
    hasDownloads = false;
    download(text);
    EXPECT_EQ(message, std::nullopt);
    EXPECT_EQ(error, "Downloads folder not found.");
}

TEST_F(HistoryDelivery, aStoredFileIsCopiedOverWhatIsThere)
{
    put("a.srt", "a longer file that was there before");
    save({.sourcePath = put("stored.srt", "stored\xff"), .text = u"in memory"_qs}, path("a.srt"));
    EXPECT_EQ(bytes("a.srt"), "stored\xff");
    EXPECT_EQ(bytes("stored.srt"), "stored\xff");
    EXPECT_EQ(message, "Exported to a.srt");
}

TEST_F(HistoryDelivery, theCopyOfAStoredFileIsNotPrivateAsThatIs)
{
    const DeliveryContent stored{.sourcePath = put("stored.srt", "stored")};
    save(stored, path("a.srt"), "srt", "Saved SRT");
    EXPECT_EQ(modeOf("a.srt"), 0644);
    download(stored, "srt", "Saved SRT");
    EXPECT_EQ(modeOf("Downloads/talk.srt"), 0644);
    EXPECT_EQ(modeOf("stored.srt"), 0600);
}

TEST_F(HistoryDelivery, theTargetIsRemovedFirst)
{
    put("real.txt");
    ASSERT_TRUE(QFile::link(path("real.txt"), path("link.txt")));
    save(text, path("link.txt"));
    EXPECT_FALSE(QFileInfo(path("link.txt")).isSymLink());
    EXPECT_EQ(bytes("link.txt"), "Grüße 🙂\n");
    EXPECT_EQ(bytes("real.txt"), "old");
}

TEST_F(HistoryDelivery, aLinkThatLeadsNowhereGivesWayToACopy)
{
    ASSERT_TRUE(QFile::link("/nowhere", path("link.txt")));
    save({.sourcePath = put("stored.txt", "stored")}, path("link.txt"));
    EXPECT_EQ(message, "Exported to link.txt");
    EXPECT_EQ(bytes("link.txt"), "stored");
}

TEST_F(HistoryDelivery, aStoredFileThatIsExportedOntoItselfIsKept)
{
    const QString source = put("stored.txt", "stored");
    ASSERT_TRUE(QFile::link(source, path("link.txt")));
    save({.sourcePath = source, .text = u"in memory"_qs}, source);
    EXPECT_EQ(message, "Exported to stored.txt");
    save({.sourcePath = source, .text = u"in memory"_qs}, path("link.txt"));
    EXPECT_EQ(bytes("stored.txt"), "stored");
}

TEST_F(HistoryDelivery, aFolderWithContentIsNeitherRemovedNorReplaced)
{
    QDir(folder.path()).mkpath("a.txt/inside");
    save(text, path("a.txt"));
    EXPECT_EQ(error, "Export failed: “a.txt” couldn’t be removed.");
    EXPECT_TRUE(QFileInfo(path("a.txt/inside")).isDir());
}

TEST_F(HistoryDelivery, withoutContentItFailsAndLeavesTheTargetAlone)
{
    put("a.txt");
    save({}, path("a.txt"));
    EXPECT_EQ(error, "Export failed: No content available to export.");
    EXPECT_EQ(bytes("a.txt"), "old");
}

TEST_F(HistoryDelivery, aStoredFileThatWentMeanwhileIsAFailureAndLeavesTheTargetAlone)
{
    put("a.txt");
    save({.sourcePath = path("gone.txt"), .text = u"in memory"_qs}, path("a.txt"));
    EXPECT_EQ(error, "Export failed: “gone.txt” couldn’t be copied to “" + QFileInfo(folder.path()).fileName()
                         + "” because either the former doesn’t exist, or the folder containing the latter doesn’t "
                           "exist.");
    EXPECT_EQ(bytes("a.txt"), "old");
}

/// A folder in which nobody but root may make or remove anything.
class ReadOnlyFolder : public Delivery {
protected:
    void SetUp() override
    {
        if (::geteuid() == 0) {
            // Root may do everything: put its rights aside.
            ASSERT_EQ(::chmod(folder.path().toUtf8(), 0755), 0);
            ASSERT_EQ(::chmod(downloads.toUtf8(), 0555), 0);
            ASSERT_EQ(::seteuid(nobody), 0);
            m_wasRoot = true;
        } else {
            ASSERT_EQ(::chmod(downloads.toUtf8(), 0555), 0);
        }
    }
    void TearDown() override
    {
        if (m_wasRoot) {
            ASSERT_EQ(::seteuid(0), 0);
        }
        ::chmod(downloads.toUtf8(), 0755);
    }

private:
    static constexpr uid_t nobody = 65534;
    bool m_wasRoot = false;
};

TEST_F(ReadOnlyFolder, isNamedInTheSentence)
{
    save(text, downloads + "/a.txt");
    EXPECT_EQ(error,
              "Could not save TXT: You don’t have permission to save the file “a.txt” in the folder “Downloads”.");
    download(text);
    EXPECT_EQ(error, "Could not save TXT to Downloads: You don’t have permission to save the file “talk.txt” in the "
                     "folder “Downloads”.");
    EXPECT_EQ(namesIn(downloads), QStringList());
}

} // namespace

} // namespace sorvanta
