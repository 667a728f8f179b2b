#include "platform/media/input_format.h"

#include <QFile>

namespace sorvanta {

namespace {

int refuseOtherFiles(AVFormatContext *, AVIOContext **, const char *, int, AVDictionary **)
{
    return AVERROR(EACCES);
}

int isRaised(void *flag)
{
    const auto *interrupt = static_cast<const std::atomic<bool> *>(flag);
    return interrupt && *interrupt;
}

} // namespace

InputFormat openInputFormat(InputFile &file, const QString &path, const std::atomic<bool> *interrupt)
{
    AVFormatContext *format = ffmpeg::checked(avformat_alloc_context());
    format->pb = file.context();
    // A playlist could otherwise make the libraries open other files, or speak to a server.
    format->io_open = refuseOtherFiles;
    format->protocol_whitelist = av_strdup("none");
    format->interrupt_callback = {isRaised, const_cast<std::atomic<bool> *>(interrupt)};
    // Frees the context if it fails.
    ffmpeg::checked(avformat_open_input(&format, QFile::encodeName(path).constData(), nullptr, nullptr));
    InputFormat opened(format);
    ffmpeg::checked(avformat_find_stream_info(format, nullptr));
    return opened;
}

} // namespace sorvanta
