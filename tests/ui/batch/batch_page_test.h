#pragma once

#include "screens/batch/batch_processing_view.h"
#include "support/printing.h"
#include "support/transcribing_test.h"
#include "ui/support/ui_test.h"

#include <gmock/gmock.h>

#include <QTest>

namespace sorvanta {

/// The page of the batch screen with the real screen behind it and an engine that does as it is told.
class BatchPageTest : public TranscribingTest<UiTest> {
protected:
    BatchPageTest()
        : screen(bench.surroundings())
    {
    }

    void showPage(int width = 940, int height = 700)
    {
        showType("Sorvanta.Screens", "BatchProcessingPage",
                 {{"view", QVariant::fromValue(&screen)}, {"width", width}, {"height", height}});
    }

    BatchRun &run() override { return *screen.run(); }

    void useModel(const QByteArray &commands)
    {
        bench.installModel("ggml-large-v3-turbo.bin", commands);
        screen.appear();
    }
    void choose(const QStringList &paths)
    {
        screen.chooseFiles();
        bench.panels.answerFiles(paths);
    }
    void start(const QStringList &paths, const QByteArray &commands)
    {
        useModel(commands);
        choose(paths);
        screen.start();
    }
    void transcribe(const QStringList &paths, const QByteArray &commands)
    {
        start(paths, commands);
        waitFor([this] { return !run().isTranscribing(); });
        settle();
    }

    /// The texts of all shown items with that object name below `parent`, in order.
    static QStringList texts(const QQuickItem *parent, const QString &objectName)
    {
        QStringList found;
        for (const QQuickItem *child : parent->childItems()) {
            if (!child->isVisible())
                continue;
            if (child->objectName() == objectName)
                found << child->property("text").toString();
            found += texts(child, objectName);
        }
        return found;
    }
    QStringList texts(const QString &objectName) const { return texts(root, objectName); }

    void scrollTo(double y)
    {
        root->setProperty("contentY", y);
        settle();
    }
    double scrollEnd() const { return qMax(0.0, root->property("contentHeight").toDouble() - root->height()); }

    BatchProcessingView screen;
};

inline const QStringList fiveFiles{"/music/Town council 3 March.m4a", "/music/Lecture 04 – Rivers and weirs.mp3",
                                   "/music/Interview Marta, take 2.wav", "/music/Field notes 2024-11-08.m4a",
                                   "/music/Choir rehearsal.mp3"};

/// An engine that transcribes the first two of the files and fails with the third.
inline const QByteArray twoOfFive =
    "print main%3A processing 'a.wav' (3200000 samples, 200.0 sec), 4 threads%0A\n"
    "print [00%3A00%3A00.000 --> 00%3A00%3A10.000]   Last week we left the river just above the old mill.%0A\n"
    "print [00%3A00%3A10.000 --> 00%3A00%3A20.000]   - Today we follow it down to the first weir and ask what the weir "
    "does.%0A\n"
    "print [00%3A00%3A20.000 --> 00%3A00%3A84.000]   The surface above the weir is almost still.%0A\n"
    "only Marta\ncomplain error%3A failed to decode%0A\nexit 1\n";

/// The same, but the engine does not come to an end with the second file.
inline const QByteArray inTheSecond = twoOfFive + "only Lecture\nsleep 60000\n";

} // namespace sorvanta
