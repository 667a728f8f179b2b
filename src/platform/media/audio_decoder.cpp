#include "platform/media/audio_decoder.h"

#include "platform/file_errors.h"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace sorvanta {

namespace {

/// As many failures one behind the other are taken for the end of what can be read.
constexpr int mostDamagedReads = 256;
/// Smaller holes inside a track come from timestamps that were rounded, not from missing sound.
constexpr double smallestHole = 0.1;
constexpr double smallestDelay = 0.001;
constexpr int silenceBlock = 4096;

/// Other rates are damage, and would make gigabytes of a small file.
constexpr int lowestSampleRate = 1'000;
constexpr int highestSampleRate = 12'288'000;
/// Silence that is longer, in seconds, is damage too.
constexpr double longestHole = 600;
constexpr double mostSilence = 3600;

bool isNamed(const AVFormatContext &format, const char *name)
{
    return std::strstr(format.iformat->name, name) != nullptr;
}

bool isUsable(int sampleRate)
{
    return sampleRate >= lowestSampleRate && sampleRate <= highestSampleRate;
}

bool mayJump(const AVFormatContext &format)
{
    return format.iformat->flags & AVFMT_TS_DISCONT;
}

/// Where the file's own clock begins, in seconds. QuickTime files have a time line that starts at zero; elsewhere it
/// starts with the first track.
double timeZero(const AVFormatContext &format)
{
    if (isNamed(format, "mov,mp4") || format.start_time == AV_NOPTS_VALUE)
        return 0;
    return std::max(0.0, static_cast<double>(format.start_time) / AV_TIME_BASE);
}

} // namespace

AudioDecoder::AudioDecoder(const QString &path, const std::atomic<bool> *interrupt)
    : m_interrupt(interrupt)
    , m_input((ffmpeg::prepareLibraries(), path), interrupt)
    , m_packet(ffmpeg::checked(av_packet_alloc()))
    , m_waiting(ffmpeg::checked(av_frame_alloc()))
{
    try {
        m_format = openInputFormat(m_input, path, interrupt);
        selectTrack();
    } catch (const Error &) {
        if (m_input.systemError() != 0)
            throw readingError(path, m_input.systemError());
        throw;
    }
}

void AudioDecoder::selectTrack()
{
    for (unsigned i = 0; i < m_format->nb_streams; ++i) {
        AVStream *stream = m_format->streams[i];
        if (!m_stream && stream->codecpar->codec_type == AVMEDIA_TYPE_AUDIO)
            m_stream = stream;
        else
            stream->discard = AVDISCARD_ALL;
    }
    if (!m_stream)
        ffmpeg::checked(AVERROR_STREAM_NOT_FOUND);
}

void AudioDecoder::start()
{
    const AVCodec *codec = avcodec_find_decoder(m_stream->codecpar->codec_id);
    if (!codec)
        ffmpeg::checked(AVERROR_DECODER_NOT_FOUND);
    m_codec.reset(ffmpeg::checked(avcodec_alloc_context3(codec)));
    ffmpeg::checked(avcodec_parameters_to_context(m_codec.get(), m_stream->codecpar));
    // Without it the decoder cannot take off what the encoder put in front and behind.
    m_codec->pkt_timebase = m_stream->time_base;
    ffmpeg::checked(avcodec_open2(m_codec.get(), codec, nullptr));
}

bool AudioDecoder::next(AVFrame *frame)
{
    av_frame_unref(frame);
    if (isInterrupted())
        return false;
    if (!m_waiting->nb_samples) {
        if (!decode(m_waiting.get()))
            return false;
        const double missing = missingSeconds(*m_waiting);
        m_silence += missing;
        m_silentSamples = std::llround(missing * m_waiting->sample_rate);
        m_hasBegun = true;
    }
    if (m_silentSamples > 0)
        makeSilence(frame);
    else
        av_frame_move_ref(frame, m_waiting.get());
    m_position += static_cast<double>(frame->nb_samples) / frame->sample_rate;
    return true;
}

bool AudioDecoder::decode(AVFrame *frame)
{
    for (;;) {
        const int result = avcodec_receive_frame(m_codec.get(), frame);
        if (result >= 0 && frame->nb_samples > 0 && isUsable(frame->sample_rate) && frame->ch_layout.nb_channels > 0)
            return true;
        if (result == AVERROR_EOF || isInterrupted())
            return false;
        if (result == AVERROR(EAGAIN))
            feed();
    }
}

/// Hands the decoder one more packet, or the end. What it thinks of the packet does not matter: if it is damaged the
/// next one may be sound.
void AudioDecoder::feed()
{
    const bool hasPacket = readPacket();
    avcodec_send_packet(m_codec.get(), hasPacket ? m_packet.get() : nullptr);
    av_packet_unref(m_packet.get());
}

bool AudioDecoder::readPacket()
{
    int damaged = 0;
    while (damaged < mostDamagedReads && !isInterrupted()) {
        const int result = av_read_frame(m_format.get(), m_packet.get());
        if (result == AVERROR_EOF || m_input.systemError() != 0)
            return false;
        if (result < 0) {
            ++damaged;
            continue;
        }
        if (m_packet->stream_index == m_stream->index)
            return true;
        av_packet_unref(m_packet.get());
    }
    return false;
}

double AudioDecoder::missingSeconds(const AVFrame &frame) const
{
    if (frame.best_effort_timestamp == AV_NOPTS_VALUE || (m_hasBegun && mayJump(*m_format)))
        return 0;
    const double time =
        static_cast<double>(frame.best_effort_timestamp) * av_q2d(m_stream->time_base) - timeZero(*m_format);
    const double missing = time - m_position;
    // A timestamp behind the end of the file is damage, and no reason for hours of silence.
    const bool isInsideTheFile =
        m_format->duration <= 0 || time <= static_cast<double>(m_format->duration) / AV_TIME_BASE;
    const bool isPlausible = missing >= (m_hasBegun ? smallestHole : smallestDelay) && missing <= longestHole
                             && m_silence + missing <= mostSilence;
    return isInsideTheFile && isPlausible ? missing : 0;
}

void AudioDecoder::makeSilence(AVFrame *silence)
{
    silence->format = m_waiting->format;
    silence->sample_rate = m_waiting->sample_rate;
    silence->nb_samples = static_cast<int>(std::min<std::int64_t>(m_silentSamples, silenceBlock));
    ffmpeg::checked(av_channel_layout_copy(&silence->ch_layout, &m_waiting->ch_layout));
    ffmpeg::checked(av_frame_get_buffer(silence, 0));
    av_samples_set_silence(silence->extended_data, 0, silence->nb_samples, silence->ch_layout.nb_channels,
                           static_cast<AVSampleFormat>(silence->format));
    m_silentSamples -= silence->nb_samples;
}

} // namespace sorvanta
