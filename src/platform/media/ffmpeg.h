#pragma once

#include "platform/error.h"
#include "platform/media/audio_format.h"

#include <QString>

#include <memory>

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
#include <libswresample/swresample.h>
}

namespace sorvanta::ffmpeg {

struct Deleter {
    void operator()(AVCodecContext *context) const { avcodec_free_context(&context); }
    void operator()(AVFrame *frame) const { av_frame_free(&frame); }
    void operator()(AVPacket *packet) const { av_packet_free(&packet); }
    void operator()(SwrContext *context) const { swr_free(&context); }
    void operator()(AVIOContext *context) const
    {
        av_freep(&context->buffer);
        avio_context_free(&context);
    }
};

template<typename Type>
using Pointer = std::unique_ptr<Type, Deleter>;

/// Keeps the libraries from writing to the console and from holding memory that they need no more. To be called
/// before anything else of them; may be repeated.
void prepareLibraries();

AVSampleFormat sampleFormat(AudioFormat::SampleType type);

/// `result` as it came, or an Error of the domain "FFmpeg" with the libraries' own words if it is a failure.
int checked(int result);

/// `pointer` as it came, or the Error of a full memory if it is null.
template<typename Type>
Type *checked(Type *pointer)
{
    if (!pointer)
        checked(AVERROR(ENOMEM));
    return pointer;
}

} // namespace sorvanta::ffmpeg
