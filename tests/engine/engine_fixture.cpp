#include "engine/engine_fixture.h"

#include "platform/media/audio_writer.h"
#include "scripted_model/scripted_model.h"
#include "support/waiting.h"

#include <QFile>
#include <QTest>

#include <cmath>
#include <cstdint>
#include <numbers>
#include <span>
#include <vector>

using namespace sorvanta;

namespace {

constexpr int sampleRate = 16000;

template<typename Sample>
std::vector<Sample> samples(double seconds, double loudest)
{
    std::vector<Sample> result(static_cast<std::size_t>(seconds * sampleRate));
    for (std::size_t i = 0; i < result.size(); ++i) {
        const double phase = 2 * std::numbers::pi * 220 * static_cast<double>(i) / sampleRate;
        result[i] = static_cast<Sample>(0.3 * loudest * std::sin(phase));
    }
    return result;
}

template<typename Sample>
bool append(AudioWriter &writer, const std::vector<Sample> &samples)
{
    return writer.append(std::as_bytes(std::span(samples)));
}

} // namespace

std::unique_ptr<QTemporaryDir> EngineTest::s_folder;

void EngineTest::SetUpTestSuite()
{
    // The engine has more threads than a busy machine has processors, and its threads would spin for each other.
    qputenv("OMP_WAIT_POLICY", "passive");
    s_folder = std::make_unique<QTemporaryDir>();
    ASSERT_TRUE(s_folder->isValid());
    ScriptedModel model = ScriptedModel::demonstration();
    model.write(quickModel().toStdString());
    model.audioLayers = 32;
    model.write(slowModel().toStdString());
}

void EngineTest::TearDownTestSuite()
{
    s_folder.reset();
}

void EngineTest::start(const QString &audio, const QString &model, const QString &language)
{
    run.start(audio, model, language);
}

void EngineTest::waitForEnd()
{
    ASSERT_TRUE(waitUntil([this] { return !run.isTranscribing(); }, 2 * patience));
}

void EngineTest::transcribe(const QString &audio, const QString &model, const QString &language)
{
    start(audio, model, language);
    waitForEnd();
}

QString EngineTest::writeFile(const QString &name, const QByteArray &bytes)
{
    QFile file(path(name));
    EXPECT_TRUE(file.open(QIODevice::WriteOnly));
    EXPECT_EQ(file.write(bytes), bytes.size());
    return file.fileName();
}

QByteArray EngineTest::bytesOf(const QString &path)
{
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    return file.readAll();
}

QString EngineTest::tone(const QString &name, double seconds)
{
    const QString file = path(name);
    QFile::remove(file);
    const bool isWav = name.endsWith(QStringLiteral(".wav"));
    AudioWriter writer(
        file, {isWav ? AudioFileSettings::Container::Wav : AudioFileSettings::Container::M4a, sampleRate, 1, 0});
    EXPECT_TRUE(isWav ? append(writer, samples<std::int16_t>(seconds, 32767))
                      : append(writer, samples<float>(seconds, 1)));
    EXPECT_TRUE(writer.finish());
    return file;
}

QStringList EngineTest::recitedLines()
{
    QStringList lines;
    for (const auto &window : ScriptedModel::demonstration().windows) {
        for (const ScriptedLine &line : window)
            lines << QString::fromStdString(line.text);
    }
    return lines;
}
