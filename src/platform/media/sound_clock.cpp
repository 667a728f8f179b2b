#include "platform/media/sound_clock.h"

#include <algorithm>

namespace sorvanta {

namespace {

using namespace std::chrono_literals;

/// The mean of so many buffers counts: long enough to smooth what wavers with the blocks of the server, short enough to
/// follow a sound card's clock.
constexpr int trackedBuffers = 1000;

/// Deviations longer than this for so long are no wavering: sound was lost without anybody telling.
constexpr auto largestDeviation = 60ms;
constexpr auto longestDeviating = 250ms;

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
        return {measured, false};
    }
    if (!isFarOff) {
        m_tracked = std::min(m_tracked + 1, trackedBuffers);
        m_next += deviation / m_tracked;
    }
    const SoundTime time = m_next;
    m_next += length;
    return {time, true};
}

} // namespace sorvanta
