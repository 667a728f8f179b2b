#pragma once

#include "audio/screen_audio_recorder.h"

#include <QElapsedTimer>
#include <QFile>
#include <QString>
#include <QStringList>

#include <cmath>
#include <numbers>
#include <vector>

/// Seconds of a tone on both channels, as the system's sound comes.
inline std::vector<float> tone(double frequency, double seconds, double amplitude = 0.25, int rate = 44100)
{
    std::vector<float> samples;
    for (int i = 0; i < static_cast<int>(std::lround(seconds * rate)); ++i) {
        const auto value = static_cast<float>(amplitude * std::sin(2 * std::numbers::pi * frequency * i / rate));
        samples.insert(samples.end(), 2, value);
    }
    return samples;
}

/// What a machine of a test plays and hears. Time is the test's own: it passes as sound is handed over.
struct FakeSound {
    /// Each call, in order: "open", "start", "stop", "ask for the microphone", "record", "stop the microphone".
    QStringList calls;
    std::function<void(sorvanta::SystemSound::Answer)> answerOpening;
    std::function<void(bool)> answerMic;
    sorvanta::SystemSound::Receive receive;
    std::optional<sorvanta::Error> micRefusal;
    std::optional<sorvanta::Error> openingFailure;
    QString micPath;
    /// What the microphone's file holds when it is stopped: seconds of 1000 Hz at an amplitude of 0.25; below 0
    /// nothing.
    double micSeconds = 3;
    sorvanta::SoundTime begin; ///< when the stream was started
    double now = 0; ///< seconds of sound handed over since then

    sorvanta::ScreenAudioRecorder::Surroundings surroundings();

    /// Hands over so many seconds of a tone, in buffers of 20 milliseconds.
    void play(double frequency, double seconds, double amplitude = 0.25)
    {
        const std::vector<float> samples = tone(frequency, seconds, amplitude);
        constexpr std::size_t buffer = 2 * 882;
        for (std::size_t i = 0; i < samples.size(); i += buffer) {
            const auto piece = std::span(samples).subspan(i, std::min(buffer, samples.size() - i));
            if (receive)
                receive({std::as_bytes(piece), time(), i > 0});
            now += static_cast<double>(piece.size()) / 2 / 44100;
        }
    }
    /// No sound comes for so long.
    void pass(double seconds) { now += seconds; }

    sorvanta::SoundTime time() const
    {
        return begin + std::chrono::duration_cast<sorvanta::SoundTime::duration>(std::chrono::duration<double>(now));
    }

    /// Whether sound is being captured.
    bool isOpen = false;
    bool isMicOpen = false;
};

class FakeSystemSound : public sorvanta::SystemSound {
public:
    explicit FakeSystemSound(FakeSound &sound)
        : m_sound(sound)
    {
    }
    ~FakeSystemSound() override
    {
        m_sound.isOpen = false;
        m_sound.receive = {};
        m_sound.calls << QStringLiteral("release");
    }
    void start(Receive receive) override
    {
        m_sound.calls << QStringLiteral("start");
        m_sound.receive = std::move(receive);
        m_sound.begin = sorvanta::SoundTime::clock::now();
        m_sound.now = 0;
        m_sound.isOpen = true;
    }
    void stop(sorvanta::SoundTime) override
    {
        m_sound.calls << QStringLiteral("stop");
        m_sound.receive = {};
        m_sound.isOpen = false;
    }

private:
    FakeSound &m_sound;
};

/// Writes its file when it is stopped.
class FakeMicRecorder : public sorvanta::AudioRecorder {
public:
    FakeMicRecorder(FakeSound &sound, QString path)
        : m_sound(sound)
        , m_path(std::move(path))
    {
    }
    ~FakeMicRecorder() override { m_sound.isMicOpen = false; }
    void record() override
    {
        m_sound.calls << QStringLiteral("record");
        m_sound.isMicOpen = true;
    }
    void pause() override { m_sound.calls << QStringLiteral("pause the microphone"); }
    void stop() override
    {
        m_sound.calls << QStringLiteral("stop the microphone");
        if (m_sound.micSeconds < 0)
            return;
        sorvanta::AudioWriter writer(m_path, {sorvanta::AudioFileSettings::Container::Wav, 44100, 1, 0});
        std::vector<std::int16_t> samples;
        for (const float sample : tone(1000, m_sound.micSeconds))
            samples.push_back(static_cast<std::int16_t>(std::lround(sample * 32768)));
        std::vector<std::int16_t> mono;
        for (std::size_t i = 0; i < samples.size(); i += 2)
            mono.push_back(samples[i]);
        writer.append(std::as_bytes(std::span(mono)));
        writer.finish();
    }
    bool isRecording() const override { return m_sound.isMicOpen; }
    void setMeteringEnabled(bool) override { }
    void updateMeters() override { }
    float averagePower(int) const override { return sorvanta::silentPower; }

private:
    FakeSound &m_sound;
    QString m_path;
};

inline sorvanta::ScreenAudioRecorder::Surroundings FakeSound::surroundings()
{
    using namespace sorvanta;
    ScreenAudioRecorder::Surroundings result;
    result.openSystemSound = [this](const AudioFormat &, std::function<void(SystemSound::Answer)> answer) {
        calls << QStringLiteral("open");
        if (openingFailure)
            throw Error(*openingFailure);
        answerOpening = std::move(answer);
        return std::make_unique<FakeSystemSound>(*this);
    };
    result.requestMicAccess = [this](std::function<void(bool)> answer) {
        calls << QStringLiteral("ask for the microphone");
        answerMic = std::move(answer);
    };
    result.makeMicRecorder = [this](const QString &path) -> std::unique_ptr<AudioRecorder> {
        micPath = path;
        if (micRefusal)
            throw Error(*micRefusal);
        return std::make_unique<FakeMicRecorder>(*this, path);
    };
    return result;
}
