#pragma once

#include "screens/file/transcript_from_file_view.h"
#include "support/printing.h"
#include "support/screen_workbench.h"
#include "support/silent_media.h"
#include "unit/audio/fake_audio_player.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QTest>

/// The file screen with its surroundings, and a record of all that its status ever said.
class FileScreenTest : public testing::Test {
protected:
    FileScreenTest() { makeScreen(); }

    void makeScreen()
    {
        screen = std::make_unique<sorvanta::TranscriptFromFileView>(sorvanta::TranscriptFromFileView::Surroundings{
            .shared = bench.surroundings(), .openPlayer = players.opener()});
        statuses.clear();
        QObject::connect(screen->run(), &sorvanta::TranscriptionRun::statusChanged, screen->run(),
                         [this] { statuses << screen->run()->status(); });
    }

    sorvanta::TranscriptionRun &run() { return *screen->run(); }

    void choose(const QString &path)
    {
        screen->chooseFile();
        bench.panels.answer(path);
    }

    /// Makes the only model one that does as `commands` say.
    void useModel(const QByteArray &commands)
    {
        bench.installModel(QStringLiteral("ggml-base.bin"), commands);
        screen->appear();
    }

    template<typename Condition>
    void waitFor(Condition condition)
    {
        ASSERT_TRUE(QTest::qWaitFor(condition, 20000)) << (run().status() + run().errorText()).toStdString();
    }
    void waitForStatus(const QString &status)
    {
        waitFor([this, status] { return run().status() == status; });
    }
    void transcribe(const QString &path, const QByteArray &commands)
    {
        useModel(commands);
        choose(path);
        screen->start();
        waitForStatus(QStringLiteral("Done"));
    }

    ScreenWorkbench bench;
    FakePlayers players;
    QStringList statuses;
    std::unique_ptr<sorvanta::TranscriptFromFileView> screen;
};

/// An engine that prints two timed lines of 30 seconds of audio.
inline const QByteArray twoLines = "print main%3A processing 'a.wav' (480000 samples, 30.0 sec), 4 threads%0A\n"
                                   "print [00%3A00%3A00.000 --> 00%3A00%3A15.000]   - One%0A\n"
                                   "print [00%3A00%3A15.000 --> 00%3A00%3A30.000]   Two%0A\n";
