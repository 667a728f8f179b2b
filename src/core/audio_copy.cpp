#include "core/audio_copy.h"

#include "platform/main_queue.h"
#include "platform/named_thread.h"

#include <QFile>

#include <algorithm>

namespace sorvanta {

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
    m_destination = destination;
    m_writer.emplace(destination, m_settings);
}

bool AudioCopy::run(const std::shared_ptr<AudioCopy> &copy, const QString &queueLabel, std::chrono::milliseconds limit)
{
    runOnNamedThread(queueLabel, [copy] {
        try {
            copy->copyAll();
        } catch (const std::exception &) {
            // What reader and writer have not come to the end of, their status tells.
        }
        copy->m_finished.release();
    });
    if (copy->waitForEnd(limit))
        return true;
    copy->m_interrupt = true;
    if (isQuitting())
        QFile::remove(copy->m_destination);
    return false;
}

bool AudioCopy::isWhole() const
{
    return m_reader.status() == AudioReader::Status::Completed && writerStatus() == AudioWriter::Status::Completed;
}

bool AudioCopy::waitForEnd(std::chrono::milliseconds limit)
{
    constexpr std::chrono::milliseconds longestStep(50);
    const auto end = std::chrono::steady_clock::now() + limit;
    for (;;) {
        const auto left = std::max(end - std::chrono::steady_clock::now(), std::chrono::steady_clock::duration::zero());
        if (m_finished.try_acquire_for(std::min<std::chrono::steady_clock::duration>(left, longestStep)))
            return true;
        if (left <= longestStep || isQuitting())
            return false;
    }
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
}

} // namespace sorvanta
