#pragma once

#include "platform/media/ffmpeg.h"

#include <cstddef>
#include <vector>

namespace sorvanta {

/// Brings decoded frames of any rate, layout and sample format, which may change from frame to frame, to one format.
/// Channels are mixed so that a sound that all channels carry keeps its level. Everything throws Error of the domain
/// "FFmpeg", for a frame that cannot be brought to the format or for want of memory.
class SampleConverter {
public:
    explicit SampleConverter(const AudioFormat &format);
    ~SampleConverter();
    SampleConverter(const SampleConverter &) = delete;
    SampleConverter &operator=(const SampleConverter &) = delete;

    /// Puts what `frame` gives behind what `bytes` holds.
    void convert(const AVFrame &frame, std::vector<std::byte> &bytes);
    /// The same with what is still held back; to be called once, at the end.
    void finish(std::vector<std::byte> &bytes);

private:
    bool fits(const AVFrame &frame) const;
    void configure(const AVFrame &frame);
    void run(const AVFrame *frame, std::vector<std::byte> &bytes);

    AudioFormat m_format;
    AVChannelLayout m_layout = {};
    ffmpeg::Pointer<SwrContext> m_resampler;
    AVChannelLayout m_inputLayout = {};
    int m_inputFormat = AV_SAMPLE_FMT_NONE;
    int m_inputRate = 0;
};

} // namespace sorvanta
