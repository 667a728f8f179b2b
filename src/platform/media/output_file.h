#pragma once

#include "platform/file_descriptor.h"
#include "platform/media/ffmpeg.h"

#include <QString>

namespace sorvanta {

/// A new file, private to the user, open for writing by libavformat. Stays where it was made: the libraries keep its
/// address.
class OutputFile {
public:
    /// Makes the file. @throws Error of file_errors.h, also if something lies at `path` already
    explicit OutputFile(const QString &path);
    OutputFile(const OutputFile &) = delete;
    OutputFile &operator=(const OutputFile &) = delete;

    AVIOContext *context() const { return m_context.get(); }
    /// Makes sure that what was written outlasts a loss of power.
    void flushToDisk();
    /// Closes the file; what was not written yet is lost.
    void close();
    /// The system's error number of the first write, flush or closing that failed, or 0.
    int systemError() const { return m_systemError; }

private:
    static int write(void *file, uint8_t *buffer, int size);
    static int64_t seek(void *file, int64_t offset, int whence);

    FileDescriptor m_descriptor;
    ffmpeg::Pointer<AVIOContext> m_context;
    int m_systemError = 0;
};

} // namespace sorvanta
