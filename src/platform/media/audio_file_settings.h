#pragma once

#include "platform/media/audio_format.h"

namespace sorvanta {

/// What an AudioWriter makes.
struct AudioFileSettings {
    enum class Container {
        Wav, ///< uncompressed, 16 bits a sample
        M4a, ///< AAC in an MPEG-4 file
    };

    enum class AacSearch {
        Thorough,
        /// In less than half the time, for 64 kbit/s a channel and more: below, by the words of FFmpeg, it is worse.
        Fast,
        FastInParallel, ///< the same by several threads at once
    };

    Container container = Container::Wav;
    int sampleRate = 0; ///< frames a second
    int channels = 0;
    int bitRate = 0; ///< of AAC, in bits a second; 0 leaves it to the encoder
    AacSearch aacSearch = AacSearch::Thorough;
    /// For an M4A: whoever reads the unfinished file finds all but the last second in it. See makeOrdinary().
    bool isReadableWhileWritten = false;

    /// What the writer wants to be given: 16 bit integers for a WAV file, floating point numbers for AAC.
    AudioFormat inputFormat() const;
};

/// The nearest sample rate to `sampleRate` that AAC knows, 48000 at most.
int nearestAacSampleRate(int sampleRate);

} // namespace sorvanta
