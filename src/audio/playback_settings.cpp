#include "audio/playback_settings.h"

namespace sorvanta {

namespace {

const QString cannotPlay = QStringLiteral("Unable to play audio: ");

} // namespace

PlaybackSettings filePlayback()
{
    return {
        .tick = std::chrono::milliseconds(200),
        .readsPositionOnPause = true,
        .marksActiveSegment = true,
        .atEnd = PlaybackSettings::AtEnd::ReleasePlayer,
        .seek = PlaybackSettings::Seek::OpensPlayer,
        .waitsForSeek = true,
        .resumesPosition = true,
        .noFileError = QStringLiteral("No audio/video file to play."),
        .failureError = cannotPlay,
        .reportsFailureToOpen = false,
    };
}

PlaybackSettings microphonePlayback()
{
    return {
        .tick = std::chrono::milliseconds(200),
        .readsDurationOnUse = true,
        .readsPositionOnPause = true,
        .atEnd = PlaybackSettings::AtEnd::KeepPlayer,
        .seek = PlaybackSettings::Seek::OpensPlayer,
        .failureError = cannotPlay,
        .playStatus = QStringLiteral("Playing recording…"),
    };
}

PlaybackSettings meetingPlayback()
{
    return {
        .tick = std::chrono::milliseconds(200),
        .readsDurationOnTick = true,
        .atEnd = PlaybackSettings::AtEnd::ForgetFile,
        .seek = PlaybackSettings::Seek::NeedsPlayer,
        .needsFileToPause = false,
        .isPlayingWhilePaused = true,
        .failureError = cannotPlay,
    };
}

PlaybackSettings historyPlayback()
{
    return {
        .tick = std::chrono::milliseconds(150),
        .readsDurationOnTick = true,
        .atEnd = PlaybackSettings::AtEnd::ForgetFile,
        .seek = PlaybackSettings::Seek::MovesSlider,
        .fileMustExist = true,
        .opensOtherFile = true,
        .failureError = cannotPlay,
    };
}

} // namespace sorvanta
