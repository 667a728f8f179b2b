#pragma once

#include "platform/file_descriptor.h"
#include "platform/media/audio_format.h"

#include <QString>

#include <span>

namespace sorvanta {

/// A new WAV file of 16 bit samples that is whole after every write: whatever ends the process, the file plays to the
/// last samples that were appended. One that grows over four gigabytes becomes an RF64 file. One thread at a time.
class WavFile {
public:
    /// Makes the file at `path`, where nothing may lie, private to the user. `format` is of the type Int16.
    /// @throws Error of file_errors.h; nothing is left at `path` then
    WavFile(QString path, const AudioFormat &format);

    /// Adds whole frames; nothing after a failure.
    /// @throws Error of file_errors.h; the file keeps what was written before
    void append(std::span<const std::byte> frames);

    qint64 frameCount() const { return m_dataSize / m_format.bytesPerFrame(); }

    /// Closes the file. @throws Error of file_errors.h
    void close();

private:
    void writeHeader();

    QString m_path;
    AudioFormat m_format;
    qint64 m_dataSize = 0;
    bool m_hasFailed = false;
    FileDescriptor m_file;
};

} // namespace sorvanta
