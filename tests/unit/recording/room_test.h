#pragma once

#include "platform/media/microphone.h"
#include "support/media_files.h"
#include "support/printing.h"
#include "support/sound_server.h"
#include "support/waiting.h"

#include <gtest/gtest.h>

#include <QProcess>
#include <QTest>

#include <chrono>
#include <memory>
#include <optional>

/// A private sound server whose microphone hears what the test plays into the room.
class RoomTest : public testing::Test {
protected:
    static constexpr sorvanta::AudioFormat voice = {16000, 1, sorvanta::AudioFormat::SampleType::Int16};

    /// How many seconds pass at most until it is told what is wrong with the server. It is told within two; a machine
    /// that is busy with much else may take longer.
    static constexpr int soon = 5;

    ~RoomTest() override { silence(); }

    /// Noise that nowhere sounds the same twice.
    QString makeNoise(const QString &name, double seconds) const
    {
        return folder.make(name, QStringLiteral("-f lavfi -i anoisesrc=d=%1:c=white:seed=7:r=48000:a=0.5,"
                                                "lowpass=f=2500 -ac 1")
                                     .arg(seconds));
    }

    /// A tone of the amplitude 0.25, alike on all `channels`.
    QString makeTone(const QString &name, int frequency, double seconds, int channels = 1) const
    {
        const QString tone = QStringLiteral("0.25*sin(2*PI*t*%1)").arg(frequency);
        const QStringList tones(channels, tone);
        return folder.make(
            name, QStringLiteral("-f lavfi -i aevalsrc=%1:d=%2:s=48000").arg(tones.join(QChar(u'|'))).arg(seconds));
    }

    /// Plays a file into a sink, from about now on.
    void play(const QString &path, const QString &sink = QStringLiteral("room"))
    {
        players.push_back(std::make_unique<QProcess>());
        players.back()->start(QStringLiteral("paplay"), {QStringLiteral("--device=") + sink, path});
        ASSERT_TRUE(players.back()->waitForStarted());
    }

    /// Ends all that plays.
    void silence()
    {
        for (const auto &process : players) {
            process->kill();
            process->waitForFinished();
        }
        players.clear();
    }

    static void tellServer(const QString &command) { outputOf(QStringLiteral("pactl"), command.split(QChar(u' '))); }

    template<typename Condition>
    static void waitFor(Condition condition, int milliseconds = patience)
    {
        ASSERT_TRUE(waitUntil(condition, milliseconds));
    }

    static double secondsSince(std::chrono::steady_clock::time_point time)
    {
        return std::chrono::duration<double>(std::chrono::steady_clock::now() - time).count();
    }

    MediaFolder folder;
    SoundServer server;
    std::vector<std::unique_ptr<QProcess>> players;
};
