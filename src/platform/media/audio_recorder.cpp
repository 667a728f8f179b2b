#include "platform/media/audio_recorder.h"

#include "platform/main_queue.h"
#include "platform/media/power_meter.h"
#include "platform/media/sound_timeline.h"
#include "platform/media/wav_file.h"

#include <atomic>
#include <condition_variable>
#include <mutex>
#include <utility>
#include <vector>

namespace sorvanta {

namespace {

using Clock = std::chrono::steady_clock;

/// How long the last sound of a file is waited for.
constexpr std::chrono::milliseconds longestTail(500);

/// The beginning or the end of a wanted stretch of sound.
struct Mark {
    SoundTime time;
    bool isBegin;
};

class WavRecorder : public AudioRecorder {
public:
    WavRecorder(const QString &path, const AudioFormat &format, std::unique_ptr<SoundCapture> capture, Events events)
        : m_events(std::make_shared<Events>(std::move(events)))
        , m_file(path, format)
        , m_meter(format.channels)
        , m_powers(static_cast<std::size_t>(format.channels), silentPower)
        , m_timeline(format, [this](std::span<const std::byte> frames) { write(frames); })
        , m_capture(std::move(capture))
    {
        m_capture->start([this](const SoundBuffer &buffer) { take(buffer); });
    }

    ~WavRecorder() override { stop(); }

    void record() override
    {
        if (!m_capture || m_isRecording)
            return;
        m_isRecording = true;
        mark(true);
    }

    void pause() override
    {
        if (std::exchange(m_isRecording, false))
            mark(false);
    }

    void stop() override
    {
        pause();
        if (!m_capture)
            return;
        {
            std::unique_lock lock(m_mutex);
            m_progressed.wait_for(lock, longestTail, [this] { return m_marks.empty() && m_isComplete; });
        }
        m_capture.reset();
        // From here on all belongs to this thread.
        takeMarks();
        m_timeline.finish();
        try {
            m_file.close();
        } catch (const Error &failure) {
            fail(failure);
        }
    }

    bool isRecording() const override { return m_isRecording && !m_hasFailed; }

    void setMeteringEnabled(bool isEnabled) override { m_isMetering = isEnabled; }

    void updateMeters() override
    {
        if (m_isMetering)
            m_powers = m_meter.powers(silentPower);
    }

    float averagePower(int channel) const override { return m_powers.at(static_cast<std::size_t>(channel)); }

private:
    void mark(bool isBegin)
    {
        const std::lock_guard lock(m_mutex);
        m_marks.push_back({Clock::now(), isBegin});
    }

    // On the thread of the capture:

    void take(const SoundBuffer &buffer)
    {
        takeMarks();
        m_timeline.take(buffer);
        const std::lock_guard lock(m_mutex);
        m_isComplete = m_timeline.isComplete();
        if (m_isComplete)
            m_progressed.notify_all();
    }

    void takeMarks()
    {
        std::vector<Mark> marks;
        {
            const std::lock_guard lock(m_mutex);
            marks.swap(m_marks);
            m_isComplete = m_isComplete && marks.empty();
        }
        for (const Mark &mark : marks)
            mark.isBegin ? m_timeline.begin(mark.time) : m_timeline.end(mark.time);
    }

    void write(std::span<const std::byte> frames)
    {
        try {
            m_file.append(frames);
        } catch (const Error &failure) {
            fail(failure);
        }
        if (m_isMetering)
            m_meter.take(frames);
    }

    void fail(const Error &failure)
    {
        if (m_hasFailed.exchange(true))
            return;
        postToMain([events = std::weak_ptr(m_events), failure] {
            const auto listener = events.lock();
            if (listener && listener->failed)
                listener->failed(failure);
        });
    }

    std::shared_ptr<Events> m_events; ///< gone with this object: nothing is told any more
    bool m_isRecording = false;
    std::atomic<bool> m_hasFailed = false;
    std::atomic<bool> m_isMetering = false;

    std::mutex m_mutex; ///< of what both threads use:
    std::vector<Mark> m_marks; ///< not handed to the timeline yet
    bool m_isComplete = true; ///< whether the timeline waits for no more sound
    std::condition_variable m_progressed;

    WavFile m_file;
    PowerMeter m_meter;
    std::vector<float> m_powers;
    SoundTimeline m_timeline;
    std::unique_ptr<SoundCapture> m_capture; ///< none once stopped
};

} // namespace

std::unique_ptr<AudioRecorder> openAudioRecorder(const QString &path, const AudioFormat &format,
                                                 std::unique_ptr<SoundCapture> capture, AudioRecorder::Events events)
{
    return std::make_unique<WavRecorder>(path, format, std::move(capture), std::move(events));
}

} // namespace sorvanta
