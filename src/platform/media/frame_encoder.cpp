#include "platform/media/frame_encoder.h"

extern "C" {
#include <libavutil/opt.h>
}

#include <algorithm>
#include <cstring>
#include <vector>

namespace sorvanta {

namespace {

using Container = AudioFileSettings::Container;

/// Where the encoder does not say how many samples a packet has.
constexpr int usualFrameSize = 4096;
/// So many frames behind the last sound the encoder has left all that it did for its sake, and each further silent
/// packet is like the one before.
constexpr int framesUntilStill = 8;

ffmpeg::Pointer<AVCodecContext> openEncoder(const AudioFileSettings &settings)
{
    if (settings.sampleRate <= 0 || settings.channels <= 0)
        ffmpeg::checked(AVERROR(EINVAL));
    const bool isWav = settings.container == Container::Wav;
    const AVCodec *codec = ffmpeg::checked(avcodec_find_encoder(isWav ? AV_CODEC_ID_PCM_S16LE : AV_CODEC_ID_AAC));
    ffmpeg::Pointer<AVCodecContext> context(ffmpeg::checked(avcodec_alloc_context3(codec)));
    context->sample_rate = settings.sampleRate;
    context->time_base = {1, settings.sampleRate};
    context->sample_fmt = isWav ? AV_SAMPLE_FMT_S16 : AV_SAMPLE_FMT_FLTP;
    av_channel_layout_default(&context->ch_layout, settings.channels);
    if (settings.bitRate > 0)
        context->bit_rate = settings.bitRate;
    context->flags |= AV_CODEC_FLAG_BITEXACT;
    if (!isWav) {
        context->flags |= AV_CODEC_FLAG_GLOBAL_HEADER;
        if (settings.aacSearch != AudioFileSettings::AacSearch::Thorough) {
            ffmpeg::checked(av_opt_set(context->priv_data, "aac_coder", "fast", 0));
            // Noise shaping in time, substituted noise and intensity stereo: a tenth of the time, for nothing that
            // could be measured.
            for (const char *tool : {"aac_tns", "aac_pns", "aac_is"})
                ffmpeg::checked(av_opt_set_int(context->priv_data, tool, 0, 0));
        }
    }
    ffmpeg::checked(avcodec_open2(context.get(), codec, nullptr));
    return context;
}

} // namespace

FrameEncoder::FrameEncoder(const AudioFileSettings &settings)
    : m_format(settings.inputFormat())
    , m_codec(openEncoder(settings))
    , m_frame(ffmpeg::checked(av_frame_alloc()))
    , m_packet(ffmpeg::checked(av_packet_alloc()))
    , m_lastPacket(ffmpeg::checked(av_packet_alloc()))
    , m_nextTime(-m_codec->initial_padding)
{
}

void FrameEncoder::describe(AVStream &stream) const
{
    ffmpeg::checked(avcodec_parameters_from_context(stream.codecpar, m_codec.get()));
    stream.time_base = m_codec->time_base;
}

void FrameEncoder::encode(std::span<const std::byte> frames, const PacketHandler &handle)
{
    const auto bytesPerFrame = static_cast<std::size_t>(m_format.bytesPerFrame());
    while (frames.size() >= bytesPerFrame) {
        if (m_filled == 0)
            startFrame(frameSize());
        frames = frames.subspan(static_cast<std::size_t>(fill(frames)) * bytesPerFrame);
        if (m_filled == m_frame->nb_samples)
            send(m_frame.get(), handle);
    }
}

/// A packet of a long silence is encoded once and repeated: an hour takes milliseconds.
void FrameEncoder::encodeSilence(std::int64_t frames, const PacketHandler &handle)
{
    const std::int64_t stillFrom = (m_filled > 0 ? frameSize() - m_filled : 0) + framesUntilStill * frameSize();
    if (m_codec->initial_padding == 0 || frames <= stillFrom) {
        fillWithSilence(frames, handle);
        return;
    }
    fillWithSilence(stillFrom, handle);
    const std::int64_t repetitions = (frames - stillFrom) / frameSize();
    for (std::int64_t i = 0; i < repetitions; ++i) {
        ffmpeg::Pointer<AVPacket> packet(ffmpeg::checked(av_packet_clone(m_lastPacket.get())));
        m_sent += frameSize();
        handOver(*packet, handle);
    }
    fillWithSilence(frames - stillFrom - repetitions * frameSize(), handle);
}

void FrameEncoder::fillWithSilence(std::int64_t frames, const PacketHandler &handle)
{
    const auto bytesPerFrame = static_cast<std::size_t>(m_format.bytesPerFrame());
    const std::vector<std::byte> silence(static_cast<std::size_t>(frameSize()) * bytesPerFrame);
    for (std::int64_t left = frames; left > 0; left -= frameSize()) {
        const auto piece = static_cast<std::size_t>(std::min<std::int64_t>(left, frameSize()));
        encode(std::span(silence).first(piece * bytesPerFrame), handle);
    }
}

int FrameEncoder::frameSize() const
{
    return m_codec->frame_size > 0 ? m_codec->frame_size : usualFrameSize;
}

void FrameEncoder::finish(const PacketHandler &handle)
{
    if (m_filled > 0) {
        m_frame->nb_samples = m_filled;
        send(m_frame.get(), handle);
    }
    send(nullptr, handle);
}

void FrameEncoder::startFrame(int samples)
{
    av_frame_unref(m_frame.get());
    m_frame->format = m_codec->sample_fmt;
    m_frame->sample_rate = m_codec->sample_rate;
    m_frame->nb_samples = samples;
    ffmpeg::checked(av_channel_layout_copy(&m_frame->ch_layout, &m_codec->ch_layout));
    ffmpeg::checked(av_frame_get_buffer(m_frame.get(), 0));
}

/// Puts as many of `frames` into the frame as it has room for. @return how many
int FrameEncoder::fill(std::span<const std::byte> frames)
{
    const auto bytesPerFrame = static_cast<std::size_t>(m_format.bytesPerFrame());
    const int count = static_cast<int>(
        std::min(static_cast<std::size_t>(m_frame->nb_samples - m_filled), frames.size() / bytesPerFrame));
    if (!av_sample_fmt_is_planar(m_codec->sample_fmt)) {
        std::memcpy(m_frame->extended_data[0] + static_cast<std::size_t>(m_filled) * bytesPerFrame, frames.data(),
                    static_cast<std::size_t>(count) * bytesPerFrame);
    } else {
        const auto *input = reinterpret_cast<const float *>(frames.data());
        for (int channel = 0; channel < m_format.channels; ++channel) {
            auto *output = reinterpret_cast<float *>(m_frame->extended_data[channel]) + m_filled;
            for (int i = 0; i < count; ++i)
                output[i] = input[i * m_format.channels + channel];
        }
    }
    m_filled += count;
    return count;
}

void FrameEncoder::send(AVFrame *frame, const PacketHandler &handle)
{
    if (frame) {
        frame->pts = m_sent;
        m_sent += frame->nb_samples;
        m_filled = 0;
    }
    ffmpeg::checked(avcodec_send_frame(m_codec.get(), frame));
    for (;;) {
        const int result = avcodec_receive_packet(m_codec.get(), m_packet.get());
        if (result == AVERROR(EAGAIN) || result == AVERROR_EOF)
            return;
        ffmpeg::checked(result);
        handOver(*m_packet, handle);
        av_packet_unref(m_packet.get());
    }
}

/// The encoder's own times know nothing of repeated packets. The last packet may end before it is full.
void FrameEncoder::handOver(AVPacket &packet, const PacketHandler &handle)
{
    if (m_codec->initial_padding > 0) {
        packet.pts = m_nextTime;
        packet.dts = m_nextTime;
        packet.duration = std::min<std::int64_t>(frameSize(), m_sent - m_nextTime);
        m_nextTime += frameSize();
        av_packet_unref(m_lastPacket.get());
        ffmpeg::checked(av_packet_ref(m_lastPacket.get(), &packet));
    }
    handle(packet);
}

} // namespace sorvanta
