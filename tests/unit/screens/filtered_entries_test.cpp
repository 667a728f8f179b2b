#include "screens/history/filtered_entries.h"

#include "platform/unicode_text.h"
#include "support/history_entries.h"
#include "support/printing.h"
#include "support/waiting.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QSignalSpy>
#include <QTest>

#include <random>

namespace sorvanta {

namespace {

using testing::ElementsAre;

/// A model of the history, its filter, and a view that knows no more than what it is told.
class FilteredEntriesTest : public testing::Test {
protected:
    FilteredEntriesTest()
    {
        QObject::connect(&filtered, &QAbstractItemModel::rowsInserted, &filtered,
                         [this](const QModelIndex &, int first, int last) {
                             for (int row = first; row <= last; ++row)
                                 told.insert(row, filtered.index(row).data(FilteredEntries::EntryIdRole).toString());
                             changes << u"+%1-%2"_qs.arg(first).arg(last);
                         });
        QObject::connect(&filtered, &QAbstractItemModel::rowsRemoved, &filtered,
                         [this](const QModelIndex &, int first, int last) {
                             told.remove(first, last - first + 1);
                             changes << u"-%1-%2"_qs.arg(first).arg(last);
                         });
        QObject::connect(&filtered, &QAbstractItemModel::dataChanged, &filtered,
                         [this](const QModelIndex &first, const QModelIndex &last) {
                             for (int row = first.row(); row <= last.row(); ++row)
                                 told[row] = filtered.index(row).data(FilteredEntries::EntryIdRole).toString();
                             changes << u"=%1-%2"_qs.arg(first.row()).arg(last.row());
                         });
        QObject::connect(&filtered, &QAbstractItemModel::modelReset, &filtered, [this] {
            told = shown();
            changes << u"reset"_qs;
        });
    }

    void add(const QString &id, const QString &text = {})
    {
        TranscriptionHistoryEntry entry = historyEntry(id);
        entry.text = text;
        source.insertFirst(entry);
    }
    /// The first is the newest.
    void fill(const QStringList &texts)
    {
        QList<TranscriptionHistoryEntry> entries;
        for (const QString &text : texts) {
            entries << historyEntry(QString::number(entries.size()));
            entries.last().text = text;
        }
        source.replaceAll(entries);
        changes.clear();
    }
    QStringList shown() const
    {
        QStringList ids;
        for (int row = 0; row < filtered.rowCount(); ++row)
            ids << filtered.entry(row).id;
        return ids;
    }
    QStringList takeChanges() { return std::exchange(changes, {}); }

    HistoryListModel source;
    FilteredEntries filtered{source};
    QStringList told;
    QStringList changes;
};

TEST_F(FilteredEntriesTest, showsAllInTheOrderOfTheHistory)
{
    fill({u"a"_qs, u"b"_qs, u"c"_qs});
    EXPECT_EQ(shown(), (QStringList{u"0"_qs, u"1"_qs, u"2"_qs}));
    EXPECT_EQ(filtered.rowOf(u"2"_qs), 2);
    EXPECT_EQ(filtered.rowOf(u"7"_qs), -1);
}

TEST_F(FilteredEntriesTest, tellsWhatARowShows)
{
    fill({u" \nFirst line \nSecond"_qs});
    const QModelIndex row = filtered.index(0);
    EXPECT_EQ(row.data(FilteredEntries::EntryIdRole), u"0"_qs);
    EXPECT_EQ(row.data(FilteredEntries::TitleRole), u"0.wav"_qs);
    EXPECT_EQ(row.data(FilteredEntries::PreviewRole), u"First line "_qs);
    EXPECT_TRUE(row.data(FilteredEntries::DateRole).toString().startsWith(u"2/"_qs));
    EXPECT_EQ(row.data(FilteredEntries::TagsRole).toList().size(), 2);
    EXPECT_EQ(filtered.roleNames().values().size(), 5);
    EXPECT_EQ(row.data(Qt::DisplayRole), QVariant());
}

TEST_F(FilteredEntriesTest, showsOnlyTheBeginningOfAVeryLongPreview)
{
    fill({u"word "_qs.repeated(100'000)});
    EXPECT_EQ(filtered.index(0).data(FilteredEntries::PreviewRole).toString().size(), 300);
}

TEST_F(FilteredEntriesTest, announcesTheRowsThatASearchTakesAway)
{
    fill({u"x"_qs, u"harbour"_qs, u"x"_qs, u"x"_qs, u"harbour"_qs});
    filtered.setSearchText(u"harbour"_qs);
    EXPECT_EQ(shown(), (QStringList{u"1"_qs, u"4"_qs}));
    EXPECT_EQ(takeChanges(), (QStringList{u"-2-3"_qs, u"-0-0"_qs}));
    filtered.setSearchText(u"harbour "_qs);
    EXPECT_EQ(takeChanges(), QStringList()) << "nothing changed";
    filtered.setSearchText({});
    EXPECT_EQ(takeChanges(), (QStringList{u"+0-0"_qs, u"+2-3"_qs}));
    EXPECT_EQ(told, shown());
}

TEST_F(FilteredEntriesTest, announcesOtherContentsWhereASearchChangesVeryMuch)
{
    QStringList texts;
    for (int i = 0; i < 200; ++i)
        texts << (i % 2 ? u"odd"_qs : u"even"_qs);
    fill(texts);
    filtered.setSearchText(u"odd"_qs);
    EXPECT_EQ(takeChanges(), (QStringList{u"-100-199"_qs, u"=0-99"_qs}));
    EXPECT_EQ(filtered.count(), 100);
    EXPECT_EQ(told, shown());
    filtered.setSearchText({});
    EXPECT_EQ(takeChanges(), (QStringList{u"=0-99"_qs, u"+100-199"_qs}));
    EXPECT_EQ(told, shown());
}

TEST_F(FilteredEntriesTest, announcesAnEntryThatComes)
{
    fill({u"one"_qs, u"hill"_qs});
    add(u"new"_qs);
    EXPECT_EQ(takeChanges(), QStringList(u"+0-0"_qs));
    EXPECT_EQ(shown().first(), u"new"_qs);
    filtered.setSearchText(u"hill"_qs);
    takeChanges();
    add(u"other"_qs, u"zzz"_qs);
    EXPECT_EQ(takeChanges(), QStringList());
    EXPECT_EQ(shown(), QStringList(u"1"_qs));
    add(u"found"_qs, u"HILLS"_qs);
    EXPECT_EQ(shown(), (QStringList{u"found"_qs, u"1"_qs}));
}

TEST_F(FilteredEntriesTest, announcesAnEntryThatGoes)
{
    fill({u"one"_qs, u"one hill"_qs, u"two"_qs, u"hill"_qs});
    filtered.setSearchText(u"hill"_qs);
    takeChanges();
    source.takeAt(2);
    EXPECT_EQ(takeChanges(), QStringList()) << "it was not shown";
    source.takeAt(1);
    EXPECT_EQ(takeChanges(), QStringList(u"-0-0"_qs));
    EXPECT_EQ(shown(), QStringList(u"3"_qs));
    EXPECT_EQ(filtered.entry(0).text, u"hill"_qs);
}

TEST_F(FilteredEntriesTest, tellsWhetherItIsEmpty)
{
    QSignalSpy emptyChanged(&filtered, &FilteredEntries::isEmptyChanged);
    EXPECT_TRUE(filtered.isEmpty());
    fill({u"a"_qs});
    EXPECT_FALSE(filtered.isEmpty());
    filtered.setSearchText(u"zzz"_qs);
    EXPECT_TRUE(filtered.isEmpty());
    filtered.setSearchText({});
    EXPECT_FALSE(filtered.isEmpty());
    source.takeAt(0);
    EXPECT_TRUE(filtered.isEmpty());
    EXPECT_GE(emptyChanged.count(), 4);
}

TEST_F(FilteredEntriesTest, findsBeforeAndAfterItsCopiesAreMade)
{
    fill({u"Harbour"_qs, u"hill"_qs, u"HARBOUR"_qs});
    EXPECT_FALSE(filtered.isPrepared()) << "a worker makes them";
    filtered.setSearchText(u"harbour"_qs);
    EXPECT_EQ(shown(), (QStringList{u"0"_qs, u"2"_qs}));
    filtered.setSearchText({});
    ASSERT_TRUE(waitUntil([this] { return filtered.isPrepared(); }));
    filtered.setSearchText(u"hill"_qs);
    EXPECT_EQ(shown(), QStringList(u"1"_qs));
    filtered.setSearchText(u"0.wav"_qs);
    EXPECT_EQ(shown(), QStringList(u"0"_qs));
}

TEST_F(FilteredEntriesTest, makesTheCopiesOfALongHistoryThatChangesMeanwhile)
{
    QStringList texts;
    for (int i = 0; i < 3000; ++i)
        texts << u"text number %1"_qs.arg(i);
    fill(texts);
    add(u"new"_qs, u"news"_qs);
    source.takeAt(5);
    ASSERT_TRUE(waitUntil([this] { return filtered.isPrepared(); }));
    filtered.setSearchText(u"number 2999"_qs);
    EXPECT_EQ(shown(), QStringList(u"2999"_qs));
    filtered.setSearchText(u"news"_qs);
    EXPECT_EQ(shown(), QStringList(u"new"_qs));
}

TEST_F(FilteredEntriesTest, maySearchOnForWhatOnlyAMarkRefused)
{
    fill({u"q\u0301"_qs, u"q"_qs});
    filtered.setSearchText(u"q"_qs);
    EXPECT_EQ(shown(), QStringList(u"1"_qs));
    filtered.setSearchText(u"q\u0301"_qs);
    EXPECT_EQ(shown(), QStringList(u"0"_qs));
}

TEST(FilteredEntriesLife, mayEndWhileItsCopiesAreMade)
{
    HistoryListModel source;
    QList<TranscriptionHistoryEntry> entries(2000, historyEntry(u"a"_qs));
    source.replaceAll(entries);
    for (int i = 0; i < 20; ++i)
        FilteredEntries filtered(source);
    QTest::qWait(50);
    FilteredEntries last(source);
    EXPECT_TRUE(waitUntil([&] { return last.isPrepared(); }));
}

/// Whatever is typed and whatever happens to the history, the rows are those of the rule, and a view that listens to
/// changes alone has them too.
TEST_F(FilteredEntriesTest, keepsToTheRuleThroughRandomSearchesAndChanges)
{
    std::mt19937 random(7);
    const auto upTo = [&](int bound) { return static_cast<int>(random() % static_cast<unsigned>(bound)); };
    const QStringList words{u"Harbour"_qs, u"CAFÉ"_qs, u"hill"_qs, u"ab"_qs, u"Ba"_qs, u"港口"_qs};
    const auto phrase = [&] {
        QString text;
        for (int i = upTo(4); i > 0; --i)
            text += words[upTo(static_cast<int>(words.size()))] + u' ';
        return text;
    };
    QString search;
    for (int step = 0; step < 3000; ++step) {
        const int kind = upTo(10);
        if (kind < 3)
            add(QString::number(step), phrase());
        else if (kind < 5 && !source.entries().isEmpty())
            source.takeAt(upTo(static_cast<int>(source.entries().size())));
        else if (kind == 5)
            search.chop(1);
        else if (kind == 6)
            search = phrase().left(4);
        else
            search += phrase().left(1 + upTo(3));
        filtered.setSearchText(search);
        if (step % 50 == 0)
            QTest::qWait(0);
        const QString wanted = trimmedOfWhitespaceAndNewlines(search).toString().toLower();
        QStringList expected;
        for (const TranscriptionHistoryEntry &entry : source.entries()) {
            if (entry.text.toLower().contains(wanted) || entry.sourceLabel.toLower().contains(wanted)
                || entry.model.toLower().contains(wanted))
                expected << entry.id;
        }
        ASSERT_EQ(shown(), expected) << search.toStdString();
        ASSERT_EQ(told, expected) << search.toStdString();
    }
}

} // namespace

} // namespace sorvanta
