#include "platform/media/sample_converter.h"

extern "C" {
#include <libavutil/opt.h>
}

namespace sorvanta {

namespace {

/// The library mixes only what has a layout it knows. Where the file names none, the usual one for the number of
/// channels stands in, or else any: the mix is then the mean of the channels.
AVChannelLayout knownLayout(const AVChannelLayout &layout)
{
    AVChannelLayout known = {};
    if (layout.order == AV_CHANNEL_ORDER_NATIVE) {
        ffmpeg::checked(av_channel_layout_copy(&known, &layout));
        return known;
    }
    av_channel_layout_default(&known, layout.nb_channels);
    if (known.order != AV_CHANNEL_ORDER_NATIVE && layout.nb_channels < 63)
        ffmpeg::checked(av_channel_layout_from_mask(&known, (1ULL << layout.nb_channels) - 1));
    return known;
}

ffmpeg::Pointer<SwrContext> newResampler(AVChannelLayout &outputLayout, const AudioFormat &output,
                                         AVChannelLayout &inputLayout, const AVFrame &input)
{
    SwrContext *context = nullptr;
    ffmpeg::checked(swr_alloc_set_opts2(&context, &outputLayout, ffmpeg::sampleFormat(output.sampleType),
                                        output.sampleRate, &inputLayout, static_cast<AVSampleFormat>(input.format),
                                        input.sample_rate, 0, nullptr));
    ffmpeg::Pointer<SwrContext> resampler(context);
    // No mix may be louder than its loudest channel, for floating point samples too.
    ffmpeg::checked(av_opt_set_double(context, "rematrix_maxval", 1, 0));
    return resampler;
}

/// One channel goes to each at full level; several go to each as their mean.
void setPlainMix(SwrContext *resampler, int outputs, int inputs)
{
    const std::vector<double> matrix(static_cast<std::size_t>(outputs * inputs), 1.0 / inputs);
    ffmpeg::checked(swr_set_matrix(resampler, matrix.data(), inputs));
}

} // namespace

SampleConverter::SampleConverter(const AudioFormat &format)
    : m_format(format)
{
    if (format.sampleRate <= 0 || format.channels <= 0)
        ffmpeg::checked(AVERROR(EINVAL));
    av_channel_layout_default(&m_layout, format.channels);
}

SampleConverter::~SampleConverter()
{
    av_channel_layout_uninit(&m_layout);
    av_channel_layout_uninit(&m_inputLayout);
}

void SampleConverter::convert(const AVFrame &frame, std::vector<std::byte> &bytes)
{
    if (!fits(frame)) {
        finish(bytes);
        configure(frame);
    }
    run(&frame, bytes);
}

void SampleConverter::finish(std::vector<std::byte> &bytes)
{
    if (m_resampler)
        run(nullptr, bytes);
}

bool SampleConverter::fits(const AVFrame &frame) const
{
    return m_resampler && frame.format == m_inputFormat && frame.sample_rate == m_inputRate
           && av_channel_layout_compare(&frame.ch_layout, &m_inputLayout) == 0;
}

void SampleConverter::configure(const AVFrame &frame)
{
    AVChannelLayout layout = knownLayout(frame.ch_layout);
    m_resampler = newResampler(m_layout, m_format, layout, frame);
    if (layout.nb_channels == 1 && m_format.channels > 1)
        setPlainMix(m_resampler.get(), m_format.channels, 1);
    if (swr_init(m_resampler.get()) < 0) {
        m_resampler = newResampler(m_layout, m_format, layout, frame);
        setPlainMix(m_resampler.get(), m_format.channels, layout.nb_channels);
        ffmpeg::checked(swr_init(m_resampler.get()));
    }
    av_channel_layout_uninit(&layout);
    ffmpeg::checked(av_channel_layout_copy(&m_inputLayout, &frame.ch_layout));
    m_inputFormat = frame.format;
    m_inputRate = frame.sample_rate;
}

void SampleConverter::run(const AVFrame *frame, std::vector<std::byte> &bytes)
{
    const int inputSamples = frame ? frame->nb_samples : 0;
    const int room = ffmpeg::checked(swr_get_out_samples(m_resampler.get(), inputSamples));
    const auto bytesPerFrame = static_cast<std::size_t>(m_format.bytesPerFrame());
    const std::size_t start = bytes.size();
    bytes.resize(start + static_cast<std::size_t>(room) * bytesPerFrame);
    auto *output = reinterpret_cast<uint8_t *>(bytes.data() + start);
    const auto **input = frame ? const_cast<const uint8_t **>(frame->extended_data) : nullptr;
    const int samples = ffmpeg::checked(swr_convert(m_resampler.get(), &output, room, input, inputSamples));
    bytes.resize(start + static_cast<std::size_t>(samples) * bytesPerFrame);
}

} // namespace sorvanta
