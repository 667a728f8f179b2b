#include "batch_screen_test.h"

#include "export/export_format.h"
#include "support/cramped_folder.h"
#include "support/file_content.h"

#include <QDir>
#include <QTemporaryDir>

#include <csignal>
#include <sys/resource.h>

using namespace sorvanta;
using testing::ElementsAre;

namespace {

const QByteArray aAndB = "only a.wav\nprint [00%3A00%3A00.000 --> 00%3A00%3A01.000]   - first%0A\n"
                         "only b.wav\nprint second%0A\nonly c.wav\n";

const ExportMenuEntry *entryOf(const ExportMenu *menu, const QString &label)
{
    for (const QObject *entry : menu->entries()) {
        if (static_cast<const ExportMenuEntry *>(entry)->label() == label)
            return static_cast<const ExportMenuEntry *>(entry);
    }
    throw std::runtime_error("There is no such entry.");
}

class BatchExportsTest : public BatchScreenTest {
protected:
    const ExportMenu *exportAllSubmenu() { return entryOf(screen->exportMenu(), u"Export All"_qs)->submenu(); }

    void exportAll(const ExportMenu *menu, const QString &label, const QString &target)
    {
        const qsizetype before = bench.panels.folderPrompts.size();
        entryOf(menu, label)->choose();
        if (bench.panels.folderPrompts.size() > before)
            bench.panels.answer(target);
    }
    void exportAll(const QString &label, const QString &target) { exportAll(screen->exportAllMenu(), label, target); }

    static QStringList namesIn(const QString &place)
    {
        return QDir(place).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot, QDir::Name);
    }
    QByteArray bytes(const QString &name) const { return contentOf(folder.filePath(name)); }

    QTemporaryDir folder;
};

TEST_F(BatchExportsTest, theMenusEnablingFollowsResultsAndSelection)
{
    EXPECT_FALSE(screen->exportMenu()->isEnabled());
    EXPECT_FALSE(screen->exportAllMenu()->isEnabled());
    transcribe(threeFiles, aAndB);
    EXPECT_TRUE(screen->exportAllMenu()->isEnabled());
    EXPECT_TRUE(screen->exportMenu()->isEnabled());
    EXPECT_TRUE(entryOf(screen->exportMenu(), u"SRT"_qs)->isEnabled());
    screen->results()->selectRow(1);
    EXPECT_TRUE(screen->exportMenu()->isEnabled());
    EXPECT_FALSE(entryOf(screen->exportMenu(), u"SRT"_qs)->isEnabled()) << "no timed lines";
    EXPECT_TRUE(entryOf(exportAllSubmenu(), u"SRT"_qs)->isEnabled()) << "another result has some";
    screen->results()->selectRow(2);
    EXPECT_FALSE(screen->exportMenu()->isEnabled()) << "no text";
    EXPECT_TRUE(screen->exportAllMenu()->isEnabled());
    screen->clearAll();
    EXPECT_FALSE(screen->exportAllMenu()->isEnabled());
}

TEST_F(BatchExportsTest, withoutTextNothingOfExportAllIsEnabled)
{
    transcribe({u"/music/c.wav"_qs}, aAndB);
    EXPECT_TRUE(screen->exportAllMenu()->isEnabled()) << "there is a result";
    for (const QObject *entry : screen->exportAllMenu()->entries())
        EXPECT_FALSE(static_cast<const ExportMenuEntry *>(entry)->isEnabled());
}

TEST_F(BatchExportsTest, withoutTimedLinesSubtitlesAreDisabled)
{
    transcribe({u"/music/b.wav"_qs}, aAndB);
    const QStringList subtitles{u"SRT"_qs, u"VTT"_qs};
    ASSERT_EQ(screen->exportAllMenu()->entries().size(), 9);
    for (const QObject *object : screen->exportAllMenu()->entries()) {
        const auto *const entry = static_cast<const ExportMenuEntry *>(object);
        EXPECT_EQ(entry->isEnabled(), !subtitles.contains(entry->label())) << entry->label().toStdString();
    }
}

TEST_F(BatchExportsTest, theMenusAreLiveDuringABatch)
{
    start({u"/music/a.wav"_qs}, aAndB + "only a.wav\nsleep 60000\n");
    waitFor([this] { return result(0).hasTranscript; });
    EXPECT_TRUE(screen->exportMenu()->isEnabled());
    exportAll(u"TXT"_qs, folder.path());
    EXPECT_EQ(bytes(u"a_transcription.txt"_qs), "- first");
    EXPECT_TRUE(run().isTranscribing());
}

TEST_F(BatchExportsTest, eachOfNineFormatsIsExportedFromBothPlaces)
{
    transcribe({u"/music/a.wav"_qs}, aAndB);
    const QStringList names{u"txt"_qs, u"srt"_qs, u"vtt"_qs,  u"csv"_qs, u"docx"_qs,
                            u"pdf"_qs, u"md"_qs,  u"html"_qs, u"json"_qs};
    qsizetype format = 0;
    for (const QObject *object : screen->exportAllMenu()->entries()) {
        const QString label = static_cast<const ExportMenuEntry *>(object)->label();
        const QString name = u"a_transcription."_qs + names[format];
        exportAll(label, folder.path());
        ASSERT_EQ(namesIn(folder.path()), QStringList{name}) << run().errorText().toStdString();
        const QString word = shortLabel(allExportFormats[static_cast<std::size_t>(format)]);
        EXPECT_EQ(run().status(), u"Exported 1 %1 file(s) to %2"_qs.arg(word, QDir(folder.path()).dirName()));
        exportAll(exportAllSubmenu(), label, folder.path());
        EXPECT_EQ(namesIn(folder.path()).size(), 2);
        QFile::remove(folder.filePath(name));
        QFile::remove(folder.filePath(u"a_transcription (1)."_qs + names[format]));
        ++format;
    }
    EXPECT_EQ(format, 9);
    EXPECT_THAT(bench.panels.folderPrompts, testing::Each(u"Choose Folder"_qs));
}

TEST_F(BatchExportsTest, filesNamedAlikeDodgeEachOther)
{
    transcribe({u"/m/a.wav"_qs, u"/n/a.wav"_qs}, aAndB);
    exportAll(u"TXT"_qs, folder.path());
    EXPECT_THAT(namesIn(folder.path()), ElementsAre(u"a_transcription (1).txt"_qs, u"a_transcription.txt"_qs));
    exportAll(u"TXT"_qs, folder.path());
    EXPECT_EQ(namesIn(folder.path()).size(), 4);
    EXPECT_TRUE(QFile::exists(folder.filePath(u"a_transcription (3).txt"_qs)));
}

TEST_F(BatchExportsTest, onlyResultsWithContentAreExportedAndCounted)
{
    transcribe(threeFiles, aAndB);
    exportAll(u"TXT"_qs, folder.path());
    EXPECT_THAT(namesIn(folder.path()), ElementsAre(u"a_transcription.txt"_qs, u"b_transcription.txt"_qs));
    EXPECT_EQ(run().status(), u"Exported 2 TXT file(s) to "_qs + QDir(folder.path()).dirName());
    exportAll(u"SRT"_qs, folder.path());
    EXPECT_EQ(run().status(), u"Exported 1 SRT file(s) to "_qs + QDir(folder.path()).dirName());
}

TEST_F(BatchExportsTest, resultsOfWhateverStatusAreExported)
{
    transcribe(threeFiles, failingWithB);
    exportAll(u"TXT"_qs, folder.path());
    EXPECT_THAT(namesIn(folder.path()), ElementsAre(u"a_transcription.txt"_qs, u"b_transcription.txt"_qs));
    EXPECT_FALSE(run().error()) << "a success takes the message away";
}

TEST_F(BatchExportsTest, exportAllTakesTheStrippedTextInEveryFormat)
{
    transcribe({u"/music/a.wav"_qs}, aAndB);
    screen->pane()->setStripDashes(true);
    exportAll(u"TXT"_qs, folder.path());
    EXPECT_EQ(bytes(u"a_transcription.txt"_qs), "first");
    exportAll(u"JSON"_qs, folder.path());
    EXPECT_TRUE(bytes(u"a_transcription.json"_qs).contains("\"text\" : \"first\""));
    EXPECT_FALSE(bytes(u"a_transcription.json"_qs).contains("- first"));
}

TEST_F(BatchExportsTest, aDeclinedFolderIsNoFailure)
{
    transcribe({u"/music/a.wav"_qs}, aAndB);
    entryOf(screen->exportAllMenu(), u"TXT"_qs)->choose();
    bench.panels.answer(std::nullopt);
    EXPECT_EQ(run().status(), u"Done"_qs);
    EXPECT_FALSE(run().error());
}

TEST_F(BatchExportsTest, aFolderThatCannotBeWrittenIsTold)
{
    transcribe({u"/music/a.wav"_qs}, aAndB);
    exportAll(u"TXT"_qs, crampedFolder(folder.path()));
    ASSERT_TRUE(run().error());
    EXPECT_TRUE(run().error()->startsWith(u"Failed to export TXT: "_qs)) << run().error()->toStdString();
    EXPECT_GT(run().error()->size(), 25);
}

/// A limit on the size of the files that this process writes stands in for a disk that is full.
class FileSizeLimit {
public:
    explicit FileSizeLimit(rlim_t bytes)
    {
        m_signalBefore = std::signal(SIGXFSZ, SIG_IGN);
        getrlimit(RLIMIT_FSIZE, &m_before);
        const rlimit limited{bytes, m_before.rlim_max};
        setrlimit(RLIMIT_FSIZE, &limited);
    }
    FileSizeLimit(const FileSizeLimit &) = delete;
    FileSizeLimit &operator=(const FileSizeLimit &) = delete;
    ~FileSizeLimit()
    {
        setrlimit(RLIMIT_FSIZE, &m_before);
        std::signal(SIGXFSZ, m_signalBefore);
    }

private:
    rlimit m_before{};
    void (*m_signalBefore)(int);
};

TEST_F(BatchExportsTest, whatWasWrittenBeforeAWriteFailedStays)
{
    const QByteArray longB =
        "only a.wav\nprint [x] short%0A\nonly b.wav\nburst 200000\nonly c.wav\nprint [x] short%0A\n";
    transcribe(threeFiles, longB);
    {
        const FileSizeLimit limit(64 * 1024);
        exportAll(u"TXT"_qs, folder.path());
    }
    EXPECT_THAT(namesIn(folder.path()), ElementsAre(u"a_transcription.txt"_qs));
    EXPECT_EQ(bytes(u"a_transcription.txt"_qs), "short");
    ASSERT_TRUE(run().error());
    EXPECT_TRUE(run().error()->startsWith(u"Failed to export TXT: "_qs)) << run().error()->toStdString();
    EXPECT_EQ(run().status(), u"Done"_qs) << "it stays";
}

TEST_F(BatchExportsTest, theSelectedResultIsSavedUnderItsName)
{
    transcribe(threeFiles, aAndB);
    screen->results()->selectRow(1);
    entryOf(screen->exportMenu(), u"TXT"_qs)->choose();
    ASSERT_EQ(bench.panels.saveRequests.size(), 1);
    EXPECT_EQ(bench.panels.saveRequests[0].name, u"b_transcription.txt"_qs);
    bench.panels.answer(folder.filePath(u"mine.txt"_qs));
    EXPECT_EQ(bytes(u"mine.txt"_qs), "second");
    EXPECT_EQ(run().status(), u"Saved TXT to mine.txt"_qs);
}

struct Stripping {
    const char *label;
    bool isStripped; ///< of its text where there are no timed lines
};

class BatchExportStripping : public BatchExportsTest, public testing::WithParamInterface<Stripping> { };

TEST_P(BatchExportStripping, isThatOfTheTable)
{
    transcribe({u"/music/a.wav"_qs}, "print - plain%0A\n");
    screen->pane()->setStripDashes(true);
    entryOf(screen->exportMenu(), QString::fromUtf8(GetParam().label))->choose();
    if (bench.panels.saveRequests.isEmpty()) {
        EXPECT_STREQ(GetParam().label, "CSV") << "its entry is disabled without timed lines";
        return;
    }
    bench.panels.answer(folder.filePath(u"out"_qs));
    EXPECT_EQ(bytes(u"out"_qs).contains("- plain"), !GetParam().isStripped);
    EXPECT_TRUE(bytes(u"out"_qs).contains("plain"));
}

INSTANTIATE_TEST_SUITE_P(, BatchExportStripping,
                         testing::Values(Stripping{"TXT", true}, Stripping{"Markdown (.md)", false},
                                         Stripping{"HTML", false}, Stripping{"JSON", false}));

TEST_F(BatchExportsTest, theDownloadIsNamedByTheSelectedResult)
{
    QDir().mkpath(folder.filePath(u"Downloads"_qs));
    transcribe(threeFiles, aAndB);
    const QByteArray home = qgetenv("HOME");
    qputenv("HOME", folder.path().toUtf8());
    entryOf(entryOf(screen->exportMenu(), u"Download to Downloads"_qs)->submenu(), u"TXT"_qs)->choose();
    qputenv("HOME", home);
    EXPECT_EQ(run().status(), u"Saved TXT to Downloads/a_transcription.txt"_qs) << run().errorText().toStdString();
}

} // namespace
