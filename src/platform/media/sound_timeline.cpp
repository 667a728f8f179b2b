#include "platform/media/sound_timeline.h"

#include <algorithm>
#include <array>
#include <utility>

namespace sorvanta {

SoundTimeline::SoundTimeline(const AudioFormat &format, std::function<void(std::span<const std::byte>)> write)
    : m_format(format)
    , m_write(std::move(write))
{
}

void SoundTimeline::begin(SoundTime time)
{
    m_stretches.push_back({time, std::nullopt});
}

void SoundTimeline::end(SoundTime time)
{
    if (!m_stretches.empty())
        m_stretches.back().end = time;
}

void SoundTimeline::take(const SoundBuffer &buffer)
{
    const qint64 count = static_cast<qint64>(buffer.frames.size()) / m_format.bytesPerFrame();
    const SoundTime bufferEnd = buffer.time + soundDuration(count, m_format.sampleRate);
    while (!m_stretches.empty()) {
        Stretch &stretch = m_stretches.front();
        const bool continues = m_isRunning && buffer.isContinuous;
        if (bufferEnd > stretch.begin) {
            takePart(stretch, buffer, continues);
            m_isRunning = true;
        }
        if (!stretch.end || bufferEnd < *stretch.end)
            return;
        if (!continues)
            fill(stretch, frames(*stretch.end - stretch.begin));
        m_stretches.pop_front();
        m_isRunning = false;
    }
}

void SoundTimeline::takePart(Stretch &stretch, const SoundBuffer &buffer, bool continues)
{
    const qint64 count = static_cast<qint64>(buffer.frames.size()) / m_format.bytesPerFrame();
    const qint64 last = stretch.end ? std::clamp<qint64>(frames(*stretch.end - buffer.time), 0, count) : count;
    qint64 first = 0;
    if (!continues) {
        const qint64 position = frames(buffer.time - stretch.begin);
        first = std::clamp<qint64>(stretch.written - position, 0, count);
        if (first < last)
            fill(stretch, position);
    }
    if (first >= last)
        return;
    const auto bytes = static_cast<std::size_t>(m_format.bytesPerFrame());
    m_write(
        buffer.frames.subspan(static_cast<std::size_t>(first) * bytes, static_cast<std::size_t>(last - first) * bytes));
    stretch.written += last - first;
}

void SoundTimeline::fill(Stretch &stretch, qint64 frames)
{
    static constexpr std::array<std::byte, 16384> silence{};
    const qint64 most = static_cast<qint64>(silence.size()) / m_format.bytesPerFrame();
    while (stretch.written < frames) {
        const qint64 count = std::min(frames - stretch.written, most);
        m_write(std::span(silence).first(static_cast<std::size_t>(count * m_format.bytesPerFrame())));
        stretch.written += count;
    }
}

void SoundTimeline::finish()
{
    for (Stretch &stretch : m_stretches) {
        if (stretch.end)
            fill(stretch, frames(*stretch.end - stretch.begin));
    }
    m_stretches.clear();
    m_isRunning = false;
}

} // namespace sorvanta
