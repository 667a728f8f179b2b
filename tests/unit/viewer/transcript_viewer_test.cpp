#include "app/viewer/transcript_viewer.h"
#include "core/transcript_lines_model.h"
#include "platform/unicode_text.h"
#include "support/printing.h"
#include "support/random_output.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QClipboard>
#include <QCoreApplication>
#include <QGuiApplication>
#include <QPointer>
#include <QSignalSpy>

#include <random>

using namespace sorvanta;
using testing::ElementsAre;

namespace {

class TranscriptViewerTest : public testing::Test {
protected:
    static QString timed(int second, const QString &text)
    {
        return u"[00:00:%1.000 --> 00:00:%2.000]   %3\n"_qs.arg(second, 2, 10, QChar(u'0'))
            .arg(second + 1, 2, 10, QChar(u'0'))
            .arg(text);
    }

    QString text = u"One\nTwo"_qs;
    QString counts = u"2 words · 7 chars"_qs;
    QString output = timed(0, u"- One"_qs) + timed(1, u"Two"_qs);
    bool strips = false;
    bool isAvailable = true;
    bool isPlaying = true;
    double time = 1.5;
    double duration = 9;
    int toggles = 0;
    std::vector<double> seeks;
    TranscriptViewer viewer{{
        .text = [this] { return text; },
        .counts = [this] { return counts; },
        .rawOutput = [this] { return output; },
        .stripsSegments = [this] { return strips; },
        .isPlaybackAvailable = [this] { return isAvailable; },
        .isPlaying = [this] { return isPlaying; },
        .currentTime = [this] { return time; },
        .playbackDuration = [this] { return duration; },
        .stripDashes = {.get = [this] { return strips; }, .set = [this](bool on) { strips = on; }},
        .togglePlay = [this] { ++toggles; },
        .seek = [this](double seconds) { seeks.push_back(seconds); },
    }};
    TranscriptWindowModel &model = viewer.model();
};

TEST_F(TranscriptViewerTest, syncSetsTheFieldsInOrder)
{
    std::vector<std::string> order;
    const auto note = [&order](const char *field) { return [&order, field] { order.emplace_back(field); }; };
    QObject::connect(&model, &TranscriptWindowModel::transcriptChanged, note("transcript"));
    QObject::connect(&model, &TranscriptWindowModel::countsChanged, note("counts"));
    QObject::connect(&model, &TranscriptWindowModel::segmentsChanged, note("segments"));
    QObject::connect(&model, &TranscriptWindowModel::isPlaybackAvailableChanged, note("isPlaybackAvailable"));
    QObject::connect(&model, &TranscriptWindowModel::isPlayingChanged, note("isPlaying"));
    QObject::connect(&model, &TranscriptWindowModel::currentTimeChanged, note("currentTime"));
    QObject::connect(&model, &TranscriptWindowModel::playbackDurationChanged, note("playbackDuration"));
    viewer.syncTranscriptWindow();
    EXPECT_THAT(order, ElementsAre("transcript", "counts", "segments", "isPlaybackAvailable", "isPlaying",
                                   "currentTime", "playbackDuration"));
    EXPECT_EQ(model.transcript(), text);
    EXPECT_EQ(model.counts(), counts);
    EXPECT_EQ(model.segments(), parseTimedWindowSegments(output, false));
    EXPECT_TRUE(model.isPlaybackAvailable());
    EXPECT_TRUE(model.isPlaying());
    EXPECT_EQ(model.currentTime(), 1.5);
    EXPECT_EQ(model.playbackDuration(), 9);
}

TEST_F(TranscriptViewerTest, segmentsAreThoseOfTheWholeOutputOverAllChunkings)
{
    std::mt19937 random(3);
    for (int round = 0; round < 200; ++round) {
        QString whole;
        for (int line = 0; line < 12; ++line) {
            switch (random() % 4) {
            case 0:
                whole += u"log: x\r\n"_qs;
                break;
            case 1:
                whole += timed(line, u"- said "_qs + QString::number(line)).replace(u'\n', u"\r\n"_qs);
                break;
            default:
                whole += timed(line, u"said "_qs + QString::number(line));
            }
        }
        output.clear();
        while (output.size() < whole.size()) {
            output += whole.mid(output.size(), 1 + random() % 40);
            if (random() % 6 == 0)
                strips = !strips;
            viewer.syncTranscriptWindow();
            ASSERT_EQ(model.segments(), parseTimedWindowSegments(output, strips)) << "round " << round;
        }
    }
}

/// A viewer over a run's output while it grows, as a pane holds it.
class GrowingViewer : public testing::Test {
protected:
    void append(QStringView piece)
    {
        const LiveTranscript::Change change = output.append(piece);
        lines.apply(change);
        viewer.textChanged(change.first);
    }
    void clear()
    {
        output.clear();
        ++identity;
        lines.reset();
        viewer.textChanged(0);
    }
    QString shown() const { return displayedTranscript(output.rawOutput(), {}, lines.stripDashes()); }
    static QStringList rowsOf(TranscriptRows &rows)
    {
        QStringList texts;
        for (int row = 0; row < rows.rowCount(); ++row)
            texts << rows.data(rows.index(row), TranscriptRows::TextRole).toString();
        return texts;
    }
    /// The rows as a list that only hears of changes has them.
    static void follow(TranscriptRows &rows, QStringList &texts)
    {
        const auto read = [&rows, &texts](int first, int last) {
            for (int row = first; row <= last; ++row)
                texts[row] = rows.data(rows.index(row), TranscriptRows::TextRole).toString();
        };
        QObject::connect(&rows, &QAbstractItemModel::modelReset, [&] { texts = rowsOf(rows); });
        QObject::connect(&rows, &QAbstractItemModel::rowsRemoved, [&texts](const QModelIndex &, int first, int last) {
            texts.erase(texts.begin() + first, texts.begin() + last + 1);
        });
        QObject::connect(&rows, &QAbstractItemModel::rowsInserted,
                         [&texts, read](const QModelIndex &, int first, int last) {
                             texts.insert(first, last - first + 1, QString());
                             read(first, last);
                         });
        QObject::connect(&rows, &QAbstractItemModel::dataChanged,
                         [read](const QModelIndex &first, const QModelIndex &last) { read(first.row(), last.row()); });
    }
    /// What a viewer has to show of the whole output.
    QStringList expectedRows() const
    {
        QStringList texts;
        for (const auto &segment : parseTimedWindowSegments(output.rawOutput(), lines.stripDashes()))
            texts << segment.text;
        if (texts.isEmpty() && !shown().isEmpty())
            forEachLine(shown(), [&texts](QStringView line) { texts << line.toString(); });
        return texts;
    }

    LiveTranscript output;
    TranscriptLinesModel lines{output};
    int identity = 0;
    TranscriptViewer viewer{{
        .text = [this] { return shown(); },
        .counts = [this] { return TranscriptCounts(shown()); },
        .rawOutput = [this] { return output.rawOutput(); },
        .stripsSegments = [this] { return lines.stripDashes(); },
        .isPlaybackAvailable = [] { return false; },
        .isPlaying = [] { return false; },
        .currentTime = [] { return 0.0; },
        .playbackDuration = [] { return 0.0; },
        .stripDashes = {.get = [] { return false; }, .set = [](bool) {}},
        .togglePlay = [] {},
        .seek = [](double) {},
        .lines = &lines,
        .outputIdentity = [this] { return identity; },
    }};
};

TEST_F(GrowingViewer, showsWhatThePureFunctionsGiveOverAllChunkings)
{
    for (unsigned seed = 0; seed < 300; ++seed) {
        RandomOutput random(seed);
        viewer.closeTranscriptWindow();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete); // the rows that are followed
        clear();
        viewer.openTranscriptWindow();
        TranscriptRows &rows = *viewer.transcriptWindow()->rows();
        viewer.transcriptWindow()->setSearchText(u"e"_qs);
        QStringList texts = rowsOf(rows);
        follow(rows, texts);
        const QString whole = random.text() + random.text();
        for (qsizetype at = 0; at < whole.size();) {
            const qsizetype size = random.pieceSize();
            append(QStringView(whole).mid(at, size));
            at += size;
            if (random.number(0, 30) == 0) {
                lines.setStripDashes(!lines.stripDashes());
                viewer.textChanged(0);
            }
            if (random.number(0, 60) == 0)
                clear();
            const std::string where = "seed " + std::to_string(seed) + ", up to " + std::to_string(at);
            ASSERT_EQ(viewer.model().transcript(), shown()) << where;
            ASSERT_EQ(viewer.model().counts(), TranscriptCounts(shown())) << where;
            ASSERT_EQ(viewer.model().segments(), parseTimedWindowSegments(output.rawOutput(), lines.stripDashes()))
                << where;
            ASSERT_EQ(rowsOf(rows), expectedRows()) << where;
            ASSERT_EQ(texts, expectedRows()) << "as announced; " << where;
            TranscriptSearchState fresh(rows);
            fresh.setSearchText(u"e"_qs);
            ASSERT_EQ(viewer.transcriptWindow()->matches(), fresh.matches()) << where;
        }
    }
}

TEST_F(GrowingViewer, holdsNoCopyOfTheOutput)
{
    viewer.openTranscriptWindow();
    append(u"[00:00:00.000 --> 00:00:01.000]   One\n");
    EXPECT_TRUE(output.rawOutput().isDetached()) << "else the next chunk would copy all of it";
    append(u"[00:00:01.000 --> 00:00:02.000]   Two\n");
    EXPECT_TRUE(output.rawOutput().isDetached());
    EXPECT_EQ(viewer.model().segments().size(), 2);
}

TEST_F(GrowingViewer, anotherOutputOfTheSameLengthIsReadFromItsBeginning)
{
    viewer.openTranscriptWindow();
    append(u"[00:00:00.000 --> 00:00:01.000]   One\n");
    output.clear();
    ++identity;
    output.append(u"[00:00:07.000 --> 00:00:08.000]   Six\n");
    viewer.updateActiveSegment(7.5);
    EXPECT_EQ(viewer.model().segments(), parseTimedWindowSegments(output.rawOutput(), false));
    EXPECT_EQ(viewer.model().activeSegmentIndex(), 0);
}

TEST_F(GrowingViewer, aClosedWindowIsBroughtUpToDateWhenItOpens)
{
    append(u"[00:00:00.000 --> 00:00:01.000]   One\n");
    EXPECT_EQ(viewer.model().transcript(), QString()) << "nothing is done for nobody";
    viewer.openTranscriptWindow();
    EXPECT_EQ(viewer.model().transcript(), u"One"_qs);
    viewer.closeTranscriptWindow();
    append(u"[00:00:01.000 --> 00:00:02.000]   Two\n");
    viewer.openTranscriptWindow();
    append(u"[00:00:02.000 --> 00:00:03.000]   Three\n");
    EXPECT_EQ(viewer.model().transcript(), u"One\nTwo\nThree"_qs);
    EXPECT_EQ(viewer.model().segments().size(), 3);
}

TEST_F(TranscriptViewerTest, marksTheSegmentAtATimeAndReadsNewOutputFirst)
{
    viewer.updateActiveSegment(1);
    EXPECT_EQ(model.segments().size(), 2);
    EXPECT_EQ(model.activeSegmentIndex(), 0) << "where two touch, the earlier one";
    output += timed(5, u"Three"_qs);
    viewer.updateActiveSegment(5.5);
    EXPECT_EQ(model.segments().size(), 3);
    EXPECT_EQ(model.activeSegmentIndex(), 2);
    viewer.updateActiveSegment(4);
    EXPECT_EQ(model.activeSegmentIndex(), std::nullopt) << "in a gap nothing is marked";
}

TEST_F(TranscriptViewerTest, opensOnceAndRaisesFromThenOn)
{
    QSignalSpy raised(&viewer, &TranscriptViewer::raiseRequested);
    EXPECT_EQ(viewer.transcriptWindow(), nullptr);
    viewer.openTranscriptWindow();
    TranscriptWindowView *window = viewer.transcriptWindow();
    ASSERT_NE(window, nullptr);
    EXPECT_EQ(model.transcript(), text) << "opening feeds the model";
    EXPECT_EQ(raised.count(), 1);
    window->setFontSize(40);
    text = u"other"_qs;
    viewer.openTranscriptWindow();
    EXPECT_EQ(viewer.transcriptWindow(), window);
    EXPECT_EQ(window->fontSize(), 40);
    EXPECT_EQ(model.transcript(), text);
    EXPECT_EQ(raised.count(), 2);
}

TEST_F(TranscriptViewerTest, aClosedWindowOpensWithTheDefaultsAndTheSameModel)
{
    viewer.openTranscriptWindow();
    const QPointer<TranscriptWindowView> first = viewer.transcriptWindow();
    first->setFontSize(40);
    first->setSearchText(u"One"_qs);
    first->close();
    EXPECT_EQ(viewer.transcriptWindow(), nullptr);
    EXPECT_TRUE(first) << "the window may still be at work";
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_FALSE(first);
    EXPECT_TRUE(model.isPlaying()) << "playback goes on";
    EXPECT_EQ(model.segments().size(), 2);
    viewer.openTranscriptWindow();
    EXPECT_EQ(viewer.transcriptWindow()->fontSize(), 16);
    EXPECT_EQ(viewer.transcriptWindow()->searchText(), QString());
}

TEST_F(TranscriptViewerTest, theEndOfAnOlderWindowLeavesTheOpenOne)
{
    viewer.openTranscriptWindow();
    TranscriptWindowView *first = viewer.transcriptWindow();
    viewer.closeTranscriptWindow();
    viewer.openTranscriptWindow();
    TranscriptWindowView *second = viewer.transcriptWindow();
    viewer.windowWillClose(first);
    EXPECT_EQ(viewer.transcriptWindow(), second);
    viewer.windowWillClose(second);
    EXPECT_EQ(viewer.transcriptWindow(), nullptr);
}

TEST_F(TranscriptViewerTest, theCallbacksReachTheScreen)
{
    viewer.openTranscriptWindow();
    TranscriptWindowView *window = viewer.transcriptWindow();
    window->togglePlay();
    EXPECT_EQ(toggles, 1);
    window->slideTo(4);
    EXPECT_THAT(seeks, ElementsAre(4.0));
    text = u"shown now"_qs;
    window->copy();
    EXPECT_EQ(QGuiApplication::clipboard()->text(), text);
    QSignalSpy stripped(window, &TranscriptWindowView::isStripDashesChanged);
    window->setStripDashes(true);
    EXPECT_TRUE(strips);
    viewer.stripDashesChanged();
    EXPECT_EQ(stripped.count(), 1);
}

} // namespace
