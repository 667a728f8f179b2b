#include "batch_screen_test.h"

#include <QSignalSpy>

using namespace sorvanta;
using testing::ElementsAre;

namespace {

QList<QUrl> urls(const QStringList &paths)
{
    QList<QUrl> list;
    for (const QString &path : paths)
        list << QUrl::fromLocalFile(path);
    return list;
}

struct Look {
    FileStatus status;
    const char *word;
    FileTone::Tone tone;
    const char *symbol;
};

class FileStatusLookTest : public testing::TestWithParam<Look> { };

TEST_P(FileStatusLookTest, isThatOfTheTable)
{
    const FileStatusLook look = lookOf(GetParam().status);
    EXPECT_EQ(look.word, QString::fromUtf8(GetParam().word));
    EXPECT_EQ(look.tone, GetParam().tone);
    EXPECT_EQ(look.symbol, QString::fromUtf8(GetParam().symbol));
    if (GetParam().status == FileStatus::failed) {
        EXPECT_EQ(look.symbolTone, FileTone::Orange);
    } else {
        EXPECT_EQ(look.symbolTone, FileTone::Secondary);
    }
}

INSTANTIATE_TEST_SUITE_P(, FileStatusLookTest,
                         testing::Values(Look{FileStatus::pending, "Pending", FileTone::Secondary, ""},
                                         Look{FileStatus::running, "Transcribing", FileTone::Blue, ""},
                                         Look{FileStatus::done, "Done", FileTone::Green, "doc.text"},
                                         Look{FileStatus::failed, "Failed", FileTone::Red, "exclamationmark.triangle"},
                                         Look{FileStatus::cancelled, "Cancelled", FileTone::Orange, ""}));

TEST(FileResult, keepsAByteOrderMarkAsTheOtherScreensDo)
{
    FileResult result;
    result.output = "\xEF\xBB\xBF[a] One\nplain";
    EXPECT_EQ(result.rawOutput(), u"\uFEFF[a] One\nplain"_qs);
    EXPECT_EQ(result.transcript(), u"\uFEFF[a] One\nplain"_qs);
}

TEST(FileResult, worksItsTextsOutOfTheOutput)
{
    FileResult result;
    EXPECT_EQ(result.transcript(), QString());
    EXPECT_EQ(result.exportText(true), QString());
    result.output =
        "main: log\n[00:00:00.000 --> 00:00:02.000]   - Grüße 🙂\n[00:00:02.000 --> 00:00:04.000]   Two\n";
    EXPECT_TRUE(result.rawOutput().contains(u"Grüße 🙂"_qs));
    EXPECT_EQ(result.transcript(), u"- Grüße 🙂\nTwo"_qs);
    EXPECT_EQ(result.exportText(false), u"- Grüße 🙂\nTwo"_qs);
    EXPECT_EQ(result.exportText(true), u"Grüße 🙂\nTwo"_qs);
    ASSERT_EQ(result.segments(true).size(), 2);
    EXPECT_EQ(result.segments(true)[0].text, u"Grüße 🙂"_qs);
    EXPECT_EQ(result.segments(false)[0].start, u"00:00:00.000"_qs);
}

TEST(FileNames, areLastPathComponentsAndForTheEyeOneLine)
{
    const QUrl url = QUrl::fromLocalFile(u"/a/one\ntwo\u2028three.wav"_qs);
    EXPECT_EQ(fileName(url), u"one\ntwo\u2028three.wav"_qs);
    EXPECT_EQ(oneLineFileName(url), u"one two three.wav"_qs);
    EXPECT_EQ(oneLineFileName(QUrl::fromLocalFile(u"/a/50% #1?.wav"_qs)), u"50% #1?.wav"_qs);
}

class FileResultsTest : public testing::Test {
protected:
    FileResultsTest() { results.begin(urls({u"/x/a.wav"_qs, u"/x/b.wav"_qs, u"/x/c.wav"_qs})); }

    QVariant data(int row, FileResults::Role role) { return results.data(results.index(row), role); }

    FileResults results;
};

TEST_F(FileResultsTest, beginAsPendingRowsOfTheFilesWithTheFirstSelected)
{
    ASSERT_EQ(results.rowCount(), 3);
    for (const FileResult &result : results.list()) {
        EXPECT_EQ(result.status, FileStatus::pending);
        EXPECT_EQ(result.rawOutput(), QString());
        EXPECT_EQ(result.transcript(), QString());
        EXPECT_FALSE(result.error);
        EXPECT_FALSE(result.id.isNull());
    }
    EXPECT_NE(results.list()[0].id, results.list()[1].id);
    EXPECT_EQ(results.selectedResultID(), results.list()[0].id);
    EXPECT_EQ(data(1, FileResults::NameRole), u"b.wav"_qs);
    EXPECT_EQ(data(1, FileResults::StatusWordRole), u"Pending"_qs);
    EXPECT_EQ(data(1, FileResults::StatusToneRole).value<FileTone::Tone>(), FileTone::Secondary);
    EXPECT_EQ(data(1, FileResults::SymbolRole), QString());
}

TEST_F(FileResultsTest, eachStartMakesNewIds)
{
    const QUuid before = results.list()[0].id;
    results.begin(urls({u"/x/a.wav"_qs}));
    EXPECT_NE(results.list()[0].id, before);
    EXPECT_EQ(results.count(), 1);
}

TEST_F(FileResultsTest, announceTheOneRowWhoseStatusChanged)
{
    QSignalSpy changed(&results, &QAbstractItemModel::dataChanged);
    QSignalSpy reset(&results, &QAbstractItemModel::modelReset);
    results.setStatus(1, FileStatus::failed);
    ASSERT_EQ(changed.count(), 1);
    EXPECT_EQ(changed[0][0].toModelIndex().row(), 1);
    EXPECT_EQ(changed[0][1].toModelIndex().row(), 1);
    EXPECT_FALSE(changed[0][2].value<QList<int>>().contains(FileResults::NameRole));
    EXPECT_EQ(data(1, FileResults::SymbolRole), u"exclamationmark.triangle"_qs);
    EXPECT_EQ(data(1, FileResults::SymbolToneRole).value<FileTone::Tone>(), FileTone::Orange);
    results.setStatus(1, FileStatus::failed);
    EXPECT_EQ(changed.count(), 1) << "nothing changed";
    results.appendOutput(1, u"[x] text", true, false, false);
    EXPECT_EQ(changed.count(), 1) << "no row shows the output";
    EXPECT_EQ(reset.count(), 0);
}

TEST_F(FileResultsTest, tellOfTheSelectedResultOnly)
{
    QSignalSpy told(&results, &FileResults::selectedResultChanged);
    results.setStatus(1, FileStatus::running);
    results.setError(1, u"no"_qs);
    EXPECT_EQ(told.count(), 0);
    results.setStatus(0, FileStatus::running);
    EXPECT_EQ(told.count(), 1);
    results.setError(0, u"no"_qs);
    EXPECT_EQ(told.count(), 2);
}

TEST_F(FileResultsTest, theSelectedResultIsTheOneOfTheIdElseTheFirstElseNone)
{
    results.selectRow(2);
    EXPECT_EQ(results.selected(), &results.list()[2]);
    results.setSelectedResultID(QUuid::createUuid());
    EXPECT_EQ(results.selected(), &results.list()[0]);
    EXPECT_EQ(results.selectedRow(), 0);
    results.setSelectedResultID(std::nullopt);
    EXPECT_EQ(results.selected(), &results.list()[0]);
    results.clear();
    EXPECT_EQ(results.selected(), nullptr);
    EXPECT_EQ(results.selectedRow(), -1);
    EXPECT_FALSE(results.selectedResultID());
}

TEST_F(FileResultsTest, aRowThatIsNotThereCannotBeSelectedOrChanged)
{
    QSignalSpy selection(&results, &FileResults::selectionChanged);
    results.selectRow(3);
    results.selectRow(-1);
    results.setStatus(3, FileStatus::done);
    results.setError(-1, u"x"_qs);
    results.appendOutput(3, u"x", true, true, true);
    EXPECT_EQ(selection.count(), 0);
    EXPECT_EQ(results.selectedRow(), 0);
}

TEST_F(FileResultsTest, tellOfAnotherSelectionOnceAndOfTheSameNever)
{
    QSignalSpy selection(&results, &FileResults::selectionChanged);
    results.selectRow(1);
    results.selectRow(1);
    EXPECT_EQ(selection.count(), 1);
}

struct Count {
    int files;
    const char *text;
    const char *more;
    int shown;
};

class SelectedFilesCount : public testing::TestWithParam<Count> { };

TEST_P(SelectedFilesCount, isSaidWithTheNamesOfFive)
{
    SelectedFiles files;
    for (int i = 0; i < GetParam().files; ++i)
        files.add({QUrl::fromLocalFile(u"/x/%1.wav"_qs.arg(i))});
    EXPECT_EQ(files.countText(), QString::fromUtf8(GetParam().text));
    EXPECT_EQ(files.moreText(), QString::fromUtf8(GetParam().more));
    ASSERT_EQ(files.rowCount(), GetParam().shown);
    for (int i = 0; i < GetParam().shown; ++i)
        EXPECT_EQ(files.data(files.index(i), SelectedFiles::NameRole), u"%1.wav"_qs.arg(i));
}

INSTANTIATE_TEST_SUITE_P(, SelectedFilesCount,
                         testing::Values(Count{0, "No files selected", "", 0}, Count{1, "1 file ready", "", 1},
                                         Count{2, "2 files ready", "", 2}, Count{5, "5 files ready", "", 5},
                                         Count{6, "6 files ready", "…and 1 more", 5},
                                         Count{2000, "2000 files ready", "…and 1995 more", 5}));

TEST(SelectedFilesTest, announceTheRowsThatAreAddedAndTakenAway)
{
    SelectedFiles files;
    QSignalSpy inserted(&files, &QAbstractItemModel::rowsInserted);
    QSignalSpy removed(&files, &QAbstractItemModel::rowsRemoved);
    QSignalSpy changed(&files, &SelectedFiles::filesChanged);
    EXPECT_TRUE(files.add(urls({u"/1.wav"_qs, u"/2.wav"_qs, u"/3.wav"_qs})));
    EXPECT_TRUE(files.add(urls({u"/4.wav"_qs, u"/5.wav"_qs, u"/6.wav"_qs})));
    EXPECT_TRUE(files.add(urls({u"/7.wav"_qs})));
    EXPECT_FALSE(files.add(urls({u"/7.wav"_qs})));
    ASSERT_EQ(inserted.count(), 2);
    EXPECT_EQ(inserted[0][1].toInt(), 0);
    EXPECT_EQ(inserted[0][2].toInt(), 2);
    EXPECT_EQ(inserted[1][1].toInt(), 3);
    EXPECT_EQ(inserted[1][2].toInt(), 4);
    EXPECT_EQ(changed.count(), 3);
    files.clear();
    files.clear();
    ASSERT_EQ(removed.count(), 1);
    EXPECT_EQ(removed[0][2].toInt(), 4);
    EXPECT_EQ(changed.count(), 4);
}

TEST(SelectedFilesTest, keepTheOrderOfAddingAndEachUrlOnce)
{
    SelectedFiles files;
    files.add(urls({u"/x/b.wav"_qs, u"/x/a.wav"_qs, u"/x/b.wav"_qs}));
    files.add(urls({u"/x/a.wav"_qs, u"/y/a.wav"_qs}));
    EXPECT_EQ(files.urls(), urls({u"/x/b.wav"_qs, u"/x/a.wav"_qs, u"/y/a.wav"_qs}));
    files.clear();
    EXPECT_TRUE(files.add(urls({u"/x/a.wav"_qs}))) << "what was cleared may come again";
}

} // namespace
