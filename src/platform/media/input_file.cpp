#include "platform/media/input_file.h"

#include "platform/file_errors.h"

#include <cerrno>

#include <fcntl.h>
#include <sys/stat.h>

namespace sorvanta {

namespace {

constexpr int bufferSize = 256 * 1024;

void requireRegularFile(int result, const struct stat &status, const QString &path)
{
    if (result != 0)
        throw readingError(path, errno);
    if (!S_ISREG(status.st_mode))
        ffmpeg::checked(AVERROR_INVALIDDATA);
}

/// The file is looked at before it is opened, as opening alone can act on a device or wake the writer of a pipe, and
/// again afterwards, as it may have been replaced in between.
FileDescriptor openRegularFile(const QString &path)
{
    const QByteArray name = encodedPath(path);
    struct stat status = {};
    requireRegularFile(::stat(name.constData(), &status), status, path);
    FileDescriptor descriptor = opened(name, O_RDONLY | O_NONBLOCK | O_NOCTTY);
    if (!descriptor.isOpen())
        throw readingError(path, errno);
    requireRegularFile(::fstat(descriptor.number(), &status), status, path);
    ::posix_fadvise(descriptor.number(), 0, 0, POSIX_FADV_SEQUENTIAL);
    return descriptor;
}

} // namespace

InputFile::InputFile(const QString &path, const std::atomic<bool> *interrupt)
    : m_descriptor(openRegularFile(path))
    , m_interrupt(interrupt)
{
    auto *buffer = static_cast<unsigned char *>(ffmpeg::checked(av_malloc(bufferSize)));
    m_context.reset(avio_alloc_context(buffer, bufferSize, 0, this, read, nullptr, seek));
    if (!m_context) {
        av_free(buffer);
        ffmpeg::checked(AVERROR(ENOMEM));
    }
}

int InputFile::read(void *file, uint8_t *buffer, int size)
{
    auto *self = static_cast<InputFile *>(file);
    if (self->m_interrupt && *self->m_interrupt)
        return AVERROR_EXIT;
    ssize_t count = 0;
    do {
        count = ::read(self->m_descriptor.number(), buffer, static_cast<std::size_t>(size));
    } while (count < 0 && errno == EINTR);
    if (count > 0)
        return static_cast<int>(count);
    if (count == 0)
        return AVERROR_EOF;
    self->m_systemError = errno;
    return AVERROR(errno);
}

int64_t InputFile::seek(void *file, int64_t offset, int whence)
{
    const int descriptor = static_cast<InputFile *>(file)->m_descriptor.number();
    if (whence & AVSEEK_SIZE) {
        struct stat status = {};
        return ::fstat(descriptor, &status) == 0 ? status.st_size : AVERROR(errno);
    }
    const off_t position = ::lseek(descriptor, offset, whence & ~AVSEEK_FORCE);
    return position >= 0 ? position : AVERROR(errno);
}

} // namespace sorvanta
