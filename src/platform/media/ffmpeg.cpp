#include "platform/media/ffmpeg.h"

#if __has_include(<malloc.h>)
#include <malloc.h>
#endif

namespace sorvanta::ffmpeg {

void prepareLibraries()
{
    av_log_set_level(AV_LOG_QUIET);
#ifdef M_MMAP_THRESHOLD
    // The table of contents of a long movie grows block by block. Large blocks that live outside of the heap can be
    // moved and given back, where the heap would keep the room of each earlier size.
    constexpr int largeBlock = 1 << 20;
    mallopt(M_MMAP_THRESHOLD, largeBlock);
#endif
}

AVSampleFormat sampleFormat(AudioFormat::SampleType type)
{
    return type == AudioFormat::SampleType::Int16 ? AV_SAMPLE_FMT_S16 : AV_SAMPLE_FMT_FLT;
}

int checked(int result)
{
    if (result >= 0)
        return result;
    char text[AV_ERROR_MAX_STRING_SIZE] = {};
    av_strerror(result, text, sizeof text);
    throw Error(u"FFmpeg"_qs, result, QString::fromUtf8(text));
}

} // namespace sorvanta::ffmpeg
