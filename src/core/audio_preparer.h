#pragma once

#include "core/temporary_files.h"
#include "platform/media/audio_file_settings.h"

#include <QString>

#include <chrono>
#include <functional>
#include <optional>

namespace sorvanta {

/// Makes a file ready for the engine: decides whether it goes there as it stands, and else writes its sound out to a
/// temporary file. One belongs to each screen. The conversions block the worker thread that calls them; none may run
/// on the main thread.
class AudioPreparer {
public:
    struct Settings {
        /// What goes to the engine: 16 kHz, mono, 16 bits, signed, little-endian.
        AudioFileSettings wavSettings = {AudioFileSettings::Container::Wav, 16000, 1, 0};
        std::chrono::milliseconds wavLimit = std::chrono::seconds(120);
        std::chrono::milliseconds meetingLimit = std::chrono::seconds(60);
        std::chrono::milliseconds exportLimit = std::chrono::seconds(120);
        /// The name of the next exported file, without its extension; by default "microphone_", the time and six
        /// characters that make it unlike others.
        std::function<QString()> newExportName;
    };

    /// @param files the screen's own; each file that is made is recorded there, through a post to the main thread
    ///        that goes out before the conversion returns; if the application quits before, the file is removed
    AudioPreparer(TemporaryFiles files, Settings settings);
    explicit AudioPreparer(TemporaryFiles files);

    /// Whether the file at `path` has to be converted: by its extension alone, unless that is one of audio.
    static bool needsConversion(const QString &path);

    /// Writes the first audio track of `path` to a new WAV file (16 kHz, mono, 16 bits). The samples are copied by a
    /// thread named `queueLabel`. @return the new file, or none; nothing is left of a conversion that failed
    /// @param recorded called on the main thread right after the file has been recorded; may be empty
    std::optional<QString> convertToWav(const QString &path, const QString &queueLabel,
                                        const std::function<void()> &recorded = {}) const;

    /// The same for the meeting screen, where only a ".wav" goes as it stands, and is what is returned then.
    /// @throws Error of the domain "MeetingRecorder", codes 201 to 204, or that of the system; a partly written file
    ///         stays
    QString convertForMeeting(const QString &path) const;

    /// Writes the first audio track of `path` to a new M4A file. @return the new file, or none; a partly written file
    /// stays
    std::optional<QString> exportToM4A(const QString &path) const;

    /// Removes the files recorded. On another thread than the main one the removal is posted, so that it comes before
    /// the record of each later conversion.
    void removeTemporaries() const;

private:
    void record(const QString &path, const std::function<void()> &recorded = {}) const;

    TemporaryFiles m_files;
    Settings m_settings;
};

} // namespace sorvanta
