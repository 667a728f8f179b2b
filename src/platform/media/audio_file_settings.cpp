#include "platform/media/audio_file_settings.h"

#include <algorithm>
#include <array>
#include <cstdlib>

namespace sorvanta {

namespace {

constexpr std::array aacSampleRates = {48000, 44100, 32000, 24000, 22050, 16000, 12000, 11025, 8000, 7350};

} // namespace

AudioFormat AudioFileSettings::inputFormat() const
{
    using SampleType = AudioFormat::SampleType;
    return {sampleRate, channels, container == Container::Wav ? SampleType::Int16 : SampleType::Float32};
}

int nearestAacSampleRate(int sampleRate)
{
    sampleRate = std::clamp(sampleRate, aacSampleRates.back(), aacSampleRates.front());
    return *std::min_element(aacSampleRates.begin(), aacSampleRates.end(), [&](int left, int right) {
        return std::abs(left - sampleRate) < std::abs(right - sampleRate);
    });
}

} // namespace sorvanta
