#include "platform/media/sound_clock.h"

namespace sorvanta {

namespace {

using namespace std::chrono_literals;

/// Of what a measured time deviates, this part is believed.
constexpr int trackingDivisor = 64;

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
        m_next = measured + length;
        return {measured, false};
    }
    if (!isFarOff)
        m_next += deviation / trackingDivisor;
    const SoundTime time = m_next;
    m_next += length;
    return {time, true};
}

} // namespace sorvanta
