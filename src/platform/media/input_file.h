#pragma once

#include "platform/file_descriptor.h"
#include "platform/media/ffmpeg.h"

#include <QString>

#include <atomic>

namespace sorvanta {

/// A regular file, open for reading by libavformat. Anything else that a path can name (a folder, a named pipe, a
/// device) is refused at once, without being opened. Stays where it was made: the libraries keep its address.
class InputFile {
public:
    /// @param interrupt once true, each read fails; may be null, else must outlive this object
    /// @throws Error of file_errors.h, or of the domain "FFmpeg" if it is no regular file
    InputFile(const QString &path, const std::atomic<bool> *interrupt);
    InputFile(const InputFile &) = delete;
    InputFile &operator=(const InputFile &) = delete;

    AVIOContext *context() const { return m_context.get(); }
    /// The system's error number of the last read that failed, or 0.
    int systemError() const { return m_systemError; }

private:
    static int read(void *file, uint8_t *buffer, int size);
    static int64_t seek(void *file, int64_t offset, int whence);

    FileDescriptor m_descriptor;
    const std::atomic<bool> *m_interrupt;
    ffmpeg::Pointer<AVIOContext> m_context;
    int m_systemError = 0;
};

} // namespace sorvanta
