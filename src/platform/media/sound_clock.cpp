#include "platform/media/sound_clock.h"

#include <algorithm>

namespace sorvanta {

namespace {

using namespace std::chrono_literals;

/// The mean of so many buffers counts: long enough to smooth what wavers with the blocks of the server, short enough to
/// follow a sound card's clock.
constexpr int trackedBuffers = 250;

/// Deviations longer than this for so long are no wavering: sound was lost without anybody telling.
constexpr auto largestDeviation = 60ms;
constexpr auto longestDeviating = 250ms;

/// So far the number of frames may be from the time, and so near it is brought then, by a frame in so many buffers: as
/// quick as any sound card's clock runs away, and too slow to be heard.
constexpr auto largestLag = 15ms;
constexpr auto smallestLag = 5ms;
constexpr int buffersPerCorrection = 10;

} // namespace

SoundClock::SoundClock(int sampleRate)
    : m_sampleRate(sampleRate)
{
}

SoundClock::Place SoundClock::place(SoundTime measured, qint64 frames)
{
    const auto length = soundDuration(frames, m_sampleRate);
    const auto deviation = measured - m_next;
    const bool isFarOff = deviation > largestDeviation || deviation < -largestDeviation;
    m_deviating = m_isRunning && isFarOff ? m_deviating + length : SoundTime::duration{};
    if (!m_isRunning || m_deviating > longestDeviating) {
        m_isRunning = true;
        m_deviating = {};
        m_tracked = 1;
        m_next = measured + length;
        m_counted = m_next;
        m_isCorrecting = false;
        return {measured, false, 0};
    }
    if (!isFarOff) {
        m_tracked = std::min(m_tracked + 1, trackedBuffers);
        m_next += deviation / m_tracked;
    }
    const int correction = nextCorrection();
    const SoundTime time = m_next;
    m_next += length;
    m_counted += length + soundDuration(correction, m_sampleRate);
    return {time, true, correction};
}

int SoundClock::nextCorrection()
{
    const auto lag = m_next - m_counted;
    m_isCorrecting = std::chrono::abs(lag) > (m_isCorrecting ? smallestLag : largestLag);
    if (++m_sinceCorrection < buffersPerCorrection || !m_isCorrecting)
        return 0;
    m_sinceCorrection = 0;
    return lag > SoundTime::duration{} ? 1 : -1;
}

void handOverCorrected(std::span<const std::byte> frames, const SoundClock::Place &place, const AudioFormat &format,
                       const std::function<void(const SoundBuffer &)> &receive)
{
    const auto frame = static_cast<std::size_t>(format.bytesPerFrame());
    receive({place.correction < 0 ? frames.first(frames.size() - frame) : frames, place.time, place.isContinuous});
    if (place.correction > 0) {
        const auto count = static_cast<qint64>(frames.size() / frame);
        receive({frames.last(frame), place.time + soundDuration(count, format.sampleRate), true});
    }
}

} // namespace sorvanta
