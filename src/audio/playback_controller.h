#pragma once

#include "audio/playback_settings.h"
#include "platform/media/audio_player.h"

#include <QObject>
#include <QObjectBindableProperty>
#include <QString>
#include <QTimer>

#include <functional>
#include <memory>
#include <optional>

namespace sorvanta {

/// Plays back the one file of a screen, and keeps the fields that the screen and its viewer show of it. Main thread
/// only. There is no player, or it plays, or it is paused.
class PlaybackController : public QObject {
    Q_OBJECT
    Q_PROPERTY(double playbackTime READ playbackTime NOTIFY playbackTimeChanged)
    Q_PROPERTY(double sliderEnd READ sliderEnd NOTIFY playbackDurationChanged)
    Q_PROPERTY(bool isScrubbing READ isScrubbingAudio WRITE setScrubbingAudio NOTIFY isScrubbingAudioChanged)

public:
    /// What the controller asks and tells its screen. Only `file` is needed.
    struct Hooks {
        std::function<std::optional<QString>()> file; ///< the path of what the screen plays now, or none
        std::function<void(const QString &)> setError = {};
        std::function<void(const QString &)> setStatus = {};
        std::function<void(double)> updateActiveSegment = {}; ///< with the time in seconds
        std::function<void()> clearActiveSegment = {};
    };
    using OpenPlayer = std::function<std::unique_ptr<AudioPlayer>(const QString &, AudioPlayer::Events)>;

    PlaybackController(PlaybackSettings settings, Hooks hooks, OpenPlayer openPlayer = openAudioPlayer,
                       QObject *parent = nullptr);
    /// Falls silent at once.
    ~PlaybackController() override;

    /// Plays the screen's file, or pauses it.
    void togglePlayback();

    /// Moves the position, to no less than 0 and no more than the duration.
    Q_INVOKABLE void seekPlayback(double seconds);

    /// Releases the player.
    /// @param reset the position goes to 0 and no segment is marked; else the position stays where it was. Where
    ///        the end of the file makes the screen forget it, so does a stop, whatever `reset` says
    void stopPlayback(bool reset = true);

    /// Reads the duration of the screen's file anew, on a worker; 0 if there is no file, or its duration is unknown.
    void refreshPlaybackState();

    /// The slider is held: the player pauses, and seekPlayback() moves the position alone.
    void beginScrubbing();
    /// The slider is let go: the player goes to the position, and plays on if it played before.
    void endScrubbing();
    void setScrubbingAudio(bool isScrubbing) { isScrubbing ? beginScrubbing() : endScrubbing(); }

    /// Whether playback runs; on the meeting screen whether there is a player, also a paused one.
    bool isPlaying() const { return m_isPlaying; }
    /// On the meeting screen, whether the player is paused; false elsewhere.
    bool isPlaybackPaused() const { return m_isPlaybackPaused; }
    /// Whether playback runs, on every screen.
    bool isRunning() const { return m_isRunning; }
    /// The position, in seconds.
    double playbackTime() const { return m_playbackTime; }
    /// In seconds; 0 as long as it is not known.
    double playbackDuration() const { return m_playbackDuration; }
    /// Where the history's slider ends; it begins at 0.
    double sliderEnd() const;

    bool isScrubbingAudio() const { return m_isScrubbingAudio; }
    bool resumeAfterScrub() const { return m_resumeAfterScrub; }
    /// What the player holds; none without a player.
    const std::optional<QString> &currentAudioPath() const { return m_currentAudioPath; }
    bool hasPlayer() const { return m_player != nullptr; }
    /// Whether the position is being read at intervals.
    bool isTicking() const { return m_timer.isActive(); }

    Q_SIGNAL void isPlayingChanged();
    Q_SIGNAL void isPlaybackPausedChanged();
    Q_SIGNAL void isRunningChanged();
    Q_SIGNAL void playbackTimeChanged();
    Q_SIGNAL void playbackDurationChanged();
    Q_SIGNAL void isScrubbingAudioChanged();

private:
    std::optional<QString> fileToPlay() const;
    void sayThatThereIsNoFile() const;
    void sayError(const QString &text) const;
    /// Sees to it that there is a player. @return whether there is one
    bool prepare(const std::optional<QString> &file, bool isOtherRefused);
    bool openPlayer(const QString &path);
    void start();
    void pause();
    void movePlayer(double target);
    void tick();
    /// Takes the player's position, if it tells one. @return whether it did
    bool readPosition();
    void readDuration();
    void markSegment() const;
    void setRunning(bool isRunning);
    void handleEnd();
    void handleFailure(const Error &failure, bool isReported);
    double seekTarget(double seconds) const;

    const PlaybackSettings m_settings;
    const Hooks m_hooks;
    const OpenPlayer m_openPlayer;
    std::unique_ptr<AudioPlayer> m_player;
    std::optional<QString> m_currentAudioPath;
    QTimer m_timer{this};
    bool m_resumeAfterScrub = false;
    std::shared_ptr<int> m_refreshes =
        std::make_shared<int>(0); // one more with each reading of a duration; gone with this object

    Q_OBJECT_BINDABLE_PROPERTY(PlaybackController, bool, m_isPlaying, &PlaybackController::isPlayingChanged)
    Q_OBJECT_BINDABLE_PROPERTY(PlaybackController, bool, m_isPlaybackPaused,
                               &PlaybackController::isPlaybackPausedChanged)
    Q_OBJECT_BINDABLE_PROPERTY(PlaybackController, bool, m_isRunning, &PlaybackController::isRunningChanged)
    Q_OBJECT_BINDABLE_PROPERTY(PlaybackController, double, m_playbackTime, &PlaybackController::playbackTimeChanged)
    Q_OBJECT_BINDABLE_PROPERTY(PlaybackController, double, m_playbackDuration,
                               &PlaybackController::playbackDurationChanged)
    Q_OBJECT_BINDABLE_PROPERTY(PlaybackController, bool, m_isScrubbingAudio,
                               &PlaybackController::isScrubbingAudioChanged)
};

} // namespace sorvanta
