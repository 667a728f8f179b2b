#pragma once

#include "platform/media/input_file.h"

namespace sorvanta {

struct CloseInputFormat {
    void operator()(AVFormatContext *format) const { avformat_close_input(&format); }
};
using InputFormat = std::unique_ptr<AVFormatContext, CloseInputFormat>;

/// Finds out what a file holds. Only this file is ever opened, whatever it refers to.
/// @param file read by the result, which it must outlive
/// @param path of the same file; its name helps to tell the format
/// @param interrupt as the file's own
/// @throws Error of the domain "FFmpeg" if it is no media file
InputFormat openInputFormat(InputFile &file, const QString &path, const std::atomic<bool> *interrupt);

} // namespace sorvanta
