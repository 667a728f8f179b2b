#include "platform/media/media_duration.h"

#include "platform/media/input_format.h"

namespace sorvanta {

double mediaDuration(const QString &path)
{
    try {
        ffmpeg::prepareLibraries();
        InputFile file(path, nullptr);
        const InputFormat format = openInputFormat(file, path, nullptr);
        const bool isKnown = format->duration != AV_NOPTS_VALUE && format->duration > 0;
        return isKnown ? static_cast<double>(format->duration) / AV_TIME_BASE : 0;
    } catch (const Error &) {
        return 0;
    }
}

} // namespace sorvanta
