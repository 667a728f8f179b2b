#pragma once

#include "platform/media/audio_writer.h"
#include "screens/meeting/meeting_recorder_view.h"
#include "support/printing.h"
#include "support/screen_workbench.h"
#include "unit/audio/fake_audio_player.h"
#include "unit/meeting/fake_sound.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QTest>

/// An engine that prints two timed lines of 30 seconds of audio.
inline const QByteArray twoMeetingLines = "print main%3A processing 'a.wav' (480000 samples, 30.0 sec), 4 threads%0A\n"
                                          "print [00%3A00%3A00.000 --> 00%3A00%3A15.000]   - One%0A\n"
                                          "print [00%3A00%3A15.000 --> 00%3A00%3A30.000]   Two%0A\n";

/// The meeting screen over a machine that a test plays.
class MeetingScreenTest : public testing::Test {
protected:
    MeetingScreenTest() { makeScreen(); }

    void makeScreen(std::chrono::milliseconds second = std::chrono::hours(1))
    {
        sorvanta::MeetingRecorderView::Surroundings surroundings{
            .shared = bench.surroundings(), .recorder = sound.surroundings(), .second = second};
        surroundings.recorder.openPlayer = players.opener();
        screen = std::make_unique<sorvanta::MeetingRecorderView>(surroundings);
    }

    sorvanta::TranscriptionRun &run() { return *screen->run(); }
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
    template<typename Condition>
    void waitFor(Condition condition)
    {
        ASSERT_TRUE(QTest::qWaitFor(condition, 20000)) << (run().status() + error()).toStdString();
    }
    void waitForStatus(const QString &status)
    {
        waitFor([this, status] { return run().status() == status; });
    }
    QStringList historySources() const
    {
        QStringList sources;
        for (const auto &entry : bench.history.entries())
            sources << entry.sourceLabel;
        return sources;
    }

    ScreenWorkbench bench;
    FakeSound sound;
    FakePlayers players;
    std::unique_ptr<sorvanta::MeetingRecorderView> screen;
};
