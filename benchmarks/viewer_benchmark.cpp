// What the viewer window costs the main thread: opening it with 100,000 segments that it never saw before, its largest
// text, and the chunks of a ten-hour run (12,000 segments) while it is open, beside bringing it up to date with the
// whole text at each chunk. Drawn in software where nobody sees it.

#include "app/style/look.h"
#include "app/viewer/transcript_viewer.h"
#include "core/transcript_counter.h"
#include "core/transcript_lines_model.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickWindow>
#include <QTest>
#include <QtQml/qqmlextensionplugin.h>

#include <algorithm>
#include <cstdio>
#include <vector>

Q_IMPORT_QML_PLUGIN(Sorvanta_StylePlugin)
Q_IMPORT_QML_PLUGIN(Sorvanta_ViewerPlugin)

using namespace sorvanta;

namespace {

QString timedLine(int number)
{
    const auto timecode = [](int seconds) {
        return u"%1:%2:%3.000"_qs.arg(seconds / 3600 % 100, 2, 10, QChar(u'0'))
            .arg(seconds / 60 % 60, 2, 10, QChar(u'0'))
            .arg(seconds % 60, 2, 10, QChar(u'0'));
    };
    return u"[%1 --> %2]   Line %3 of a talk about the harbour, the boats and the gulls that you hear first.\n"_qs
        .arg(timecode(3 * number), timecode(3 * number + 3))
        .arg(number);
}

double milliseconds(const QElapsedTimer &timer)
{
    return static_cast<double>(timer.nsecsElapsed()) / 1e6;
}

/// A viewer over a growing output.
class Reading {
public:
    LiveTranscript::Change append(const QString &piece)
    {
        const LiveTranscript::Change change = m_output.append(piece);
        m_lines.apply(change);
        m_counter.recountFrom(change.first);
        return change;
    }

    TranscriptViewer &viewer() { return m_viewer; }

private:
    LiveTranscript m_output;
    TranscriptLinesModel m_lines{m_output};
    TranscriptCounter m_counter{m_lines};
    TranscriptViewer m_viewer{{
        .text = [this] { return m_output.transcript(); },
        .counts = [this] { return countsText(m_counter.counts()); },
        .rawOutput = [this] { return m_output.rawOutput(); },
        .stripsSegments = [] { return false; },
        .isPlaybackAvailable = [] { return true; },
        .isPlaying = [] { return false; },
        .currentTime = [] { return 0.0; },
        .playbackDuration = [] { return 36000.0; },
        .stripDashes = {.get = [] { return false; }, .set = [](bool) {}},
        .togglePlay = [] {},
        .seek = [](double) {},
        .lines = &m_lines,
        .outputIdentity = [] { return 0; },
    }};
};

/// The page that makes the window.
class Page {
public:
    explicit Page(TranscriptViewer &viewer)
    {
        m_engine.addImportPath(u"qrc:/qt/qml"_qs);
        QQmlComponent component(&m_engine);
        component.setData("import Sorvanta.Viewer\nTranscriptViewerLoader {}", QUrl(u"qrc:/qt/qml/Shown.qml"_qs));
        m_item.reset(component.createWithInitialProperties({{u"viewer"_qs, QVariant::fromValue(&viewer)}}));
        if (!m_item)
            qFatal("%s", qPrintable(component.errorString()));
    }

    static QQuickWindow *window()
    {
        const QWindowList windows = QGuiApplication::topLevelWindows();
        for (QWindow *each : windows) {
            if (each->isVisible())
                return qobject_cast<QQuickWindow *>(each);
        }
        return nullptr;
    }

    /// Waits until something was drawn.
    static void waitForFrame()
    {
        bool isDrawn = false;
        QQuickWindow *shown = window();
        const auto connection =
            QObject::connect(shown, &QQuickWindow::frameSwapped, shown, [&isDrawn] { isDrawn = true; });
        shown->update();
        if (!QTest::qWaitFor([&isDrawn] { return isDrawn; }))
            std::puts("  nothing was drawn");
        QObject::disconnect(connection);
    }

private:
    QQmlEngine m_engine;
    std::unique_ptr<QObject> m_item;
};

void measureOpening(int segments)
{
    Reading reading;
    QString output;
    for (int line = 0; line < segments; ++line)
        output += timedLine(line);
    reading.append(output);
    TranscriptViewer &viewer = reading.viewer();
    const Page page(viewer);
    QElapsedTimer timer;
    for (const char *what : {"never synced, first window", "synced before"}) {
        timer.start();
        viewer.openTranscriptWindow();
        const double call = milliseconds(timer);
        Page::waitForFrame();
        std::printf("  opened, %-28s %8.1f ms, %.1f of it until the window is there\n", what, milliseconds(timer),
                    call);
        if (what[0] == 'n') {
            viewer.closeTranscriptWindow();
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        }
    }
    for (const double size : {96.0, 12.0}) {
        timer.start();
        viewer.transcriptWindow()->setFontSize(size);
        Page::waitForFrame();
        std::printf("  text size %.0f until drawn %27.1f ms\n", size, milliseconds(timer));
        std::vector<double> moves;
        for (int row = 1; row < segments; row += segments / 20) {
            timer.start();
            viewer.updateActiveSegment(3.0 * row + 1);
            Page::waitForFrame();
            moves.push_back(milliseconds(timer));
        }
        std::sort(moves.begin(), moves.end());
        std::printf("  another row marked and drawn: median %.1f ms, worst %.1f ms\n", moves[moves.size() / 2],
                    moves.back());
    }
    viewer.closeTranscriptWindow();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

void measureRun(const char *what, int chunks, bool isWhole)
{
    Reading reading;
    const Page page(reading.viewer());
    reading.viewer().openTranscriptWindow();
    Page::waitForFrame();
    std::vector<double> times;
    QElapsedTimer timer;
    for (int chunk = 0; chunk < chunks; ++chunk) {
        const QString piece = timedLine(chunk);
        timer.start();
        const auto change = reading.append(piece);
        if (isWhole)
            reading.viewer().syncTranscriptWindow();
        else
            reading.viewer().textChanged(change.first);
        times.push_back(milliseconds(timer));
    }
    std::vector<double> last(times.end() - chunks / 10, times.end());
    std::sort(last.begin(), last.end());
    std::sort(times.begin(), times.end());
    std::printf("  a chunk, %-12s median %.4f ms, of the last tenth %.4f ms, worst %.2f ms\n", what,
                times[times.size() / 2], last[last.size() / 2], times.back());
    reading.viewer().closeTranscriptWindow();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

} // namespace

int main(int argumentCount, char **arguments)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("QT_QUICK_BACKEND", "software");
    const QApplication application(argumentCount, arguments);
    applyLook();
    std::puts("100,000 segments");
    measureOpening(100000);
    std::puts("a run of 12,000 segments with the window open");
    measureRun("by the chunk", 12000, false);
    measureRun("whole", 12000, true);
    return 0;
}
