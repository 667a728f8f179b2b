#pragma once

#include "screens/file/transcript_from_file_view.h"
#include "support/printing.h"
#include "support/transcribing_test.h"
#include "ui/support/ui_test.h"

#include <gmock/gmock.h>

#include <QTest>

namespace sorvanta {

/// The page of the file screen with the real screen behind it and an engine that does as it is told.
class FilePageTest : public TranscribingTest<UiTest> {
protected:
    FilePageTest()
        : screen({.shared = bench.surroundings()})
    {
    }

    void showPage(int width = 940, int height = 700)
    {
        showType("Sorvanta.Screens", "TranscriptFromFilePage",
                 {{"view", QVariant::fromValue(&screen)}, {"width", width}, {"height", height}});
    }

    TranscriptionRun &run() override { return *screen.run(); }

    void useModel(const QByteArray &commands)
    {
        bench.installModel("ggml-base.bin", commands);
        screen.appear();
    }
    void choose(const QString &path)
    {
        screen.chooseFile();
        bench.panels.answer(path);
    }
    /// Starts an engine that does as `commands` say, over a file that goes to it as it stands.
    void start(const QByteArray &commands)
    {
        useModel(commands);
        choose("/music/Harbour walk interview.m4a");
        screen.start();
    }

    TranscriptFromFileView screen;
};

/// An engine that is through 42 of 100 seconds and goes on for long.
inline const QByteArray at42Percent =
    "print main%3A processing 'a.wav' (1600000 samples, 100.0 sec), 4 threads%0A\n"
    "print [00%3A00%3A00.000 --> 00%3A00%3A10.000]   Good morning, we are standing at the north end.%0A\n"
    "print [00%3A00%3A10.000 --> 00%3A00%3A42.000]   - Could you tell us how long you have worked here?%0A\n"
    "sleep 60000\n";

/// An engine that fails with `count` lines of log.
inline QByteArray failingWithLog(int count)
{
    QByteArray commands;
    for (int line = 0; line < count; ++line)
        commands += "complain whisper_init%3A line " + QByteArray::number(line)
                    + " of a log that tells at length what went wrong while the engine was at work%0A\n";
    return commands + "exit 1\n";
}

} // namespace sorvanta
