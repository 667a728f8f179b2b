#pragma once

#include "platform/media/audio_file_settings.h"
#include "platform/media/track_encoder.h"

#include <cstdint>

namespace sorvanta {

/// Encodes on the calling thread.
class FrameEncoder final : public TrackEncoder {
public:
    /// @throws Error if there is no encoder for such a track
    explicit FrameEncoder(const AudioFileSettings &settings);

    void describe(AVStream &stream) const override;
    AVRational timeBase() const override { return m_codec->time_base; }
    /// Samples of each channel in one packet.
    int frameSize() const;

    void encode(std::span<const std::byte> frames, const PacketHandler &handle) override;
    void encodeSilence(std::int64_t frames, const PacketHandler &handle) override;
    void finish(const PacketHandler &handle) override;

private:
    void startFrame(int samples);
    int fill(std::span<const std::byte> frames);
    void fillWithSilence(std::int64_t frames, const PacketHandler &handle);
    void send(AVFrame *frame, const PacketHandler &handle);
    void handOver(AVPacket &packet, const PacketHandler &handle);

    AudioFormat m_format;
    ffmpeg::Pointer<AVCodecContext> m_codec;
    ffmpeg::Pointer<AVFrame> m_frame;
    ffmpeg::Pointer<AVPacket> m_packet;
    ffmpeg::Pointer<AVPacket> m_lastPacket;
    int m_filled = 0; ///< samples of each channel that the frame holds
    std::int64_t m_sent = 0;
    std::int64_t m_nextTime; ///< of the next packet, in samples
};

} // namespace sorvanta
