#pragma once

#include "platform/error.h"

#include <QString>

#include <functional>
#include <memory>

namespace sorvanta {

/// Plays the sound of one audio file or video. Main thread only, and no call waits for the sound server.
class AudioPlayer {
public:
    /// What a player tells, on the main thread and never from within a call of its own. The player may be destroyed in
    /// any of these. Each may be empty.
    struct Events {
        /// The end of the file was heard. The player is paused at the beginning.
        std::function<void()> ended = {};
        /// The file that seemed to open at first does not; see openAudioPlayer(). The player is of no more use.
        std::function<void(const Error &)> failedToOpen = {};
        /// The file is open, but cannot be heard: there is no sound server, or it went away and stayed away. The
        /// player is of no more use, but knows its position.
        std::function<void(const Error &)> failed = {};
        /// duration() became known after openAudioPlayer() had returned.
        std::function<void()> durationKnown = {};
    };

    virtual ~AudioPlayer() = default;

    virtual void play() = 0;
    /// Falls silent and keeps the position.
    virtual void pause() = 0;
    /// Whether it is to play: from play() to pause(), the end of the file or a failure.
    virtual bool isPlaying() const = 0;

    /// Seconds from the beginning of the file, as last told by the machinery, which tells it some 20 times a second
    /// while it plays. During a seek it is the wanted position.
    virtual double position() const = 0;
    /// Seconds; NaN as long as it is not known.
    virtual double duration() const = 0;

    /// Goes to a position, exact to the sample as far as the file's format lets one know it; playing or not stays
    /// as it was.
    /// @param completed called when the sound stands there; not if another seek or a failure comes first. May be empty.
    virtual void seek(double seconds, std::function<void()> completed = {}) = 0;
};

/// A paused player at the beginning of the file at `path`: a regular file; nothing else is opened, nor what a file
/// refers to. The call waits for the file for at most a quarter of a second, which is ten times what a local one takes.
/// A slower file counts as opened: it plays as soon as it can, and its failure comes as an event.
/// @throws Error of the domain "libmpv" if the file cannot be opened or has no sound; its code is libmpv's, its
///         description libmpv's own words
std::unique_ptr<AudioPlayer> openAudioPlayer(const QString &path, AudioPlayer::Events events);

} // namespace sorvanta
