#pragma once

#include <cstddef>
#include <mutex>
#include <span>
#include <vector>

namespace sorvanta {

/// The mean power of each channel of 16 bit sound. Sound may come on one thread and be asked for on another.
class PowerMeter {
public:
    explicit PowerMeter(int channels);

    /// Takes whole interleaved frames.
    void take(std::span<const std::byte> frames);

    /// The power of each channel since the last call, in decibels below a square wave of full scale; no less than
    /// `least`, which it also is without any sound.
    std::vector<float> powers(float least);

private:
    std::mutex m_mutex;
    std::vector<double> m_squares; ///< the sum of each channel, full scale being 1
    std::size_t m_frames = 0;
};

} // namespace sorvanta
