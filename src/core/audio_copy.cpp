#include "core/audio_copy.h"

#include "platform/named_thread.h"

namespace sorvanta {

std::shared_ptr<AudioCopy> AudioCopy::open(const QString &source)
{
    return std::make_shared<AudioCopy>(source);
}

AudioCopy::AudioCopy(const QString &source)
    : m_reader(source, &m_interrupt)
{
}

void AudioCopy::startReading(const AudioFileSettings &settings)
{
    m_settings = settings;
    m_reader.start(settings.inputFormat());
}

void AudioCopy::startWriting(const QString &destination)
{
    m_writer.emplace(destination, m_settings);
}

bool AudioCopy::run(const std::shared_ptr<AudioCopy> &copy, const QString &queueLabel, std::chrono::milliseconds limit)
{
    runOnNamedThread(queueLabel, [copy] { copy->copyAll(); });
    const bool isInTime = copy->m_finished.try_acquire_for(limit);
    if (!isInTime)
        copy->m_interrupt = true;
    return isInTime;
}

/// A file of which nothing could be decoded is not ended: an empty one would pass for a success.
void AudioCopy::copyAll()
{
    bool hasCopied = false;
    for (auto frames = m_reader.read(); !frames.empty() && !m_interrupt; frames = m_reader.read()) {
        if (!m_writer->append(frames))
            break;
        hasCopied = true;
    }
    if (hasCopied && !m_interrupt)
        m_writer->finish();
    m_finished.release();
}

} // namespace sorvanta
