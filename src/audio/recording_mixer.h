#pragma once

#include "platform/media/audio_file_settings.h"

#include <QString>

#include <chrono>

namespace sorvanta {

/// Makes one file of the two of a meeting: what the machine played and what the microphone heard.
class RecordingMixer {
public:
    struct Settings {
        AudioFileSettings file = {
            AudioFileSettings::Container::M4a, 44100, 2, 128000, AudioFileSettings::AacSearch::FastInParallel, false};
        std::chrono::milliseconds limit = std::chrono::seconds(30);
    };

    RecordingMixer() = default;
    explicit RecordingMixer(const Settings &settings)
        : m_settings(settings)
    {
    }

    /// Lays the microphone's sound over the system's from time zero, both at full level. The sum is not scaled; what is
    /// beyond full scale is cut off. It lasts as long as the system's sound: a longer microphone's is cut,
    /// behind a shorter one the system's goes on alone. All three are paths; nothing may lie at the last.
    ///
    /// Blocks the caller for at most Settings::limit; then the mix has failed, although it goes on with nobody to read
    /// it. The two files stay as they are, and so does what was written of a mix that failed. Any thread.
    /// @return whether the mix is complete
    bool mixRecordings(const QString &systemURL, const QString &micURL, const QString &destinationURL) const;

private:
    Settings m_settings;
};

} // namespace sorvanta
