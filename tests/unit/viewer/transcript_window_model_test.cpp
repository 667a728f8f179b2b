#include "app/viewer/transcript_rows.h"
#include "app/viewer/transcript_window_model.h"
#include "support/printing.h"

#include <gtest/gtest.h>

#include <QAbstractItemModelTester>
#include <QSignalSpy>

#include <random>

using namespace sorvanta;

namespace {

TranscriptWindowSegment segment(double start, double end, const QString &text = QStringLiteral("text"))
{
    return {QString::number(start), QString::number(end), text, start, end};
}

QStringList texts(const TranscriptRows &rows)
{
    QStringList all;
    for (int row = 0; row < rows.rowCount(); ++row)
        all << rows.index(row).data(TranscriptRows::TextRole).toString();
    return all;
}

TEST(TranscriptWindowModel, beginsEmpty)
{
    const TranscriptWindowModel model;
    EXPECT_EQ(model.transcript(), QString());
    EXPECT_EQ(model.counts(), QString());
    EXPECT_TRUE(model.segments().isEmpty());
    EXPECT_EQ(model.activeSegmentIndex(), std::nullopt);
    EXPECT_FALSE(model.isPlaying());
    EXPECT_FALSE(model.isPlaybackAvailable());
    EXPECT_EQ(model.currentTime(), 0.0);
    EXPECT_EQ(model.playbackDuration(), 0.0);
}

TEST(TranscriptWindowModel, marksTheEarlierOfTwoTouchingSegments)
{
    TranscriptWindowModel model;
    model.setSegments({segment(0, 2), segment(2, 4)});
    EXPECT_EQ(model.segmentAt(2), 0);
    EXPECT_EQ(model.segmentAt(0), 0) << "the start is included";
    EXPECT_EQ(model.segmentAt(4), 1) << "the end is included";
    EXPECT_EQ(model.segmentAt(2.001), 1);
}

TEST(TranscriptWindowModel, marksNothingInAGapBeforeTheFirstOrBehindTheLast)
{
    TranscriptWindowModel model;
    EXPECT_EQ(model.segmentAt(1), std::nullopt);
    model.setSegments({segment(1, 2), segment(3, 4)});
    EXPECT_EQ(model.segmentAt(0.5), std::nullopt);
    EXPECT_EQ(model.segmentAt(2.5), std::nullopt);
    EXPECT_EQ(model.segmentAt(4.5), std::nullopt);
}

TEST(TranscriptWindowModel, findsTheFirstSegmentInOrderAlsoAmongOverlapsAndDisorder)
{
    std::mt19937 random(7);
    for (int round = 0; round < 400; ++round) {
        TranscriptWindowModel model;
        const int count = 1 + static_cast<int>(random() % 20);
        const bool isOrdered = random() % 2 == 0;
        QList<TranscriptWindowSegment> segments;
        double start = 0;
        for (int i = 0; i < count; ++i) {
            start = isOrdered || random() % 4 != 0 ? start + random() % 4 : random() % 40;
            segments << segment(start, start + random() % 6 - (random() % 5 == 0 ? 2.0 : 0.0));
        }
        const qsizetype cut = random() % count;
        model.setSegments(segments.first(cut));
        model.replaceSegmentsFrom(cut, segments.sliced(cut));
        ASSERT_EQ(model.segments(), segments);
        for (double time = -1; time < 60; time += 0.5) {
            std::optional<int> expected;
            for (int i = 0; i < count && !expected; ++i) {
                if (segments[i].startSeconds <= time && segments[i].endSeconds >= time)
                    expected = i;
            }
            ASSERT_EQ(model.segmentAt(time), expected) << "round " << round << " at " << time;
        }
    }
}

TEST(TranscriptWindowModel, tellsOnlyOfSegmentsThatChanged)
{
    TranscriptWindowModel model;
    QSignalSpy changed(&model, &TranscriptWindowModel::segmentsChanged);
    model.setSegments({segment(0, 1), segment(1, 2)});
    model.setSegments({segment(0, 1), segment(1, 2)});
    ASSERT_EQ(changed.count(), 1);
    model.setSegments({segment(0, 1), segment(1, 2), segment(2, 3)});
    ASSERT_EQ(changed.count(), 2);
    EXPECT_EQ(changed[1], (QVariantList{2LL, 0LL, 1LL}));
    model.replaceSegmentsFrom(1, {segment(1, 2), segment(2, 9)});
    ASSERT_EQ(changed.count(), 3);
    EXPECT_EQ(changed[2], (QVariantList{2LL, 1LL, 1LL}));
    model.replaceSegmentsFrom(1, {segment(1, 2), segment(2, 9)});
    EXPECT_EQ(changed.count(), 3);
}

TEST(TranscriptRows, showsTheSegmentsOrElseTheLinesOfTheTranscript)
{
    TranscriptWindowModel model;
    TranscriptRows rows(model);
    const QAbstractItemModelTester tester(&rows, QAbstractItemModelTester::FailureReportingMode::Fatal);
    EXPECT_EQ(rows.count(), 0) << "an empty transcript has no line";
    model.setTranscript(u"One\n\nTwo\r\nThree"_qs);
    EXPECT_EQ(texts(rows), (QStringList{u"One"_qs, QString(), u"Two"_qs, QString(), u"Three"_qs}));
    EXPECT_EQ(rows.index(0).data(TranscriptRows::TimesRole).toString(), QString()) << "no times without segments";
    model.setSegments({{u"00:00:01.000"_qs, u"00:00:02.500"_qs, u"First"_qs, 1, 2.5}});
    EXPECT_EQ(texts(rows), QStringList{u"First"_qs});
    EXPECT_EQ(rows.index(0).data(TranscriptRows::TimesRole).toString(), u"00:00:01.000 → 00:00:02.500"_qs);
    model.setSegments({});
    EXPECT_EQ(rows.count(), 5);
    model.setTranscript({});
    EXPECT_EQ(rows.count(), 0);
}

TEST(TranscriptRows, announcesOneRowForOneMoreSegment)
{
    TranscriptWindowModel model;
    TranscriptRows rows(model);
    const QAbstractItemModelTester tester(&rows, QAbstractItemModelTester::FailureReportingMode::Fatal);
    QList<TranscriptWindowSegment> segments;
    for (int i = 0; i < 1000; ++i)
        segments << segment(i, i + 1, QString::number(i));
    model.setSegments(segments);
    QSignalSpy inserted(&rows, &QAbstractItemModel::rowsInserted);
    QSignalSpy changed(&rows, &QAbstractItemModel::dataChanged);
    QSignalSpy removed(&rows, &QAbstractItemModel::rowsRemoved);
    model.setSegments(segments << segment(1000, 1001));
    ASSERT_EQ(inserted.count(), 1);
    EXPECT_EQ(inserted[0][1].toInt(), 1000);
    EXPECT_EQ(inserted[0][2].toInt(), 1000);
    EXPECT_EQ(changed.count(), 0);
    segments.resize(998);
    model.setSegments(segments << segment(998, 999, u"other"_qs));
    ASSERT_EQ(removed.count(), 1);
    ASSERT_EQ(changed.count(), 1);
    EXPECT_EQ(changed[0][0].toModelIndex().row(), 998);
    EXPECT_EQ(rows.count(), 999);
    EXPECT_EQ(texts(rows).last(), u"other"_qs);
}

TEST(TranscriptRows, aMovedMarkTouchesTwoRowsOnly)
{
    TranscriptWindowModel model;
    model.setSegments({segment(0, 1), segment(1, 2), segment(2, 3)});
    TranscriptRows rows(model);
    model.setActiveSegmentIndex(0);
    QSignalSpy changed(&rows, &QAbstractItemModel::dataChanged);
    model.setActiveSegmentIndex(2);
    ASSERT_EQ(changed.count(), 2);
    EXPECT_FALSE(rows.index(0).data(TranscriptRows::IsActiveRole).toBool());
    EXPECT_TRUE(rows.index(2).data(TranscriptRows::IsActiveRole).toBool());
    model.setActiveSegmentIndex(2);
    EXPECT_EQ(changed.count(), 2);
    model.setActiveSegmentIndex(std::nullopt);
    EXPECT_FALSE(rows.index(2).data(TranscriptRows::IsActiveRole).toBool());
}

} // namespace
