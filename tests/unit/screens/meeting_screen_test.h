#pragma once

#include "platform/media/audio_writer.h"
#include "screens/meeting/meeting_recorder_view.h"
#include "support/engine_scripts.h"
#include "support/printing.h"
#include "support/transcribing_test.h"
#include "unit/audio/fake_audio_player.h"
#include "unit/meeting/fake_sound.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QTest>

/// The meeting screen over a machine that a test plays.
class MeetingScreenTest : public TranscribingTest<testing::Test> {
protected:
    MeetingScreenTest() { makeScreen(); }

    void makeScreen(std::chrono::milliseconds second = std::chrono::hours(1))
    {
        sorvanta::MeetingRecorderView::Surroundings surroundings{
            .shared = bench.surroundings(), .recorder = sound.surroundings(), .second = second};
        surroundings.recorder.openPlayer = players.opener();
        screen = std::make_unique<sorvanta::MeetingRecorderView>(surroundings);
    }

    sorvanta::TranscriptionRun &run() override { return *screen->run(); }
    sorvanta::ScreenAudioRecorder &recorder() { return screen->recorder(); }
    QString error() { return run().error().value_or(QString()); }

    void useModel(const QByteArray &commands = {})
    {
        bench.installModel(QStringLiteral("ggml-base.bin"), commands);
        screen->appear();
    }
    /// A recording that is on.
    void record(bool includeMic = false)
    {
        screen->setIncludeMic(includeMic);
        screen->toggleRecording();
        sound.answerOpening({.hasDisplay = true});
        if (includeMic)
            sound.answerMic(true);
        ASSERT_TRUE(recorder().isRecording());
    }
    /// Waits for the final file.
    void waitForFinal()
    {
        waitFor([this] { return !recorder().systemURL(); });
    }
    /// A recording that has ended.
    QString recordAndStop(bool includeMic = false)
    {
        record(includeMic);
        sound.play(500, 0.3);
        screen->toggleRecording();
        waitForFinal();
        return recorder().outputURL().value_or(QString());
    }
    QStringList historySources() const
    {
        QStringList sources;
        for (const auto &entry : bench.history.entries())
            sources << entry.sourceLabel;
        return sources;
    }

    FakeSound sound;
    FakePlayers players;
    std::unique_ptr<sorvanta::MeetingRecorderView> screen;
};
