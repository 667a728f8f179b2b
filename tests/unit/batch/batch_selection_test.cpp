#include "batch_screen_test.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QSignalSpy>

using namespace sorvanta;
using testing::ElementsAre;

namespace {

/// An engine that says something else of each of the three files.
const QByteArray threeTexts = "only a.wav\nprint [00%3A00%3A00.000 --> 00%3A00%3A01.000]   - first one%0A\n"
                              "only b.wav\nprint second%0Aone one%0A\n"
                              "only c.wav\n";

class BatchSelection : public BatchScreenTest {
protected:
    TranscriptPane &pane() { return *screen->pane(); }
    QStringList shown()
    {
        QStringList lines;
        for (int row = 0; row < pane().rows()->rowCount(); ++row)
            lines << pane().rows()->index(row, 0).data().toString();
        return lines;
    }
};

TEST_F(BatchSelection, thePaneShowsTheSelectedResult)
{
    transcribe(threeFiles, threeTexts);
    EXPECT_THAT(shown(), ElementsAre(u"- first one"_qs));
    EXPECT_EQ(screen->selectedName(), u"a.wav"_qs);
    EXPECT_EQ(screen->selectedStatusWord(), u"Done"_qs);
    EXPECT_EQ(screen->selectedStatusTone(), FileTone::Green);
    EXPECT_EQ(pane().counts(), u"3 words · 11 chars"_qs);

    QSignalSpy changed(screen.get(), &BatchProcessingView::selectedChanged);
    screen->results()->selectRow(1);
    EXPECT_GT(changed.count(), 0);
    EXPECT_THAT(shown(), ElementsAre(u"second"_qs, u"one one"_qs));
    EXPECT_EQ(screen->selectedName(), u"b.wav"_qs);
    EXPECT_TRUE(pane().isShowLogsOffered());

    screen->results()->selectRow(2);
    EXPECT_THAT(shown(), ElementsAre());
    EXPECT_FALSE(pane().hasText());
    EXPECT_FALSE(pane().isShowLogsOffered()) << "there is no output";
}

TEST_F(BatchSelection, theSearchFollowsTheSelection)
{
    transcribe(threeFiles, threeTexts);
    pane().search()->setSearchText(u"one"_qs);
    EXPECT_EQ(pane().search()->matchCounter(), u"1 / 1"_qs);
    screen->results()->selectRow(1);
    EXPECT_EQ(pane().search()->matchCounter(), u"1 / 2"_qs);
    pane().search()->nextMatch();
    EXPECT_EQ(pane().search()->matchCounter(), u"2 / 2"_qs);
    screen->results()->selectRow(0);
    EXPECT_EQ(pane().search()->matchCounter(), u"1 / 1"_qs);
    screen->results()->selectRow(2);
    EXPECT_EQ(pane().search()->matchCounter(), u"0 / 0"_qs);
}

TEST_F(BatchSelection, newTextOfTheSelectedResultIsShownAndSearched)
{
    start({u"/music/a.wav"_qs}, "print [x] one%0A\n" + bench.engine.awaitGate(u"more"_qs) + "print [x] one more%0A\n"
                                    + bench.engine.awaitGate(u"end"_qs));
    pane().search()->setSearchText(u"one"_qs);
    waitFor([this] { return shown().size() == 1; });
    EXPECT_EQ(screen->selectedStatusWord(), u"Transcribing"_qs);
    QSignalSpy reset(pane().rows(), &QAbstractItemModel::modelReset);
    bench.engine.openGate(u"more"_qs);
    waitFor([this] { return shown().size() == 2; });
    EXPECT_EQ(pane().search()->matchCounter(), u"1 / 2"_qs);
    EXPECT_EQ(reset.count(), 0) << "rows are added, not made anew";
    bench.engine.openGate(u"end"_qs);
    waitForEnd();
}

TEST_F(BatchSelection, textOfAnotherResultLeavesThePaneAlone)
{
    start({u"/music/a.wav"_qs, u"/music/b.wav"_qs},
          "only a.wav\nprint [x] first%0A\nonly b.wav\n" + bench.engine.awaitGate() + "print [x] second%0A\n");
    waitFor([this] { return status(0) == FileStatus::done; });
    QSignalSpy rows(pane().rows(), &QAbstractItemModel::rowsInserted);
    QSignalSpy reset(pane().rows(), &QAbstractItemModel::modelReset);
    bench.engine.openGate();
    waitForEnd();
    EXPECT_EQ(rows.count() + reset.count(), 0);
    EXPECT_THAT(shown(), ElementsAre(u"first"_qs));
    EXPECT_EQ(result(1).transcript(), u"second"_qs);
}

TEST_F(BatchSelection, theSelectionStaysWhileTheBatchGoesOn)
{
    start(threeFiles, twoLines + bench.engine.awaitGate());
    screen->results()->selectRow(2);
    bench.engine.openGate();
    waitForEnd();
    EXPECT_EQ(screen->results()->selectedRow(), 2);
    EXPECT_THAT(shown(), ElementsAre(u"- One"_qs, u"Two"_qs));
}

TEST_F(BatchSelection, withoutOneTheFileThatBeginsIsSelected)
{
    start(threeFiles, twoLines + "only b.wav\n" + bench.engine.awaitGate(u"b"_qs) + "only c.wav\n"
                          + bench.engine.awaitGate(u"c"_qs));
    screen->results()->setSelectedResultID(std::nullopt);
    waitFor([this] { return status(1) == FileStatus::running; });
    EXPECT_EQ(screen->results()->selectedResultID(), result(0).id);
    screen->results()->setSelectedResultID(std::nullopt);
    bench.engine.openGate(u"b"_qs);
    waitFor([this] { return status(2) == FileStatus::running; });
    EXPECT_EQ(screen->results()->selectedResultID(), result(2).id);
    bench.engine.openGate(u"c"_qs);
    waitForEnd();
    EXPECT_THAT(shown(), ElementsAre(u"- One"_qs, u"Two"_qs));
}

TEST_F(BatchSelection, theErrorOfTheSelectedResultIsSaidWithoutItsLastLineEnd)
{
    transcribe(threeFiles, failingWithB);
    EXPECT_EQ(screen->selectedError(), QString());
    screen->results()->selectRow(1);
    EXPECT_TRUE(screen->selectedError().startsWith(u"Whisper failed: "_qs));
    EXPECT_TRUE(screen->selectedError().endsWith(u"no good"_qs));
    EXPECT_EQ(screen->selectedStatusTone(), FileTone::Red);
    EXPECT_THAT(shown(), ElementsAre(u"- One"_qs, u"Two"_qs)) << "what it said before it failed";
}

TEST_F(BatchSelection, withoutResultsNothingIsSelected)
{
    EXPECT_FALSE(screen->hasSelected());
    EXPECT_EQ(screen->selectedName(), QString());
    EXPECT_EQ(screen->selectedStatusWord(), QString());
    EXPECT_EQ(screen->selectedError(), QString());
}

TEST_F(BatchSelection, strippingChangesTextSearchAndCopyOfAllResults)
{
    transcribe(threeFiles, threeTexts);
    pane().search()->setSearchText(u"- "_qs);
    QSignalSpy told(&pane(), &TranscriptPane::stripDashesChanged);
    pane().setStripDashes(true);
    pane().setStripDashes(true);
    EXPECT_EQ(told.count(), 1);
    EXPECT_THAT(shown(), ElementsAre(u"first one"_qs));
    EXPECT_EQ(pane().counts(), u"2 words · 9 chars"_qs);
    pane().copyOutput();
    EXPECT_EQ(QGuiApplication::clipboard()->text(), u"first one"_qs);
    screen->results()->selectRow(1);
    pane().setStripDashes(false);
    screen->results()->selectRow(0);
    EXPECT_THAT(shown(), ElementsAre(u"- first one"_qs));
    pane().copyOutput();
    EXPECT_EQ(QGuiApplication::clipboard()->text(), u"- first one"_qs);
}

TEST_F(BatchSelection, thePaneHasTheWordsOfThisScreen)
{
    EXPECT_EQ(pane().showLogsLabel(), u"Show Full Logs"_qs);
    EXPECT_EQ(pane().logsTitle(), u"Full Logs"_qs);
    EXPECT_EQ(pane().emptyLogText(), u"No logs available."_qs);
    EXPECT_FALSE(pane().isClearOutputOffered());
    EXPECT_TRUE(pane().isShown());
    EXPECT_EQ(TranscriptPane::stripDashesHint(), u"Remove leading dash markers from lines."_qs);
}

TEST_F(BatchSelection, theLogIsThatOfTheSelectedResult)
{
    transcribe(threeFiles, threeTexts);
    pane().setShowLogsSheet(true);
    ASSERT_EQ(pane().log()->rowCount(), 1);
    EXPECT_EQ(pane().log()->index(0).data().toString(), u"[00:00:00.000 --> 00:00:01.000]   - first one"_qs);
    screen->results()->selectRow(1);
    ASSERT_EQ(pane().log()->rowCount(), 2);
    EXPECT_EQ(pane().log()->index(0).data().toString(), u"second"_qs);
    screen->results()->selectRow(2);
    EXPECT_EQ(pane().log()->rowCount(), 0);
    EXPECT_EQ(pane().emptyLogText(), u"No logs available."_qs);
}

TEST_F(BatchSelection, theViewerShowsTheSelectedResultWithItsSegments)
{
    transcribe(threeFiles, threeTexts);
    pane().openFullView();
    TranscriptWindowModel &model = pane().viewer()->model();
    EXPECT_EQ(model.transcript(), u"- first one"_qs);
    ASSERT_EQ(model.segments().size(), 1);
    EXPECT_FALSE(model.isPlaybackAvailable());
    screen->results()->selectRow(1);
    EXPECT_EQ(model.transcript(), u"second\none one"_qs);
    EXPECT_EQ(model.segments().size(), 0);
    pane().viewer()->closeTranscriptWindow();
}

TEST_F(BatchSelection, comingOnShowBringsTheViewersModelUpToDate)
{
    transcribe({u"/music/a.wav"_qs}, threeTexts);
    EXPECT_EQ(pane().viewer()->model().transcript(), QString());
    screen->appear();
    EXPECT_EQ(pane().viewer()->model().transcript(), u"- first one"_qs);
}

} // namespace
