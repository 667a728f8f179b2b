#pragma once

#include "core/audio_preparer.h"

#include <QString>

#include <functional>
#include <optional>

namespace sorvanta {

/// How one screen prepares a file, and what it tells the user meanwhile. In each text "<name>" stands for the file's
/// last path component; an empty text is not shown.
struct PreparationSettings {
    enum class Conversion { Wav, M4a, Meeting };

    Conversion conversion = Conversion::Wav;
    QString queueLabel; ///< for Conversion::Wav
    bool removesTemporariesFirst = false;
    bool refreshesPlayback = false; ///< when the file goes as it stands, or its WAV file has been recorded

    QString asItStandsStatus;
    QString convertingStatus;
    QString convertedStatus;
    QString failedStatus;
    QString failedError;

    // The last post of a preparation that gave no file.
    QString lastError; ///< empty: what the conversion's own error says
    QString lastStatus;
    bool keepsEarlierMessages = false; ///< the last texts go only where none stand; else they replace what stands
    bool endsRun = false; ///< the run that was begun before the preparation is over
    bool removesTemporariesOnFailure = false;
};

// What each screen chooses.
PreparationSettings filePreparation();
PreparationSettings batchPreparation();
PreparationSettings microphonePreparation();
PreparationSettings meetingPreparation();

/// The fields of a screen as a preparation sees them. Each function is called on the main thread, through
/// postToMain(), in the order of the events, perhaps after prepareAudio() has returned.
struct PreparationReport {
    std::function<QString()> status;
    std::function<void(const QString &)> setStatus;
    std::function<std::optional<QString>()> error;
    std::function<void(const QString &)> setError;
    std::function<void()> endRun; ///< where a run was begun: it is over, and whatever of it is active is let go
    std::function<void()> refreshPlaybackState; ///< where there is playback
};

/// Prepares the file at `path` for the engine. Blocks the calling worker thread; not for the main thread.
/// @return the path that the engine is to be given, or none after the failure has been reported
std::optional<QString> prepareAudio(const QString &path, const PreparationSettings &settings,
                                    const AudioPreparer &preparer, const PreparationReport &report);

} // namespace sorvanta
