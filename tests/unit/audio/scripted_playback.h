#pragma once

#include "audio/playback_controller.h"
#include "support/media_files.h"
#include "unit/audio/fake_audio_player.h"

#include <gtest/gtest.h>

#include <QSignalSpy>
#include <QTimer>

#include <limits>
#include <optional>

inline constexpr double unknown = std::numeric_limits<double>::quiet_NaN();

/// One screen's playback of a file that is there, by a player that does what the test says.
class ScriptedPlayback {
public:
    explicit ScriptedPlayback(const sorvanta::PlaybackSettings &settings)
        : file(folder.write(u"a.wav"_qs, "RIFF"))
        , m_settings(settings)
    {
    }

    /// Waits for the next tick.
    void tick()
    {
        QSignalSpy ticks(&ticker(), &QTimer::timeout);
        ASSERT_TRUE(ticks.wait(20000));
    }
    QTimer &ticker() { return *controller.findChild<QTimer *>(); }

    MediaFolder folder;
    std::optional<QString> file;
    FakePlayers players;
    QString error;
    QString status;
    QStringList marks; ///< "mark 1.5", "clear"

private:
    sorvanta::PlaybackSettings m_settings;

public:
    sorvanta::PlaybackController controller{
        m_settings,
        {
            .file = [this] { return file; },
            .setError = [this](const QString &text) { error = text; },
            .setStatus = [this](const QString &text) { status = text; },
            .updateActiveSegment = [this](double time) { marks << QStringLiteral("mark %1").arg(time); },
            .clearActiveSegment = [this] { marks << QStringLiteral("clear"); },
        },
        players.opener()};
};

inline const sorvanta::Error unreadable(u"libmpv"_qs, -17, u"unrecognized file format"_qs);
inline const sorvanta::Error soundless(u"libmpv"_qs, -14, u"audio output initialization failed"_qs);

/// The tests of one screen's playback.
class PlaybackTest : public testing::Test {
protected:
    explicit PlaybackTest(const sorvanta::PlaybackSettings &settings)
        : playback(settings)
    {
    }

    ScriptedPlayback playback;
    sorvanta::PlaybackController &controller = playback.controller;
    FakePlayers &players = playback.players;
};
