#include "platform/media/output_file.h"

#include "platform/file_errors.h"

#include <cerrno>

#include <fcntl.h>

namespace sorvanta {

namespace {

constexpr int bufferSize = 256 * 1024;

FileDescriptor createFile(const QString &path)
{
    FileDescriptor descriptor = opened(encodedPath(path), O_RDWR | O_CREAT | O_EXCL, privateFileMode);
    if (!descriptor.isOpen())
        throw writingError(path, errno);
    return descriptor;
}

} // namespace

OutputFile::OutputFile(const QString &path)
    : m_descriptor(createFile(path))
{
    auto *buffer = static_cast<unsigned char *>(ffmpeg::checked(av_malloc(bufferSize)));
    m_context.reset(avio_alloc_context(buffer, bufferSize, 1, this, nullptr, write, seek));
    if (!m_context) {
        av_free(buffer);
        ffmpeg::checked(AVERROR(ENOMEM));
    }
}

void OutputFile::flushToDisk()
{
    if (::fsync(m_descriptor.number()) != 0 && m_systemError == 0)
        m_systemError = errno;
}

void OutputFile::close()
{
    if (m_descriptor.isOpen() && !m_descriptor.close() && m_systemError == 0)
        m_systemError = errno;
}

int OutputFile::write(void *file, uint8_t *buffer, int size)
{
    auto *self = static_cast<OutputFile *>(file);
    int written = 0;
    while (written < size) {
        const ssize_t count =
            ::write(self->m_descriptor.number(), buffer + written, static_cast<std::size_t>(size - written));
        if (count < 0 && errno == EINTR)
            continue;
        if (count < 0) {
            if (self->m_systemError == 0)
                self->m_systemError = errno;
            return AVERROR(errno);
        }
        written += static_cast<int>(count);
    }
    return size;
}

int64_t OutputFile::seek(void *file, int64_t offset, int whence)
{
    if (whence & AVSEEK_SIZE)
        return AVERROR(ENOSYS);
    const off_t position =
        ::lseek(static_cast<OutputFile *>(file)->m_descriptor.number(), offset, whence & ~AVSEEK_FORCE);
    return position >= 0 ? position : AVERROR(errno);
}

} // namespace sorvanta
