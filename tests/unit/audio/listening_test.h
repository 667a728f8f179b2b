#pragma once

#include "platform/media/audio_player.h"
#include "support/media_files.h"
#include "support/printing.h"
#include "support/sound_server.h"
#include "support/waiting.h"

#include <gtest/gtest.h>

#include <QTest>

#include <cmath>
#include <memory>
#include <optional>

/// A private sound server, and a player whose events are kept.
class ListeningTest : public testing::Test {
protected:
    /// Noise that nowhere sounds the same twice.
    QString makeNoise(const QString &name, double seconds, const QString &encoding = QStringLiteral("-vn")) const
    {
        return folder.make(name, QStringLiteral("-f lavfi -i anoisesrc=d=%1:c=white:seed=7:r=48000:a=0.5,"
                                                "lowpass=f=2500 -ac 1 %2")
                                     .arg(seconds)
                                     .arg(encoding));
    }

    /// Waits until the file is open, however slow the machine is.
    std::unique_ptr<sorvanta::AudioPlayer> open(const QString &path)
    {
        auto player = sorvanta::openAudioPlayer(
            path, {.ended = [this] { ++ends; },
                   .failedToOpen = [this](const sorvanta::Error &error) { openingFailure = error; },
                   .failed = [this](const sorvanta::Error &error) { failure = error; }});
        waitFor([this, &player] { return openingFailure || std::isfinite(player->duration()); });
        return player;
    }

    template<typename Condition>
    static void waitFor(Condition condition)
    {
        ASSERT_TRUE(waitUntil(condition));
    }

    /// Seeks and waits until the player stands there.
    static void seekAndWait(sorvanta::AudioPlayer &player, double seconds)
    {
        bool hasCompleted = false;
        player.seek(seconds, [&hasCompleted] { hasCompleted = true; });
        waitFor([&hasCompleted] { return hasCompleted; });
    }

    /// Waits until the recording has this many stretches of sound, the last of them at least this long.
    static void hearSpans(SoundRecording &recording, std::size_t count, double seconds)
    {
        waitFor([&] {
            const auto spans = soundSpans(recording.samples());
            return spans.size() >= count && spans.back().length() >= seconds;
        });
    }

    MediaFolder folder;
    SoundServer server;
    int ends = 0;
    std::optional<sorvanta::Error> openingFailure;
    std::optional<sorvanta::Error> failure;
};
