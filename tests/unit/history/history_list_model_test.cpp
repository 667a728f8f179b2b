#include "history/history_list_model.h"

#include "support/history_entries.h"
#include "support/printing.h"

#include <QAbstractItemModelTester>
#include <QSignalSpy>

#include <gtest/gtest.h>

using namespace sorvanta;

namespace {

class HistoryList : public testing::Test {
protected:
    HistoryListModel model;
    QAbstractItemModelTester tester{&model, QAbstractItemModelTester::FailureReportingMode::Fatal};
    QSignalSpy inserted{&model, &QAbstractItemModel::rowsInserted};
    QSignalSpy removed{&model, &QAbstractItemModel::rowsRemoved};
    QSignalSpy reset{&model, &QAbstractItemModel::modelReset};
};

TEST_F(HistoryList, announcesAnInsertionAtTheTopAsThat)
{
    model.insertFirst(historyEntry("1"));
    model.insertFirst(historyEntry("2"));
    EXPECT_EQ(historyIds(model.entries()), (QStringList{"2", "1"}));
    ASSERT_EQ(inserted.count(), 2);
    EXPECT_EQ(inserted[1][1].toInt(), 0);
    EXPECT_EQ(inserted[1][2].toInt(), 0);
    EXPECT_EQ(reset.count(), 0);
}

TEST_F(HistoryList, announcesARemovalAsThat)
{
    model.replaceAll({historyEntry("1"), historyEntry("2"), historyEntry("3")});
    EXPECT_EQ(model.takeAt(1), historyEntry("2"));
    EXPECT_EQ(historyIds(model.entries()), (QStringList{"1", "3"}));
    ASSERT_EQ(removed.count(), 1);
    EXPECT_EQ(removed[0][1].toInt(), 1);
    EXPECT_EQ(removed[0][2].toInt(), 1);
    EXPECT_EQ(reset.count(), 1);
}

TEST_F(HistoryList, announcesAnotherListOnlyIfItIsAnother)
{
    model.replaceAll({historyEntry("1")});
    model.replaceAll({historyEntry("1")});
    EXPECT_EQ(reset.count(), 1);
    model.replaceAll({historyEntry("2")});
    EXPECT_EQ(reset.count(), 2);
    EXPECT_EQ(historyIds(model.entries()), QStringList{"2"});
}

TEST_F(HistoryList, givesViewsTheWholeEntryAsOneRole)
{
    model.insertFirst(historyEntry("1"));
    EXPECT_EQ(model.roleNames(), (QHash<int, QByteArray>{{HistoryListModel::EntryRole, "entry"}}));
    const QVariant value = model.data(model.index(0), HistoryListModel::EntryRole);
    EXPECT_EQ(value.value<TranscriptionHistoryEntry>(), historyEntry("1"));
    EXPECT_FALSE(model.data(model.index(0), Qt::DisplayRole).isValid());
    EXPECT_FALSE(model.data({}, HistoryListModel::EntryRole).isValid());
    EXPECT_EQ(model.rowCount(), 1);
    EXPECT_EQ(model.rowCount(model.index(0)), 0);
}

} // namespace
