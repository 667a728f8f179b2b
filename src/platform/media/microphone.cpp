#include "platform/media/microphone.h"

#include "platform/main_queue.h"

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
    m_request = std::make_shared<int>();
    m_answer = std::move(answer);
    m_failure.reset();
    m_capture.reset();
    try {
        m_capture = std::make_unique<SoundCapture>(
            SoundSource::Microphone, m_format, m_threadName,
            SoundCapture::Events{.opened = [this] { this->answer(true); },
                                 .failedToOpen = [this](const Error &failure) { fail(failure); },
                                 .interrupted = m_events.interrupted,
                                 .resumed = m_events.resumed});
    } catch (const Error &failure) {
        postToMain([this, request = std::weak_ptr(m_request), failure] {
            if (!request.expired())
                fail(failure);
        });
    }
}

void Microphone::fail(const Error &failure)
{
    m_failure = failure;
    answer(failure.code() != SoundCapture::Refused && failure.code() != SoundCapture::NoDevice);
}

void Microphone::answer(bool isGranted)
{
    if (!isGranted)
        m_capture.reset();
    const std::weak_ptr<int> request = m_request;
    if (const auto answer = std::exchange(m_answer, {}))
        answer(isGranted);
    if (!request.expired())
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
