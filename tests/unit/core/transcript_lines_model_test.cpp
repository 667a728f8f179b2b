#include "core/transcript_lines_model.h"

#include "core/transcript_text.h"
#include "support/printing.h"
#include "support/random_output.h"

#include <gtest/gtest.h>

#include <QAbstractItemModelTester>
#include <QSignalSpy>

using namespace sorvanta;

namespace {

QStringList texts(const QAbstractItemModel &model)
{
    QStringList rows;
    for (int row = 0; row < model.rowCount(); ++row)
        rows << model.index(row, 0).data(TranscriptLinesModel::TextRole).toString();
    return rows;
}

/// Keeps rows as a view would: from what the model announces and from nothing else.
class AnnouncedRows {
public:
    explicit AnnouncedRows(const TranscriptLinesModel &model)
        : m_rows(texts(model))
    {
        QObject::connect(&model, &QAbstractItemModel::rowsInserted, &model,
                         [this, &model](const QModelIndex &, int first, int last) {
                             for (int row = first; row <= last; ++row)
                                 m_rows.insert(row, text(model, row));
                             announced += last - first + 1;
                         });
        QObject::connect(&model, &QAbstractItemModel::rowsRemoved, &model,
                         [this](const QModelIndex &, int first, int last) {
                             m_rows.remove(first, last - first + 1);
                             announced += last - first + 1;
                         });
        QObject::connect(&model, &QAbstractItemModel::dataChanged, &model,
                         [this, &model](const QModelIndex &first, const QModelIndex &last) {
                             for (int row = first.row(); row <= last.row(); ++row)
                                 m_rows[row] = text(model, row);
                             announced += last.row() - first.row() + 1;
                         });
        QObject::connect(&model, &QAbstractItemModel::modelReset, &model, [this, &model] { m_rows = texts(model); });
    }

    const QStringList &rows() const { return m_rows; }

    int announced = 0; ///< rows said to have come, gone or changed

private:
    static QString text(const TranscriptLinesModel &model, int row)
    {
        return model.index(row).data(TranscriptLinesModel::TextRole).toString();
    }

    QStringList m_rows;
};

class TranscriptLinesModelTest : public testing::Test {
protected:
    void append(const QString &piece) { model.apply(transcript.append(piece)); }

    LiveTranscript transcript;
    TranscriptLinesModel model{transcript};
    QAbstractItemModelTester tester{&model, QAbstractItemModelTester::FailureReportingMode::Fatal};
    AnnouncedRows seen{model};
};

TEST_F(TranscriptLinesModelTest, isEmptyAtFirst)
{
    EXPECT_EQ(model.count(), 0);
    EXPECT_EQ(model.roleNames().value(TranscriptLinesModel::TextRole), "text");
    EXPECT_FALSE(model.data(model.index(0), TranscriptLinesModel::TextRole).isValid());
}

TEST_F(TranscriptLinesModelTest, hasARowForEachLine)
{
    append(u"[00:00:00.000 --> 00:00:01.000]   One\n[00:00:01.000 --> 00:00:02.000]   Two\n"_qs);
    EXPECT_EQ(texts(model), (QStringList{u"One"_qs, u"Two"_qs}));
    EXPECT_EQ(model.index(1).data(Qt::DisplayRole).toString(), u"Two"_qs);
    EXPECT_FALSE(model.index(1).data(Qt::DecorationRole).isValid());
    EXPECT_EQ(model.rowCount(model.index(0)), 0);
}

TEST_F(TranscriptLinesModelTest, announcesOneRowForOneNewLine)
{
    for (int line = 0; line < 1000; ++line)
        append(u"[x] line %1\n"_qs.arg(line));
    EXPECT_EQ(model.count(), 1000);
    EXPECT_EQ(seen.announced, 1000) << "no row is announced again because another one came";
    QSignalSpy inserted(&model, &QAbstractItemModel::rowsInserted);
    QSignalSpy counted(&model, &TranscriptLinesModel::countChanged);
    append(u"[x] last\n"_qs);
    ASSERT_EQ(inserted.count(), 1);
    EXPECT_EQ(inserted[0][1].toInt(), 1000);
    EXPECT_EQ(inserted[0][2].toInt(), 1000);
    EXPECT_EQ(counted.count(), 1);
}

TEST_F(TranscriptLinesModelTest, announcesALineThatGrowsAsChanged)
{
    append(u"[x] one\n[x] tw"_qs);
    QSignalSpy changed(&model, &QAbstractItemModel::dataChanged);
    QSignalSpy counted(&model, &TranscriptLinesModel::countChanged);
    append(u"o"_qs);
    ASSERT_EQ(changed.count(), 1);
    EXPECT_EQ(changed[0][0].toModelIndex().row(), 1);
    EXPECT_EQ(changed[0][1].toModelIndex().row(), 1);
    EXPECT_EQ(counted.count(), 0);
    EXPECT_EQ(seen.rows(), (QStringList{u"one"_qs, u"two"_qs}));
}

TEST_F(TranscriptLinesModelTest, givesUpThePlainLinesOnceATimedOneComes)
{
    append(u"loading\nready\n"_qs);
    EXPECT_EQ(seen.rows(), (QStringList{u"loading"_qs, u"ready"_qs}));
    QSignalSpy counted(&model, &TranscriptLinesModel::countChanged);
    append(u"[00:00:00.000 --> 00:00:01.000]   One\n"_qs);
    EXPECT_EQ(seen.rows(), QStringList{u"One"_qs});
    EXPECT_EQ(counted.count(), 1);
}

TEST_F(TranscriptLinesModelTest, strippingChangesRowsInTheirPlaces)
{
    append(u"[x] - one\n[x] two\n"_qs);
    QSignalSpy inserted(&model, &QAbstractItemModel::rowsInserted);
    QSignalSpy reset(&model, &QAbstractItemModel::modelReset);
    model.setStripDashes(true);
    EXPECT_EQ(seen.rows(), (QStringList{u"one"_qs, u"two"_qs}));
    append(u"[x] - three\n"_qs);
    EXPECT_EQ(seen.rows().last(), u"three"_qs);
    model.setStripDashes(false);
    EXPECT_EQ(seen.rows(), (QStringList{u"- one"_qs, u"two"_qs, u"- three"_qs}));
    EXPECT_EQ(inserted.count(), 1);
    EXPECT_EQ(reset.count(), 0);
    QSignalSpy changed(&model, &QAbstractItemModel::dataChanged);
    model.setStripDashes(false);
    EXPECT_EQ(changed.count(), 0);
}

TEST_F(TranscriptLinesModelTest, aResetTakesUpWhatIsThere)
{
    append(u"[x] one\n"_qs);
    transcript.clear();
    QSignalSpy counted(&model, &TranscriptLinesModel::countChanged);
    model.reset();
    EXPECT_EQ(model.count(), 0);
    EXPECT_EQ(seen.rows(), QStringList());
    EXPECT_EQ(counted.count(), 1);
}

TEST(TranscriptLinesModel, announcesExactlyTheRowsOfTheTextOverAllChunkings)
{
    for (unsigned seed = 1; seed <= 600; ++seed) {
        RandomOutput random(seed);
        const QString output = random.text();
        const bool stripDashes = random.number(0, 1) == 1;

        LiveTranscript transcript;
        TranscriptLinesModel model(transcript);
        model.setStripDashes(stripDashes);
        const QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::Fatal);
        const AnnouncedRows seen(model);
        qsizetype from = 0;
        while (from < output.size()) {
            const qsizetype size = std::min(random.pieceSize(), output.size() - from);
            model.apply(transcript.append(QStringView(output).sliced(from, size)));
            from += size;
            ASSERT_EQ(seen.rows(), texts(model)) << "seed " << seed << " after " << from;
            ASSERT_EQ(model.count(), transcript.lineCount());
        }
        ASSERT_EQ(seen.rows().join(u'\n'), displayedTranscript(output, {}, stripDashes)) << "seed " << seed;
    }
}

} // namespace
