#pragma once

#include "app/viewer/transcript_viewer.h"
#include "support/printing.h"
#include "ui/support/ui_test.h"

#include <QGuiApplication>
#include <QQmlComponent>
#include <QTest>

#include <memory>
#include <vector>

namespace sorvanta {

inline QtMessageHandler strictHandler = nullptr;

/// The platform without a screen says each time that it has no order of windows; every other warning is a failure.
inline void passOnButRaising(QtMsgType type, const QMessageLogContext &context, const QString &text)
{
    if (text != u"This plugin does not support raise()")
        strictHandler(type, context, text);
}

/// The real window over a screen that is a few variables.
class ViewerWindow : public UiTest {
protected:
    ViewerWindow() { strictHandler = qInstallMessageHandler(passOnButRaising); }
    void TearDown() override
    {
        qInstallMessageHandler(strictHandler);
        if (window) {
            viewer.closeTranscriptWindow();
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
            static_cast<void>(window.release()); // it went with its loader
        }
        UiTest::TearDown();
    }

    static QString timecode(int seconds)
    {
        return u"%1:%2:%3.000"_qs.arg(seconds / 3600, 2, 10, QChar(u'0'))
            .arg(seconds / 60 % 60, 2, 10, QChar(u'0'))
            .arg(seconds % 60, 2, 10, QChar(u'0'));
    }
    void fill(int count)
    {
        output.clear();
        QStringList lines;
        for (int line = 0; line < count; ++line) {
            QString said = u"line %1 of a talk about the harbour"_qs.arg(line);
            for (int more = 0; more < line % 5; ++more)
                said += u" and the gulls that you hear first";
            lines << said;
            output += u"[%1 --> %2]   %3\n"_qs.arg(timecode(2 * line), timecode(2 * line + 1), said);
        }
        text = lines.join(u'\n');
    }
    void open(int width = 980, int height = 720)
    {
        QQmlComponent component(&engine);
        component.setData("import Sorvanta.Viewer\nTranscriptViewerLoader {}", QUrl("qrc:/qt/qml/Shown.qml"));
        root = qobject_cast<QQuickItem *>(
            component.createWithInitialProperties({{"viewer", QVariant::fromValue(&viewer)}}));
        ASSERT_NE(root, nullptr) << component.errorString().toStdString();
        viewer.openTranscriptWindow();
        window.reset(newWindow());
        ASSERT_NE(window, nullptr);
        if (width != 980 || height != 720)
            window->resize(width, height);
        ASSERT_TRUE(QTest::qWaitForWindowExposed(window.get()));
        ASSERT_TRUE(QTest::qWaitForWindowActive(window.get()));
    }
    static QQuickWindow *newWindow()
    {
        for (QWindow *candidate : QGuiApplication::topLevelWindows()) {
            if (candidate->objectName() == u"transcriptViewerWindow" && candidate->isVisible())
                return qobject_cast<QQuickWindow *>(candidate);
        }
        return nullptr;
    }

    TranscriptWindowView &view() { return *viewer.transcriptWindow(); }
    QQuickItem *list() const { return item("viewerLines"); }
    QQuickItem *row(int index) const { return item("line-" + QString::number(index)); }
    static QQuickItem *part(QQuickItem *of, const QString &name) { return of->findChild<QQuickItem *>(name); }
    /// How far the middle of the row is from the middle of the list.
    double fromCentre(int index) const { return place(row(index)).center().y() - place(list()).center().y(); }

    QString text;
    QString output;
    bool strips = false;
    int toggles = 0;
    std::vector<double> seeks;
    bool isAvailable = true;
    double time = 43;
    double duration = 138;
    TranscriptViewer viewer{{
        .text = [this] { return text; },
        .counts = [this] { return TranscriptCounts(text); },
        .rawOutput = [this] { return output; },
        .stripsSegments = [this] { return strips; },
        .isPlaybackAvailable = [this] { return isAvailable; },
        .isPlaying = [] { return true; },
        .currentTime = [this] { return time; },
        .playbackDuration = [this] { return duration; },
        .stripDashes = {.get = [this] { return strips; }, .set = [this](bool on) { strips = on; }},
        .togglePlay = [this] { ++toggles; },
        .seek = [this](double seconds) { seeks.push_back(seconds); },
    }};
};

} // namespace sorvanta
