#include "audio/recording_mixer.h"

#include "platform/error.h"
#include "platform/main_queue.h"
#include "platform/media/audio_reader.h"
#include "platform/media/audio_writer.h"
#include "platform/media/media_duration.h"
#include "platform/named_thread.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <memory>
#include <optional>
#include <semaphore>
#include <vector>

namespace sorvanta {

namespace {

/// Samples of a track that come in pieces of any size.
class Samples {
public:
    Samples(const QString &path, const AudioFormat &format)
        : m_reader(path)
    {
        m_reader.start(format);
    }

    /// The samples that are at hand; none at the end.
    std::span<const float> next()
    {
        if (m_left.empty()) {
            const std::span<const std::byte> bytes = m_reader.read();
            m_left = {reinterpret_cast<const float *>(bytes.data()), bytes.size() / sizeof(float)};
        }
        return m_left;
    }
    void drop(std::size_t count) { m_left = m_left.subspan(count); }
    bool hasFailed() const { return m_reader.status() == AudioReader::Status::Failed; }

private:
    AudioReader m_reader;
    std::span<const float> m_left;
};

/// One mix. The thread that does it holds it until it ends, also when nobody waits any longer.
class Mix {
public:
    Mix(const QString &systemURL, const QString &micURL, const AudioFileSettings &settings)
        : m_system(systemURL, settings.inputFormat())
        , m_mic(micURL, settings.inputFormat())
        , m_settings(settings)
        , m_left(static_cast<std::size_t>(std::llround(mediaDuration(systemURL) * settings.sampleRate))
                 * static_cast<std::size_t>(settings.channels))
    {
    }

    bool hasSoundInBoth() { return m_left > 0 && !m_system.next().empty() && !m_mic.next().empty(); }
    void startWriting(const QString &destinationURL) { m_writer.emplace(destinationURL, m_settings); }

    void run()
    {
        try {
            while (m_left > 0 && !isQuitting() && mixNext()) { }
            if (!m_system.hasFailed() && !m_mic.hasFailed() && !isQuitting())
                m_writer->finish();
        } catch (const std::exception &) {
            // The writer has not come to its end, and its status says so.
        }
        m_finished.release();
    }

    bool waitForEnd(std::chrono::milliseconds limit) { return m_finished.try_acquire_for(limit); }
    bool isComplete() const { return m_writer->status() == AudioWriter::Status::Completed; }

private:
    bool mixNext()
    {
        const std::span<const float> system = m_system.next();
        if (system.empty())
            return false;
        const std::span<const float> mic = m_mic.next();
        const std::size_t count = std::min({system.size(), mic.empty() ? system.size() : mic.size(), m_left});
        m_sum.resize(count);
        for (std::size_t i = 0; i < count; ++i)
            m_sum[i] = std::clamp(system[i] + (mic.empty() ? 0 : mic[i]), -1.0F, 1.0F);
        m_system.drop(count);
        m_mic.drop(mic.empty() ? 0 : count);
        m_left -= count;
        return m_writer->append(std::as_bytes(std::span(m_sum)));
    }

    Samples m_system;
    Samples m_mic;
    AudioFileSettings m_settings;
    std::size_t m_left; ///< samples of the system's sound that are still to come
    std::vector<float> m_sum;
    std::optional<AudioWriter> m_writer;
    std::binary_semaphore m_finished{0};
};

} // namespace

bool RecordingMixer::mixRecordings(const QString &systemURL, const QString &micURL, const QString &destinationURL) const
{
    try {
        const auto mix = std::make_shared<Mix>(systemURL, micURL, m_settings.file);
        if (!mix->hasSoundInBoth())
            return false;
        mix->startWriting(destinationURL);
        runOnNamedThread(QStringLiteral("ScreenAudioRecorder.mix"), [mix] { mix->run(); });
        return mix->waitForEnd(m_settings.limit) && mix->isComplete();
    } catch (const std::exception &) {
        return false;
    }
}

} // namespace sorvanta
