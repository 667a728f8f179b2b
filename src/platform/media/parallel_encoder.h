#pragma once

#include "platform/media/audio_file_settings.h"
#include "platform/media/frame_encoder.h"

#include <deque>
#include <future>
#include <vector>

namespace sorvanta {

/// Encodes AAC by several threads at once, a stretch of the sound each. A packet of AAC depends on the sound of its own
/// time and on a little before and behind it. Each thread is given that too and the packets that it gives for it
/// are thrown away, so the stretches join as if one encoder had made them all. What comes out does not depend on
/// the number of threads.
class ParallelEncoder final : public TrackEncoder {
public:
    /// @throws Error if there is no encoder for such a track
    explicit ParallelEncoder(const AudioFileSettings &settings);

    void describe(AVStream &stream) const override { m_first.describe(stream); }
    AVRational timeBase() const override { return m_first.timeBase(); }

    void encode(std::span<const std::byte> frames, const PacketHandler &handle) override;
    void encodeSilence(std::int64_t frames, const PacketHandler &handle) override;
    void finish(const PacketHandler &handle) override;

    /// Packets of a stretch.
    static constexpr std::int64_t stretch = 1024;

private:
    using Packets = std::vector<ffmpeg::Pointer<AVPacket>>;
    struct Stretch {
        std::vector<std::byte> sound;
        std::int64_t first = 0; ///< packet that the sound begins with
        std::int64_t skipped = 0; ///< packets that serve the others only
        bool isLast = false;
    };
    struct Encoded {
        Packets packets;
        std::vector<std::byte> sound; ///< of the stretch, whose room is of use again
    };

    static Encoded encodeStretch(const AudioFileSettings &settings, Stretch stretch);
    void launch(bool isLast, const PacketHandler &handle);
    void handOverFirst(const PacketHandler &handle);
    std::vector<std::byte> takeRoom();
    std::size_t bytesOf(std::int64_t packets) const;

    AudioFileSettings m_settings;
    FrameEncoder m_first; ///< tells what the track is, and encodes nothing
    std::vector<std::vector<std::byte>> m_rooms; ///< of stretches that are done: fresh memory would cost time
    std::vector<std::byte> m_sound; ///< not given to a thread yet, with what the next one needs of the time before
    std::int64_t m_soundStart = 0; ///< packet that it begins with
    std::int64_t m_next = 0; ///< packet that the next stretch begins with
    std::deque<std::future<Encoded>> m_stretches;
};

} // namespace sorvanta
