#include "platform/media/microphone.h"

#include <utility>

namespace sorvanta {

Microphone::Microphone(const AudioFormat &format, QString threadName, Events events)
    : m_format(format)
    , m_threadName(std::move(threadName))
    , m_events(std::move(events))
{
}

void Microphone::requestAccess(std::function<void(bool)> answer)
{
    m_answer = std::move(answer);
    m_failure.reset();
    m_capture.reset();
    m_capture = std::make_unique<SoundCapture>(
        SoundSource::Microphone, m_format, m_threadName,
        SoundCapture::Events{.opened = [this] { this->answer(true); },
                             .failedToOpen =
                                 [this](const Error &failure) {
                                     m_failure = failure;
                                     this->answer(failure.code() != SoundCapture::Refused
                                                  && failure.code() != SoundCapture::NoDevice);
                                 },
                             .interrupted = m_events.interrupted,
                             .resumed = m_events.resumed});
}

void Microphone::answer(bool isGranted)
{
    if (!isGranted)
        m_capture.reset();
    const std::weak_ptr<int> life = m_life;
    if (const auto answer = std::exchange(m_answer, {}))
        answer(isGranted);
    if (!life.expired() && !m_answer)
        m_capture.reset();
}

std::unique_ptr<AudioRecorder> Microphone::makeRecorder(const QString &path, AudioRecorder::Events events)
{
    std::unique_ptr<SoundCapture> capture = std::move(m_capture);
    if (m_failure)
        throw *m_failure;
    return openAudioRecorder(path, m_format, std::move(capture), std::move(events));
}

} // namespace sorvanta
