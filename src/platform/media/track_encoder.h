#pragma once

#include "platform/media/ffmpeg.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>

namespace sorvanta {

/// Turns interleaved frames into the packets of one audio track.
class TrackEncoder {
public:
    using PacketHandler = std::function<void(AVPacket &)>;

    virtual ~TrackEncoder() = default;

    /// Tells the muxer what the track is.
    virtual void describe(AVStream &stream) const = 0;
    virtual AVRational timeBase() const = 0;

    /// Hands each packet that is complete to `handle`, in order and on the calling thread.
    virtual void encode(std::span<const std::byte> frames, const PacketHandler &handle) = 0;
    /// The same as encode() with so many silent frames.
    virtual void encodeSilence(std::int64_t frames, const PacketHandler &handle) = 0;
    /// Hands over what is left; to be called once, at the end.
    virtual void finish(const PacketHandler &handle) = 0;
};

} // namespace sorvanta
