#pragma once

#include "screens/file/transcript_from_file_view.h"
#include "support/engine_scripts.h"
#include "support/printing.h"
#include "support/silent_media.h"
#include "support/transcribing_test.h"
#include "unit/audio/fake_audio_player.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QTest>

/// The file screen with its surroundings, and a record of all that its status ever said.
class FileScreenTest : public TranscribingTest<testing::Test> {
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

    sorvanta::TranscriptionRun &run() override { return *screen->run(); }

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

    void transcribe(const QString &path, const QByteArray &commands)
    {
        useModel(commands);
        choose(path);
        screen->start();
        waitForStatus(QStringLiteral("Done"));
    }

    FakePlayers players;
    QStringList statuses;
    std::unique_ptr<sorvanta::TranscriptFromFileView> screen;
};
