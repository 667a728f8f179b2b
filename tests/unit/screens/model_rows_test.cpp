#include "screens/models/model_rows.h"

#include "support/printing.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QAbstractItemModelTester>
#include <QMetaProperty>
#include <QSignalSpy>

namespace sorvanta {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

QList<ModelRow> catalogueRows(const Status &status)
{
    QList<ModelRow> rows;
    for (const ModelInfo &model : modelCatalogue())
        rows << modelRow(model, status, false, u"large-v3-turbo"_qs);
    return rows;
}

Status downloading(qint64 bytes)
{
    return ModelStatus::Downloading{
        {.bytesReceived = bytes, .totalBytesExpected = 100'000'000, .estimatedSecondsRemaining = std::nullopt}};
}

class ModelRowsTest : public testing::Test {
protected:
    void show(int place, const Status &status)
    {
        rows.replace(place, modelRow(modelCatalogue()[place], status, false, u"large-v3-turbo"_qs));
    }
    QVariant shown(int place, const QByteArray &role) const
    {
        return rows.data(rows.index(place), rows.roleNames().key(role));
    }
    /// The roles that the announcement of that number names.
    QList<QByteArray> announcedRoles(qsizetype number) const
    {
        QList<QByteArray> names;
        for (const int role : changed[number][2].value<QList<int>>())
            names << rows.roleNames().value(role);
        return names;
    }
    QList<int> announcedPlaces() const
    {
        QList<int> places;
        for (const QList<QVariant> &arguments : changed) {
            EXPECT_EQ(arguments[0].toModelIndex(), arguments[1].toModelIndex()) << "one row at a time";
            places << arguments[0].toModelIndex().row();
        }
        return places;
    }

    ModelRows rows{catalogueRows(ModelStatus::NotDownloaded{})};
    QAbstractItemModelTester tester{&rows, QAbstractItemModelTester::FailureReportingMode::Fatal};
    QSignalSpy changed{&rows, &ModelRows::dataChanged};
    QSignalSpy reset{&rows, &ModelRows::modelReset};
};

TEST_F(ModelRowsTest, haveARoleForEachField)
{
    QSet<QByteArray> fields;
    for (int field = 0; field < ModelRow::staticMetaObject.propertyCount(); ++field)
        fields << ModelRow::staticMetaObject.property(field).name();
    const QList<QByteArray> roles = rows.roleNames().values();
    EXPECT_EQ(QSet<QByteArray>(roles.begin(), roles.end()), fields);
    EXPECT_EQ(fields.size(), 17);
}

TEST_F(ModelRowsTest, giveTheirFieldsByRole)
{
    EXPECT_EQ(rows.rowCount(), 6);
    EXPECT_EQ(shown(1, "name"), u"Large V3"_qs);
    EXPECT_EQ(shown(1, "nonEnglishBadge"), u"Best for non-English"_qs);
    EXPECT_EQ(shown(5, "statusText"), u"Not downloaded"_qs);
    EXPECT_EQ(shown(5, "statusTone").toInt(), StatusTone::Secondary);
    EXPECT_EQ(shown(5, "offersDownload"), true);
    EXPECT_FALSE(rows.data(rows.index(0), Qt::DisplayRole).isValid());
    EXPECT_FALSE(rows.data(rows.index(0), Qt::UserRole + 17).isValid());
    EXPECT_FALSE(rows.data({}, Qt::UserRole).isValid());
    EXPECT_EQ(rows.rowCount(rows.index(0)), 0);
}

TEST_F(ModelRowsTest, announceTheRowAndTheFieldsThatChange)
{
    show(3, ModelStatus::Downloading{});
    EXPECT_THAT(announcedPlaces(), ElementsAre(3));
    EXPECT_THAT(announcedRoles(0), UnorderedElementsAre("statusText", "statusSymbol", "statusTone", "hasProgress",
                                                        "isIndeterminate", "byteLine", "offersDownload"));
    EXPECT_EQ(shown(3, "statusText"), u"Downloading 0%"_qs);
}

TEST_F(ModelRowsTest, announceNoMoreOfAProgressReportThanItsFigures)
{
    show(3, downloading(1'000'000));
    changed.clear();
    show(3, downloading(2'000'000));
    EXPECT_THAT(announcedPlaces(), ElementsAre(3));
    EXPECT_THAT(announcedRoles(0), UnorderedElementsAre("statusText", "progress", "byteLine"));
    show(3, downloading(2'000'001));
    EXPECT_THAT(announcedRoles(1), ElementsAre("progress")) << "the words are the same";
    EXPECT_EQ(reset.count(), 0);
}

TEST_F(ModelRowsTest, sayNothingWhereNothingChanges)
{
    for (int place = 0; place < 6; ++place)
        show(place, ModelStatus::NotDownloaded{});
    EXPECT_THAT(announcedPlaces(), IsEmpty());
}

} // namespace

} // namespace sorvanta
