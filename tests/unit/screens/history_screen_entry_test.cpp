#include "history_screen_test.h"

#include "app/viewer/transcript_window_view.h"

#include <QClipboard>
#include <QDir>
#include <QGuiApplication>
#include <QSignalSpy>

namespace sorvanta {

namespace {

using testing::ElementsAre;

class HistoryScreenDetail : public HistoryScreenTest {
protected:
    void showEntry(const TranscriptionHistoryEntry &shown) { showHistory({shown}); }
    HistoryDetail &detail() { return *screen.detail(); }
};

TEST_F(HistoryScreenDetail, tellsWhatTheEntryIs)
{
    TranscriptionHistoryEntry shown = entry(u"a"_qs, u" One\nTwo\n"_qs);
    shown.sourceLabel = u"/music/Walk.m4a"_qs;
    shown.createdAt = u"not a date"_qs;
    shown.model = u"Tiny"_qs;
    shown.language = QString();
    showEntry(shown);
    EXPECT_EQ(detail().title(), u"Walk.m4a"_qs);
    EXPECT_EQ(detail().date(), u"not a date"_qs);
    ASSERT_EQ(detail().tags().size(), 2);
    EXPECT_EQ(detail().tags()[1].toMap()[u"text"_qs], u"auto"_qs);
    EXPECT_EQ(detail().textPieces(), QStringList(u" One\nTwo\n"_qs)) << "the text as it stands";
    EXPECT_EQ(detail().emptyText(), QString());
}

TEST_F(HistoryScreenDetail, writesTheDateInTheMediumStyleAndTheListInTheShortOne)
{
    showEntry(entry(u"a"_qs));
    EXPECT_TRUE(detail().date().contains(u":59:00\u202F"_qs)) << detail().date().toStdString();
    EXPECT_TRUE(detail().date().startsWith(u"Feb "_qs));
    const QString inList = screen.rows()->index(0).data(FilteredEntries::DateRole).toString();
    EXPECT_TRUE(inList.startsWith(u"2/"_qs)) << inList.toStdString();
    EXPECT_TRUE(inList.contains(u":59\u202F"_qs)) << inList.toStdString();
}

TEST_F(HistoryScreenDetail, ofABlankTextSaysThatThereIsNone)
{
    showEntry(recorded(u"a"_qs, u" \n "_qs));
    EXPECT_EQ(detail().textPieces(), QStringList());
    EXPECT_EQ(detail().emptyText(), u"No transcript text stored."_qs);
    EXPECT_EQ(screen.rows()->index(0).data(FilteredEntries::PreviewRole), u"No transcript text saved."_qs);
    screen.togglePlayback();
    EXPECT_TRUE(screen.playback()->isPlaying()) << "it can be played";
}

TEST_F(HistoryScreenDetail, isEmptyWithoutASelection)
{
    screen.appear();
    EXPECT_EQ(detail().title() + detail().date() + detail().emptyText(), QString());
    EXPECT_EQ(detail().tags(), QVariantList());
    EXPECT_EQ(detail().textPieces(), QStringList());
    EXPECT_FALSE(detail().hasRecording());
    EXPECT_FALSE(screen.exportMenu()->isEnabled());
}

TEST_F(HistoryScreenDetail, hasARecordingOnlyIfItsFileIsThere)
{
    TranscriptionHistoryEntry gone = recorded(u"gone"_qs);
    ASSERT_TRUE(QFile::remove(*gone.recordingPath));
    TranscriptionHistoryEntry empty = entry(u"empty"_qs, {}, 1);
    empty.recordingPath = QString();
    showHistory({gone, empty, entry(u"none"_qs, {}, 2), recorded(u"there"_qs, {}, 3)});
    for (int row = 0; row < 4; ++row) {
        screen.selectRow(row);
        EXPECT_EQ(detail().hasRecording(), row == 3);
    }
}

TEST_F(HistoryScreenDetail, losesARecordingThatHasVanishedOnceItIsAskedFor)
{
    const TranscriptionHistoryEntry shown = recorded(u"a"_qs);
    showEntry(shown);
    ASSERT_TRUE(detail().hasRecording());
    ASSERT_TRUE(QFile::remove(*shown.recordingPath));
    screen.togglePlayback();
    EXPECT_FALSE(detail().hasRecording());
    EXPECT_EQ(screen.exportError(), std::nullopt);
    EXPECT_FALSE(screen.viewer()->model().isPlaybackAvailable());
}

// Exports.

class HistoryScreenExport : public HistoryScreenDetail {
protected:
    HistoryScreenExport() { QDir().mkpath(downloads); }
    bool isEnabled(int index) { return menuEntry(index)->isEnabled(); }
};

TEST_F(HistoryScreenExport, ofAnEntryWithoutTextAndFileIsDisabled)
{
    showEntry(entry(u"a"_qs, QString()));
    EXPECT_FALSE(screen.exportMenu()->isEnabled());
    TranscriptionHistoryEntry stored = entry(u"b"_qs, QString());
    stored.txtPath = bench.history.transcriptsDirectory() + u"/b.txt"_qs;
    writeFileAtomically(stored.txtPath, "");
    showEntry(stored);
    EXPECT_TRUE(screen.exportMenu()->isEnabled()) << "the file is there";
    showEntry(entry(u"c"_qs));
    EXPECT_TRUE(screen.exportMenu()->isEnabled()) << "there is a text";
}

TEST_F(HistoryScreenExport, offersSubtitlesWhereThereAreTimes)
{
    showEntry(entry(u"a"_qs));
    for (const int subtitles : {1, 2, 3})
        EXPECT_FALSE(isEnabled(subtitles));
    for (const int other : {0, 4, 5, 6, 7, 8})
        EXPECT_TRUE(isEnabled(other));
    showEntry(entry(u"b"_qs, u"[00:00:00.000 --> 00:00:01.000]  Hello"_qs));
    for (const int subtitles : {1, 2, 3})
        EXPECT_TRUE(isEnabled(subtitles));
}

TEST_F(HistoryScreenExport, looksAtTheFilesAgainWhenItIsReloaded)
{
    TranscriptionHistoryEntry shown = entry(u"a"_qs);
    shown.srtPath = bench.history.transcriptsDirectory() + u"/a.srt"_qs;
    showEntry(shown);
    EXPECT_FALSE(isEnabled(1));
    writeFileAtomically(*shown.srtPath, "1\n00:00:00,000 --> 00:00:01,000\nHello\n");
    screen.reload();
    EXPECT_TRUE(isEnabled(1));
}

TEST_F(HistoryScreenExport, proposesTheNameOfTheSource)
{
    TranscriptionHistoryEntry shown = entry(u"a"_qs);
    shown.sourceLabel = u"/music/Harbour walk.m4a"_qs;
    showEntry(shown);
    menuEntry(8)->choose();
    ASSERT_EQ(bench.panels.saveRequests.size(), 1);
    EXPECT_EQ(bench.panels.saveRequests[0].name, u"Harbour walk_history.json"_qs);
    EXPECT_THAT(bench.panels.saveRequests[0].extensions, ElementsAre(u"json"_qs));
    shown.sourceLabel = QString();
    showEntry(shown);
    menuEntry(0)->choose();
    EXPECT_EQ(bench.panels.saveRequests.last().name, u"transcript_history.txt"_qs);
}

TEST_F(HistoryScreenExport, saysWhereItWentAndForgetsWhatFailedBefore)
{
    showEntry(entry(u"a"_qs));
    menuEntry(0)->choose();
    bench.panels.answer(u"/nowhere/a.txt"_qs);
    EXPECT_EQ(screen.exportError(), u"Export failed: The folder “nowhere” doesn’t exist."_qs);
    EXPECT_EQ(screen.exportMessage(), std::nullopt);
    menuEntry(0)->choose();
    EXPECT_EQ(screen.exportError(), std::nullopt) << "before the panel is answered";
    bench.panels.answer(bench.file(u"walk.txt"_qs));
    EXPECT_EQ(screen.exportMessage(), u"Exported to walk.txt"_qs);
    EXPECT_EQ(readFile(bench.file(u"walk.txt"_qs)), "Words.");
}

TEST_F(HistoryScreenExport, goesToTheDownloadsFolder)
{
    TranscriptionHistoryEntry shown = entry(u"a"_qs);
    shown.sourceLabel = u"/music/walk.m4a"_qs;
    showEntry(shown);
    const ExportMenu &submenu = *menuEntry(10)->submenu();
    EXPECT_EQ(submenu.label(), u"Download to Downloads"_qs);
    auto *const markdown = qobject_cast<ExportMenuEntry *>(submenu.entries()[6]);
    markdown->choose();
    markdown->choose();
    EXPECT_EQ(screen.exportMessage(), u"Saved to Downloads/walk_history-2.md"_qs);
    EXPECT_EQ(readFile(downloads + u"/walk_history.md"_qs), "Words.");
    hasDownloads = false;
    markdown->choose();
    EXPECT_EQ(screen.exportError(), u"Downloads folder not found."_qs);
    EXPECT_EQ(screen.exportMessage(), std::nullopt);
}

TEST_F(HistoryScreenExport, messageStaysWithAnotherSelection)
{
    showHistory({entry(u"a"_qs), entry(u"b"_qs, {}, 1)});
    menuEntry(0)->choose();
    bench.panels.answer(bench.file(u"walk.txt"_qs));
    screen.selectRow(1);
    screen.setSearchText(u"a"_qs);
    EXPECT_EQ(screen.exportMessageText(), u"Exported to walk.txt"_qs);
}

TEST_F(HistoryScreenExport, ofTheRecordingCopiesIt)
{
    TranscriptionHistoryEntry shown = recorded(u"a"_qs);
    shown.sourceLabel = u"/tmp/microphone_1.m4a"_qs;
    showEntry(shown);
    screen.exportAudio();
    ASSERT_EQ(bench.panels.saveRequests.size(), 1);
    EXPECT_EQ(bench.panels.saveRequests[0].name, u"microphone_1_history.wav"_qs);
    EXPECT_THAT(bench.panels.saveRequests[0].extensions, ElementsAre(u"wav"_qs));
    bench.panels.answer(bench.file(u"copy.wav"_qs));
    EXPECT_EQ(screen.exportMessage(), u"Exported to copy.wav"_qs);
    EXPECT_EQ(readFile(bench.file(u"copy.wav"_qs)), "sound of a");
    EXPECT_EQ(readFile(*shown.recordingPath), "sound of a");
}

TEST_F(HistoryScreenExport, ofARecordingWithoutAnExtensionCallsItWav)
{
    TranscriptionHistoryEntry shown = entry(u"a"_qs);
    shown.recordingPath = bench.file(u"recording"_qs);
    writeFileAtomically(*shown.recordingPath, "sound");
    showEntry(shown);
    screen.exportAudio();
    ASSERT_EQ(bench.panels.saveRequests.size(), 1);
    EXPECT_EQ(bench.panels.saveRequests[0].name, u"a_history.wav"_qs);
    EXPECT_THAT(bench.panels.saveRequests[0].extensions, ElementsAre(u"wav"_qs));
}

TEST_F(HistoryScreenExport, ofARecordingKeepsItsOtherExtension)
{
    TranscriptionHistoryEntry shown = entry(u"a"_qs);
    shown.recordingPath = bench.file(u"meeting.m4a"_qs);
    writeFileAtomically(*shown.recordingPath, "sound");
    showEntry(shown);
    screen.exportAudio();
    ASSERT_EQ(bench.panels.saveRequests.size(), 1);
    EXPECT_EQ(bench.panels.saveRequests[0].name, u"a_history.m4a"_qs);
    EXPECT_THAT(bench.panels.saveRequests[0].extensions, ElementsAre(u"m4a"_qs));
}

TEST_F(HistoryScreenExport, ofARecordingThatIsNotThereDoesNothing)
{
    screen.exportAudio();
    TranscriptionHistoryEntry shown = recorded(u"a"_qs);
    showEntry(shown);
    ASSERT_TRUE(QFile::remove(*shown.recordingPath));
    screen.exportAudio();
    shown.recordingPath = QString();
    showEntry(shown);
    screen.exportAudio();
    EXPECT_EQ(bench.panels.saveRequests.size(), 0);
    EXPECT_EQ(screen.exportError(), std::nullopt);
}

// The viewer window.

class HistoryScreenViewer : public HistoryScreenDetail {
protected:
    TranscriptWindowModel &model() { return screen.viewer()->model(); }
    TranscriptWindowView &window() { return *screen.viewer()->transcriptWindow(); }
    QString storedSrt(const QByteArray &text) const
    {
        const QString path = bench.history.transcriptsDirectory() + u"/a.srt"_qs;
        writeFileAtomically(path, text);
        return path;
    }
};

TEST_F(HistoryScreenViewer, isGivenTheEntry)
{
    showEntry(recorded(u"a"_qs, u"Good morning,\nhow are you? 🙂"_qs));
    screen.openTranscriptWindow();
    EXPECT_EQ(model().transcript(), u"Good morning,\nhow are you? 🙂"_qs);
    EXPECT_EQ(model().counts(), u"6 words · 28 chars"_qs);
    EXPECT_TRUE(model().isPlaybackAvailable());
    EXPECT_TRUE(model().segments().isEmpty());
    EXPECT_EQ(model().activeSegmentIndex(), std::nullopt);
}

TEST_F(HistoryScreenViewer, countsAnEmptyText)
{
    showEntry(recorded(u"a"_qs, QString()));
    screen.openTranscriptWindow();
    EXPECT_EQ(model().counts(), u"0 words · 0 chars"_qs);
}

TEST_F(HistoryScreenViewer, takesTheTimesOfTheStoredSubtitles)
{
    TranscriptionHistoryEntry shown = entry(u"a"_qs, u"[00:00:07.000 --> 00:00:08.000]  In the text"_qs);
    shown.srtPath = storedSrt("1\n00:00:00,500 --> 00:01:02,250\n- Stored\n\n2\n00:01:02,250 --> 01:00:00,000\nTwo\n");
    showEntry(shown);
    screen.openTranscriptWindow();
    EXPECT_EQ(model().segments(),
              (QList<TranscriptWindowSegment>{{u"00:00:00.500"_qs, u"00:01:02.250"_qs, u"- Stored"_qs, 0.5, 62.25},
                                              {u"00:01:02.250"_qs, u"01:00:00.000"_qs, u"Two"_qs, 62.25, 3600}}));
}

TEST_F(HistoryScreenViewer, takesTheTimesOfTheTextWhereTheSubtitlesHaveGone)
{
    TranscriptionHistoryEntry shown = entry(u"a"_qs, u"[00:00:07.000 --> 00:00:08.000]  In the text"_qs);
    shown.srtPath = bench.history.transcriptsDirectory() + u"/gone.srt"_qs;
    showEntry(shown);
    screen.openTranscriptWindow();
    ASSERT_EQ(model().segments().size(), 1);
    EXPECT_EQ(model().segments()[0].startSeconds, 7);
    EXPECT_EQ(model().segments()[0].text, u"In the text"_qs);
    shown.text = u"No times"_qs;
    showEntry(shown);
    EXPECT_TRUE(model().segments().isEmpty());
}

TEST_F(HistoryScreenViewer, followsTheSelection)
{
    TranscriptionHistoryEntry timed = recorded(u"a"_qs, u"[00:00:07.000 --> 00:00:08.000]  One"_qs);
    showHistory({timed, entry(u"b"_qs, u"Two"_qs, 1)});
    screen.openTranscriptWindow();
    screen.selectRow(1);
    EXPECT_EQ(model().transcript(), u"Two"_qs);
    EXPECT_TRUE(model().segments().isEmpty());
    EXPECT_FALSE(model().isPlaybackAvailable());
    screen.setSearchText(u"one"_qs);
    EXPECT_EQ(model().segments().size(), 1);
    EXPECT_TRUE(model().isPlaybackAvailable());
    screen.setSearchText(u"nothing like it"_qs);
    EXPECT_EQ(model().transcript() + model().counts(), QString());
    EXPECT_TRUE(model().segments().isEmpty());
    EXPECT_FALSE(model().isPlaybackAvailable());
}

TEST_F(HistoryScreenViewer, followsTheEntriesAndTheDisk)
{
    showEntry(entry(u"a"_qs, u"One"_qs));
    screen.openTranscriptWindow();
    write({entry(u"a"_qs, u"Two"_qs)});
    screen.reload();
    EXPECT_EQ(model().transcript(), u"Two"_qs);
    bench.history.deleteEntry(u"a"_qs);
    settle();
    EXPECT_EQ(model().transcript(), QString());
}

TEST_F(HistoryScreenViewer, copiesTheTextOfTheEntry)
{
    showEntry(entry(u"a"_qs, u"One\nTwo"_qs));
    screen.openTranscriptWindow();
    window().copy();
    EXPECT_EQ(QGuiApplication::clipboard()->text(), u"One\nTwo"_qs);
}

TEST_F(HistoryScreenViewer, playsAndSeeksTheScreensPlayer)
{
    showEntry(recorded(u"a"_qs));
    screen.openTranscriptWindow();
    window().togglePlay();
    EXPECT_TRUE(screen.playback()->isPlaying());
    EXPECT_TRUE(model().isPlaying());
    EXPECT_EQ(model().playbackDuration(), 10);
    window().slideTo(4);
    EXPECT_EQ(screen.playback()->playbackTime(), 4);
    EXPECT_EQ(model().currentTime(), 4);
    EXPECT_TRUE(players.calls.contains(u"seek 4"_qs));
    window().togglePlay();
    EXPECT_FALSE(model().isPlaying());
}

TEST_F(HistoryScreenViewer, hasNoDashesToStrip)
{
    showEntry(entry(u"a"_qs, u"- One"_qs));
    screen.openTranscriptWindow();
    QSignalSpy told(&window(), &TranscriptWindowView::isStripDashesChanged);
    window().setStripDashes(true);
    EXPECT_FALSE(window().isStripDashes());
    EXPECT_EQ(told.count(), 1) << "the switch goes back";
    EXPECT_EQ(model().transcript(), u"- One"_qs);
}

} // namespace

} // namespace sorvanta
