#pragma once

#include "platform/media/audio_file_settings.h"

#include <QString>

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>

namespace sorvanta {

/// Writes one audio file. All operations but status() and errorDescription() belong to one thread at a time.
class AudioWriter {
public:
    enum class Status { Writing, Completed, Failed };

    /// Whether such a file is possible at all.
    static bool canWrite(const AudioFileSettings &settings);

    /// Makes the file at `path`, where nothing may lie, private to the user, and writes its beginning.
    /// @throws Error of the domain "NSCocoaErrorDomain" if the system does not let it, else of the domain "FFmpeg" if
    ///         such a file is not possible; nothing is left at `path` then
    AudioWriter(const QString &path, const AudioFileSettings &settings);
    /// Leaves what was written so far, whole only after finish().
    ~AudioWriter();
    AudioWriter(const AudioWriter &) = delete;
    AudioWriter &operator=(const AudioWriter &) = delete;

    /// Adds whole interleaved frames of the settings' inputFormat(). After a failure this does nothing.
    /// @return whether status() is still Writing
    bool append(std::span<const std::byte> frames);

    /// The same as append() with so many silent frames; an hour of them takes a fraction of a second.
    bool appendSilence(std::int64_t frames);

    /// Ends the file and closes it. @return whether status() is Completed
    bool finish();

    /// May be asked from any thread.
    Status status() const;
    /// A sentence for the user; empty unless status() is Failed. May be asked from any thread.
    QString errorDescription() const;

private:
    class Implementation;
    std::unique_ptr<Implementation> m_implementation;
};

} // namespace sorvanta
