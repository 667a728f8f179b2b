#pragma once

#include "screens/microphone/record_audio_view.h"
#include "support/silent_media.h"

#include <QFile>
#include <QStringList>

#include <functional>
#include <memory>
#include <optional>
#include <utility>

/// What a test sees and decides of the microphone of a screen.
struct FakeMicrophone {
    /// Each call, in order: "ask", "open", "record", "pause", "stop", "release".
    QStringList calls;
    std::function<void(bool)> answer; ///< of the last question
    std::optional<sorvanta::Error> refusal; ///< what making a recorder fails with
    QString path; ///< of the last recorder's file
    float power = sorvanta::silentPower; ///< what the meters show once they are updated
    double length = 0; ///< of the sound in a new file, in seconds; 0: the file says "a take" and holds no sound
    sorvanta::Microphone::Events events;
    sorvanta::AudioRecorder::Events recorderEvents;

    sorvanta::RecordAudioView::MakeInput input();
    QStringList takeCalls() { return std::exchange(calls, {}); }

private:
    void writeFile() const
    {
        if (length > 0) {
            writeWav(path, length);
            return;
        }
        QFile file(path);
        file.open(QIODevice::WriteOnly);
        file.write("a take");
    }
};

class FakeRecorder : public sorvanta::AudioRecorder {
public:
    explicit FakeRecorder(FakeMicrophone &microphone)
        : m_microphone(microphone)
    {
    }
    ~FakeRecorder() override { m_microphone.calls << QStringLiteral("release"); }

    void record() override { take(QStringLiteral("record"), true); }
    void pause() override { take(QStringLiteral("pause"), false); }
    void stop() override { take(QStringLiteral("stop"), false); }
    bool isRecording() const override { return m_isRecording; }
    void setMeteringEnabled(bool isEnabled) override { m_isMetering = isEnabled; }
    void updateMeters() override
    {
        if (m_isMetering)
            m_power = m_microphone.power;
    }
    float averagePower(int channel) const override { return channel == 0 ? m_power : sorvanta::silentPower; }

private:
    void take(const QString &call, bool isRecording)
    {
        m_microphone.calls << call;
        m_isRecording = isRecording;
    }

    FakeMicrophone &m_microphone;
    bool m_isRecording = false;
    bool m_isMetering = false;
    float m_power = sorvanta::silentPower;
};

inline sorvanta::RecordAudioView::MakeInput FakeMicrophone::input()
{
    return [this](sorvanta::Microphone::Events told) {
        events = std::move(told);
        return sorvanta::RecordAudioView::Input{
            .requestAccess =
                [this](std::function<void(bool)> asked) {
                    calls << QStringLiteral("ask");
                    answer = std::move(asked);
                },
            .makeRecorder = [this](const QString &newPath, sorvanta::AudioRecorder::Events recorderTold)
                -> std::unique_ptr<sorvanta::AudioRecorder> {
                calls << QStringLiteral("open");
                if (refusal)
                    throw sorvanta::Error(*refusal);
                path = newPath;
                recorderEvents = std::move(recorderTold);
                writeFile();
                return std::make_unique<FakeRecorder>(*this);
            }};
    };
}
