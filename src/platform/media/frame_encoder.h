#pragma once

#include "platform/media/audio_file_settings.h"
#include "platform/media/ffmpeg.h"

#include <cstdint>
#include <functional>
#include <span>

namespace sorvanta {

/// Turns interleaved frames into the packets of one audio track.
class FrameEncoder {
public:
    using PacketHandler = std::function<void(AVPacket &)>;

    /// @throws Error if there is no encoder for such a track
    explicit FrameEncoder(const AudioFileSettings &settings);

    /// Tells the muxer what the track is.
    void describe(AVStream &stream) const;
    AVRational timeBase() const { return m_codec->time_base; }

    /// Hands each packet that `frames` completes to `handle`.
    void encode(std::span<const std::byte> frames, const PacketHandler &handle);
    /// Hands over what is left; to be called once, at the end.
    void finish(const PacketHandler &handle);

private:
    void startFrame(int samples);
    int fill(std::span<const std::byte> frames);
    void send(AVFrame *frame, const PacketHandler &handle);

    AudioFormat m_format;
    ffmpeg::Pointer<AVCodecContext> m_codec;
    ffmpeg::Pointer<AVFrame> m_frame;
    ffmpeg::Pointer<AVPacket> m_packet;
    int m_filled = 0; ///< samples of each channel that the frame holds
    std::int64_t m_sent = 0;
};

} // namespace sorvanta
