#include "platform/media/frame_encoder.h"

#include <algorithm>
#include <cstring>

namespace sorvanta {

namespace {

using Container = AudioFileSettings::Container;

/// Where the encoder does not say how many samples a packet has.
constexpr int usualFrameSize = 4096;

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
    if (!isWav)
        context->flags |= AV_CODEC_FLAG_GLOBAL_HEADER;
    ffmpeg::checked(avcodec_open2(context.get(), codec, nullptr));
    return context;
}

} // namespace

FrameEncoder::FrameEncoder(const AudioFileSettings &settings)
    : m_format(settings.inputFormat())
    , m_codec(openEncoder(settings))
    , m_frame(ffmpeg::checked(av_frame_alloc()))
    , m_packet(ffmpeg::checked(av_packet_alloc()))
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
    const int frameSize = m_codec->frame_size > 0 ? m_codec->frame_size : usualFrameSize;
    while (frames.size() >= bytesPerFrame) {
        if (m_filled == 0)
            startFrame(frameSize);
        frames = frames.subspan(static_cast<std::size_t>(fill(frames)) * bytesPerFrame);
        if (m_filled == m_frame->nb_samples)
            send(m_frame.get(), handle);
    }
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
        handle(*m_packet);
        av_packet_unref(m_packet.get());
    }
}

} // namespace sorvanta
