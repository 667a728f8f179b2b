#pragma once

#include "screens/history/history_view.h"
#include "support/history_entries.h"
#include "support/printing.h"
#include "support/screen_workbench.h"
#include "ui/support/ui_test.h"
#include "unit/audio/fake_audio_player.h"

#include "history/history_json.h"
#include "platform/file_system.h"

#include <gmock/gmock.h>

#include <QCoreApplication>
#include <QTest>

namespace sorvanta {

/// The page of the history with the real screen behind it, over a history that a test writes.
class HistoryPageTest : public UiTest {
protected:
    void write(const QList<TranscriptionHistoryEntry> &entries)
    {
        writeFileAtomically(bench.history.historyPath(), encodedHistory(entries));
        screen.appear();
        settle();
    }
    /// As the window shows it: 260 to the right of this.
    void showPage(int width = 940, int height = 700)
    {
        showType("Sorvanta.Screens", "HistoryPage",
                 {{"view", QVariant::fromValue(&screen)}, {"width", width}, {"height", height}});
        settle();
    }

    static TranscriptionHistoryEntry entry(const QString &sourceLabel, const QString &text, int minutesEarlier = 0)
    {
        TranscriptionHistoryEntry made =
            historyEntry("entry" + QString::number(minutesEarlier),
                         QString("2025-11-14T18:%1:37.000Z").arg(59 - minutesEarlier, 2, 10, QLatin1Char('0')));
        made.sourceLabel = sourceLabel;
        made.text = text;
        return made;
    }
    TranscriptionHistoryEntry recorded(const QString &sourceLabel, const QString &text, int minutesEarlier = 0) const
    {
        TranscriptionHistoryEntry made = entry(sourceLabel, text, minutesEarlier);
        made.recordingPath = bench.history.recordingsDirectory() + '/' + made.id + ".wav";
        writeFileAtomically(*made.recordingPath, "sound");
        return made;
    }

    QQuickItem *list() const { return item("historyList"); }
    /// The row of the list with that number, which is made now if it is out of sight.
    QQuickItem *row(int number) const
    {
        QQuickItem *found = nullptr;
        QMetaObject::invokeMethod(list(), "itemAtIndex", Q_RETURN_ARG(QQuickItem *, found), Q_ARG(int, number));
        if (!found)
            throw std::runtime_error("there is no such row in sight");
        return found;
    }

    ScreenWorkbench bench;
    FakePlayers players;
    HistoryView screen{{.history = bench.history, .panels = bench.panels, .openPlayer = players.opener()}};
};

} // namespace sorvanta
