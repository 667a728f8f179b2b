#pragma once

#include "audio/playback_controller.h"

#include <QStringList>

#include <functional>
#include <limits>
#include <memory>
#include <optional>
#include <utility>

/// What a test sees and decides of the players that a controller opens.
struct FakePlayers {
    /// Each call of each player, in order: "open /a.wav", "play", "pause", "seek 1.5", "release".
    QStringList calls;
    /// How many were opened.
    int opened = 0;
    /// What opening fails with.
    std::optional<sorvanta::Error> refusal;
    double duration = 10;

    // Of the present player.
    bool isPlaying = false;
    double position = 0;
    sorvanta::AudioPlayer::Events events;
    std::function<void()> seekCompleted;

    sorvanta::PlaybackController::OpenPlayer opener();
    QStringList takeCalls() { return std::exchange(calls, {}); }
    /// The end of the file, as a real player tells it.
    void reachEnd();
};

class FakeAudioPlayer : public sorvanta::AudioPlayer {
public:
    explicit FakeAudioPlayer(FakePlayers &players)
        : m_players(players)
    {
    }
    ~FakeAudioPlayer() override
    {
        m_players.calls << QStringLiteral("release");
        m_players.isPlaying = false;
    }

    void play() override
    {
        m_players.calls << QStringLiteral("play");
        m_players.isPlaying = true;
    }
    void pause() override
    {
        m_players.calls << QStringLiteral("pause");
        m_players.isPlaying = false;
    }
    bool isPlaying() const override { return m_players.isPlaying; }
    double position() const override { return m_players.position; }
    double duration() const override { return m_players.duration; }
    void seek(double seconds, std::function<void()> completed) override
    {
        m_players.calls << QStringLiteral("seek %1").arg(seconds);
        m_players.position = seconds;
        m_players.seekCompleted = std::move(completed);
    }

private:
    FakePlayers &m_players;
};

inline sorvanta::PlaybackController::OpenPlayer FakePlayers::opener()
{
    return [this](const QString &path, sorvanta::AudioPlayer::Events told) {
        calls << QStringLiteral("open ") + path;
        if (refusal)
            throw sorvanta::Error(*refusal);
        ++opened;
        isPlaying = false;
        position = 0;
        events = std::move(told);
        seekCompleted = {};
        return std::make_unique<FakeAudioPlayer>(*this);
    };
}

inline void FakePlayers::reachEnd()
{
    isPlaying = false;
    position = 0;
    const auto ended = events.ended;
    ended();
}
