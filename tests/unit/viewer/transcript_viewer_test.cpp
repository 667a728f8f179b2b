#include "app/viewer/transcript_viewer.h"
#include "support/printing.h"

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
