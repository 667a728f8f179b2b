#pragma once

#include "support/fake_microphone.h"
#include "support/printing.h"
#include "support/transcribing_test.h"
#include "unit/audio/fake_audio_player.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QFileInfo>
#include <QTest>

/// The microphone screen with its surroundings, and a clock that stands until it is set.
class MicrophoneScreenTest : public TranscribingTest<testing::Test> {
protected:
    MicrophoneScreenTest() { makeScreen(); }

    void makeScreen()
    {
        screen = std::make_unique<sorvanta::RecordAudioView>(
            sorvanta::RecordAudioView::Surroundings{.shared = bench.surroundings(),
                                                    .openPlayer = players.opener(),
                                                    .makeInput = microphone.input(),
                                                    .seconds = [this] { return seconds; }});
    }

    sorvanta::TranscriptionRun &run() override { return *screen->run(); }
    QString error() { return run().error().value_or(QStringLiteral("none")); }

    void begin()
    {
        screen->toggleRecording();
        microphone.answer(true);
    }
    /// A closed take of some seconds. @return its path
    QString recordTake(double length = 5)
    {
        begin();
        seconds += length;
        screen->toggleRecording();
        return *screen->selectedFile();
    }
    void awaitTick(double time)
    {
        seconds = time;
        waitFor([this, time] { return screen->recordingDuration() == time; });
    }
    /// Makes the only model one that does as `commands` say.
    void useModel(const QByteArray &commands)
    {
        bench.installModel(QStringLiteral("ggml-base.bin"), commands);
        screen->appear();
    }

    FakePlayers players;
    FakeMicrophone microphone;
    double seconds = 0;
    std::unique_ptr<sorvanta::RecordAudioView> screen;
};
