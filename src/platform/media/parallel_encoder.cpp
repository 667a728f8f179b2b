#include "platform/media/parallel_encoder.h"

#include "platform/named_thread.h"

#include <algorithm>
#include <thread>
#include <utility>

namespace sorvanta {

namespace {

/// Packets of sound before a stretch, from which its encoder knows what is loud there and how many bits there are.
constexpr std::int64_t packetsBefore = 16;
/// A packet is encoded when the frame behind it is known.
constexpr std::int64_t packetsBehind = 1;

std::size_t mostStretches()
{
    // One more than processors, so that none waits while the oldest stretch is written.
    return std::max(2U, std::thread::hardware_concurrency()) + 1;
}

} // namespace

ParallelEncoder::ParallelEncoder(const AudioFileSettings &settings)
    : m_settings(settings)
    , m_first(settings)
    , m_sound(takeRoom())
{
}

void ParallelEncoder::encode(std::span<const std::byte> frames, const PacketHandler &handle)
{
    while (!frames.empty()) {
        const std::size_t wanted = bytesOf(m_next + stretch + packetsBehind - m_soundStart);
        const std::size_t taken = std::min(frames.size(), wanted - m_sound.size());
        m_sound.insert(m_sound.end(), frames.begin(), frames.begin() + static_cast<std::ptrdiff_t>(taken));
        frames = frames.subspan(taken);
        if (m_sound.size() == wanted)
            launch(false, handle);
    }
}

void ParallelEncoder::encodeSilence(std::int64_t frames, const PacketHandler &handle)
{
    const auto bytesPerFrame = static_cast<std::size_t>(m_settings.inputFormat().bytesPerFrame());
    const std::vector<std::byte> silence(bytesOf(1));
    for (std::int64_t left = frames; left > 0; left -= m_first.frameSize()) {
        const auto piece = static_cast<std::size_t>(std::min<std::int64_t>(left, m_first.frameSize()));
        encode(std::span(silence).first(piece * bytesPerFrame), handle);
    }
}

void ParallelEncoder::finish(const PacketHandler &handle)
{
    launch(true, handle);
    while (!m_stretches.empty())
        handOverFirst(handle);
}

/// Gives the sound to a thread and keeps of it what the next stretch needs.
void ParallelEncoder::launch(bool isLast, const PacketHandler &handle)
{
    if (m_stretches.size() >= mostStretches())
        handOverFirst(handle);
    Stretch given{std::move(m_sound), m_soundStart, m_next - m_soundStart, isLast};
    m_next += stretch;
    if (!isLast) {
        const std::int64_t kept = std::min(m_next, packetsBefore);
        m_sound = takeRoom();
        m_sound.assign(given.sound.end() - static_cast<std::ptrdiff_t>(bytesOf(kept + packetsBehind)),
                       given.sound.end());
        m_soundStart = m_next - kept;
    }
    try {
        m_stretches.push_back(
            std::async(std::launch::async, [settings = m_settings, given = std::move(given)]() mutable {
                return encodeStretch(settings, std::move(given));
            }));
    } catch (const std::system_error &failure) {
        throw threadError(failure);
    }
}

ParallelEncoder::Encoded ParallelEncoder::encodeStretch(const AudioFileSettings &settings, Stretch given)
{
    FrameEncoder encoder(settings);
    const std::int64_t offset = given.first * encoder.frameSize();
    Packets packets;
    std::int64_t number = 0;
    const PacketHandler keep = [&](AVPacket &packet) {
        if (number++ < given.skipped)
            return;
        packets.emplace_back(ffmpeg::checked(av_packet_clone(&packet)));
        packets.back()->pts += offset;
        packets.back()->dts += offset;
    };
    encoder.encode(given.sound, keep);
    if (given.isLast)
        encoder.finish(keep);
    return {std::move(packets), std::move(given.sound)};
}

void ParallelEncoder::handOverFirst(const PacketHandler &handle)
{
    std::future<Encoded> oldest = std::move(m_stretches.front());
    m_stretches.pop_front();
    Encoded encoded = oldest.get();
    for (const ffmpeg::Pointer<AVPacket> &packet : encoded.packets)
        handle(*packet);
    m_rooms.push_back(std::move(encoded.sound));
}

/// An empty vector with room for a stretch.
std::vector<std::byte> ParallelEncoder::takeRoom()
{
    std::vector<std::byte> room;
    if (m_rooms.empty()) {
        room.reserve(bytesOf(packetsBefore + stretch + packetsBehind));
    } else {
        room = std::move(m_rooms.back());
        m_rooms.pop_back();
        room.clear();
    }
    return room;
}

std::size_t ParallelEncoder::bytesOf(std::int64_t packets) const
{
    return static_cast<std::size_t>(packets * m_first.frameSize() * m_settings.inputFormat().bytesPerFrame());
}

} // namespace sorvanta
