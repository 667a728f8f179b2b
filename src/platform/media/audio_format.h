#pragma once

namespace sorvanta {

/// Uncompressed sound: interleaved samples in the byte order of the machine. A frame is one sample of each channel.
struct AudioFormat {
    enum class SampleType { Int16, Float32 };

    int sampleRate = 0; ///< frames a second
    int channels = 0;
    SampleType sampleType = SampleType::Int16;

    int bytesPerFrame() const { return channels * (sampleType == SampleType::Int16 ? 2 : 4); }
    bool operator==(const AudioFormat &) const = default;
};

} // namespace sorvanta
