#pragma once

#include "platform/media/audio_format.h"

#include <QString>

#include <atomic>
#include <cstddef>
#include <memory>
#include <span>

namespace sorvanta {

/// Reads the sound of an audio file or a video: the first audio track, decoded and brought to a wanted format. Memory
/// does not grow with the length. Not for use from two threads at once, but it may be handed from one to another.
class AudioReader {
public:
    enum class Status { Reading, Completed, Failed };

    /// Opens the regular file at `path` and finds its first audio track. Nothing else is opened or waited for: a
    /// folder, a named pipe, a device or a file that refers to others is refused.
    /// @param interrupt once true, the present and every later read ends the reading as failed; may be null, else
    ///        must outlive the reader
    /// @throws Error of the domain "NSCocoaErrorDomain" if the system does not open or read the file, else of the
    ///         domain "FFmpeg" if it is no media file or has no audio track
    explicit AudioReader(const QString &path, const std::atomic<bool> *interrupt = nullptr);
    ~AudioReader();
    AudioReader(const AudioReader &) = delete;
    AudioReader &operator=(const AudioReader &) = delete;

    /// What the file says of the track.
    int sourceSampleRate() const;
    int sourceChannels() const;

    /// To be called once, before read(). @throws Error if the track cannot be decoded or brought to `format`
    void start(const AudioFormat &format);

    /// The next whole frames, interleaved, valid until the next call; empty at the end, which status() then explains.
    /// Sound begins at the file's time zero; what an encoder put in front and behind is taken off.
    std::span<const std::byte> read();

    /// Completed at the end of the track, also of a cut or damaged one of which some could be decoded. Failed if
    /// nothing could, if the system could not read on, or after an interruption.
    Status status() const;
    /// A sentence for the user; empty unless status() is Failed.
    QString errorDescription() const;

private:
    class Implementation;
    std::unique_ptr<Implementation> m_implementation;
};

} // namespace sorvanta
