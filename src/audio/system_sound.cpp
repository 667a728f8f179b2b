#include "audio/system_sound.h"

#include "platform/media/sound_capture.h"

#include <atomic>
#include <optional>
#include <semaphore>
#include <utility>

namespace sorvanta {

namespace {

constexpr auto longestStop = std::chrono::milliseconds(500);

/// In the terms of the recorder: no sink is no display, and a server that lets nobody in is a user who declined.
SystemSound::Answer answerTo(const Error &failure)
{
    switch (failure.code()) {
    case SoundCapture::NoDevice:
        return {};
    case SoundCapture::Refused:
        return {.failure =
                    Error(QLatin1String(systemSoundErrorDomain), systemSoundDeclined, failure.localizedDescription())};
    default:
        return {.failure = failure};
    }
}

class CapturedSystemSound : public SystemSound {
public:
    CapturedSystemSound(const AudioFormat &format, const std::function<void(Answer)> &answer)
        : m_format(format)
    {
        m_capture.emplace(
            SoundSource::SystemOutput, format, QStringLiteral("ScreenAudioRecorder.audio"),
            SoundCapture::Events{.opened = [answer] { answer({.hasDisplay = true}); },
                                 .failedToOpen = [answer](const Error &failure) { answer(answerTo(failure)); }});
    }

    void start(Receive receive) override
    {
        m_capture->start([this, receive = std::move(receive)](const SoundBuffer &buffer) {
            receive(buffer);
            const auto frames = static_cast<qint64>(buffer.frames.size()) / m_format.bytesPerFrame();
            if (buffer.time + soundDuration(frames, m_format.sampleRate) >= m_stopTime.load())
                m_reachedStop.release();
        });
    }

    void stop(SoundTime time) override
    {
        m_stopTime = time;
        static_cast<void>(m_reachedStop.try_acquire_for(longestStop));
        m_capture.reset();
    }

private:
    AudioFormat m_format;
    std::atomic<SoundTime> m_stopTime = SoundTime::max();
    std::counting_semaphore<> m_reachedStop{0};
    std::optional<SoundCapture> m_capture;
};

} // namespace

std::unique_ptr<SystemSound> openSystemSound(const AudioFormat &format,
                                             const std::function<void(SystemSound::Answer)> &answer)
{
    return std::make_unique<CapturedSystemSound>(format, answer);
}

} // namespace sorvanta
