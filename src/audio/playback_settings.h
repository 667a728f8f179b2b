#pragma once

#include <QString>

#include <chrono>

namespace sorvanta {

/// What one screen's playback does differently from the others'.
struct PlaybackSettings {
    enum class AtEnd {
        KeepPlayer, ///< rewound, for the next press
        ReleasePlayer, ///< the position goes to 0, the duration stays
        ForgetFile, ///< the player is released; position and duration go to 0
    };
    enum class Seek {
        OpensPlayer, ///< where there is none, one is made that is paused
        NeedsPlayer, ///< without a player nothing happens
        MovesSlider, ///< the position moves, and a player with it unless the slider is held
    };

    std::chrono::milliseconds tick{200};
    bool readsDurationOnTick = false;
    bool readsDurationOnUse = false; ///< also of a player that was there already, on each press and seek
    bool readsPositionOnPause = false;
    bool marksActiveSegment = false; ///< on every tick, pause and seek
    AtEnd atEnd = AtEnd::ForgetFile;

    Seek seek = Seek::NeedsPlayer;
    bool waitsForSeek = false; ///< the position follows when the seek has completed, not at once
    bool resumesPosition = false; ///< a new player begins where the last one stood, not at 0

    bool needsFileToPause = true; ///< without a file a press does nothing, even while something plays
    bool fileMustExist = false; ///< a file that is not on the disk counts as none
    bool opensOtherFile = false; ///< a press opens the file if the player holds another; else the player goes on

    bool isPlayingWhilePaused = false; ///< `isPlaying` tells that there is a player; `isPlaybackPaused` the rest

    QString noFileError = {}; ///< empty: nothing is said
    QString failureError = {}; ///< put before the description of a failure
    bool reportsFailureToOpen = true;
    QString playStatus = {}; ///< what is said when playing begins; empty: nothing
};

// What each screen chooses.
PlaybackSettings filePlayback();
PlaybackSettings microphonePlayback();
PlaybackSettings meetingPlayback();
PlaybackSettings historyPlayback();

} // namespace sorvanta
