#include "platform/media/ffmpeg.h"

namespace sorvanta::ffmpeg {

void silenceLog()
{
    av_log_set_level(AV_LOG_QUIET);
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
