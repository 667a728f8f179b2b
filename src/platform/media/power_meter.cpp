#include "platform/media/power_meter.h"

#include <QtGlobal>

#include <algorithm>
#include <cmath>
#include <cstring>

namespace sorvanta {

PowerMeter::PowerMeter(int channels)
    : m_squares(static_cast<std::size_t>(channels))
{
}

void PowerMeter::take(std::span<const std::byte> frames)
{
    constexpr double fullScale = 32768;
    std::vector<double> squares(m_squares.size());
    const std::size_t count = frames.size() / sizeof(qint16);
    for (std::size_t i = 0; i < count; ++i) {
        qint16 sample = 0;
        std::memcpy(&sample, frames.data() + i * sizeof sample, sizeof sample);
        const double amplitude = sample / fullScale;
        squares[i % squares.size()] += amplitude * amplitude;
    }
    const std::lock_guard lock(m_mutex);
    m_frames += count / squares.size();
    for (std::size_t i = 0; i < squares.size(); ++i)
        m_squares[i] += squares[i];
}

std::vector<float> PowerMeter::powers(float least)
{
    const std::lock_guard lock(m_mutex);
    std::vector<float> powers;
    for (double &squares : m_squares) {
        const double mean = m_frames > 0 ? squares / static_cast<double>(m_frames) : 0;
        powers.push_back(mean > 0 ? std::max(least, static_cast<float>(10 * std::log10(mean))) : least);
        squares = 0;
    }
    m_frames = 0;
    return powers;
}

} // namespace sorvanta
