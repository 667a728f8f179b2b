#pragma once

#include "platform/media/ffmpeg.h"

#include <memory>

namespace sorvanta {

struct FreeOutputFormat {
    void operator()(AVFormatContext *format) const { avformat_free_context(format); }
};
/// Does not own the file that it writes.
using OutputFormat = std::unique_ptr<AVFormatContext, FreeOutputFormat>;

/// A file to be written, without tracks yet.
/// @param name the muxer's, as FFmpeg lists them; no note of the library and its version comes into the file
/// @throws Error of the domain "FFmpeg"
inline OutputFormat newOutputFormat(const char *name)
{
    AVFormatContext *format = nullptr;
    ffmpeg::checked(avformat_alloc_output_context2(&format, nullptr, name, nullptr));
    format->flags |= AVFMT_FLAG_BITEXACT;
    return OutputFormat(format);
}

} // namespace sorvanta
