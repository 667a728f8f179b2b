#pragma once

#include "screens/history/history_view.h"
#include "support/history_entries.h"
#include "support/posted_work.h"
#include "support/printing.h"
#include "support/screen_workbench.h"
#include "unit/audio/fake_audio_player.h"

#include "history/history_json.h"
#include "platform/file_system.h"
#include "platform/folders.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QTest>

namespace sorvanta {

/// The history screen over a history that a test writes.
class HistoryScreenTest : public testing::Test {
protected:
    /// Puts these entries on the disk, in this order, and shows the screen.
    void showHistory(const QList<TranscriptionHistoryEntry> &entries)
    {
        write(entries);
        screen.appear();
        settle();
    }
    void write(const QList<TranscriptionHistoryEntry> &entries)
    {
        writeFileAtomically(bench.history.historyPath(), encodedHistory(entries));
    }
    /// Lets what is posted happen.
    static void settle() { runPosted(); }

    /// An entry that was made so many minutes before the others of the test.
    static TranscriptionHistoryEntry entry(const QString &id, const QString &text = u"Words."_qs,
                                           int minutesEarlier = 0)
    {
        TranscriptionHistoryEntry made =
            historyEntry(id, u"2026-02-02T02:%1:00.000Z"_qs.arg(59 - minutesEarlier, 2, 10, QLatin1Char('0')));
        made.text = text;
        return made;
    }
    /// The same with a recording that is there.
    TranscriptionHistoryEntry recorded(const QString &id, const QString &text = u"Words."_qs,
                                       int minutesEarlier = 0) const
    {
        TranscriptionHistoryEntry made = entry(id, text, minutesEarlier);
        made.recordingPath = bench.history.recordingsDirectory() + u'/' + id + u".wav"_qs;
        writeFileAtomically(*made.recordingPath, "sound of " + id.toUtf8());
        return made;
    }

    QStringList shownIds()
    {
        QStringList ids;
        for (int row = 0; row < screen.rows()->count(); ++row)
            ids << screen.rows()->entry(row).id;
        return ids;
    }
    ExportMenuEntry *menuEntry(qsizetype index)
    {
        return qobject_cast<ExportMenuEntry *>(screen.exportMenu()->entries().at(index));
    }

    ScreenWorkbench bench;
    FakePlayers players;
    QString downloads = bench.file(u"Downloads"_qs);
    bool hasDownloads = true;
    HistoryView screen{
        {.history = bench.history, .panels = bench.panels, .openPlayer = players.opener(), .downloadsFolder = [this] {
             return hasDownloads ? std::optional(downloads) : std::nullopt;
         }}};
};

} // namespace sorvanta
