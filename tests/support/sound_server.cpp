#include "support/sound_server.h"

#include "support/media_files.h"
#include "support/waiting.h"

#include <QFile>
#include <QTest>

#include <gtest/gtest.h>

#include <cmath>
#include <csignal>
#include <cstring>
#include <numeric>

namespace {

constexpr double pieceSeconds = 0.1;

std::size_t toSamples(double seconds)
{
    return seconds <= 0 ? 0 : static_cast<std::size_t>(std::lround(seconds * SoundRecording::sampleRate));
}

} // namespace

SoundServer::SoundServer()
{
    setVariable("PULSE_SERVER", "unix:" + QFile::encodeName(m_folder.filePath(QStringLiteral("native"))));
    setVariable("PULSE_COOKIE", QFile::encodeName(m_folder.filePath(QStringLiteral("cookie"))));
    start();
}

SoundServer::~SoundServer()
{
    kill();
    for (const auto &[name, value] : m_earlier)
        value ? qputenv(name.constData(), *value) : qunsetenv(name.constData());
}

void SoundServer::start()
{
    m_process.setProcessChannelMode(QProcess::ForwardedChannels);
    m_process.start(QStringLiteral(SORVANTA_SOUND_SERVER), {m_folder.path()});
    const bool answers = waitUntil([] {
        // A server may answer before it has its devices.
        QProcess question;
        question.start(QStringLiteral("pactl"), {QStringLiteral("get-default-source")});
        return question.waitForFinished(patience) && question.readAllStandardOutput() == "room.monitor\n";
    });
    ASSERT_TRUE(answers) << "the sound server did not start";
}

void SoundServer::kill()
{
    m_process.kill();
    m_process.waitForFinished(patience);
}

void SoundServer::suspend(bool isSuspended)
{
    ::kill(static_cast<pid_t>(m_process.processId()), isSuspended ? SIGSTOP : SIGCONT);
}

void SoundServer::setVariable(const char *name, const QByteArray &value)
{
    m_earlier.emplace_back(name, qEnvironmentVariableIsSet(name) ? std::optional(qgetenv(name)) : std::nullopt);
    qputenv(name, value);
}

SoundRecording::SoundRecording(const QString &device)
{
    m_process.start(QStringLiteral("parec"),
                    {QStringLiteral("--device=") + device, QStringLiteral("--format=s16le"),
                     QStringLiteral("--rate=%1").arg(static_cast<int>(sampleRate)), QStringLiteral("--channels=1"),
                     QStringLiteral("--latency-msec=20"), QStringLiteral("--raw")});
    EXPECT_TRUE(waitUntil([this] { return !samples().empty(); })) << "nothing is recorded";
}

SoundRecording::~SoundRecording()
{
    m_process.kill();
    m_process.waitForFinished(patience);
}

const std::vector<double> &SoundRecording::samples()
{
    m_rest += m_process.readAllStandardOutput();
    const qsizetype count = m_rest.size() / 2;
    for (qsizetype i = 0; i < count; ++i) {
        qint16 sample = 0;
        std::memcpy(&sample, m_rest.constData() + 2 * i, sizeof sample);
        m_samples.push_back(sample / 32768.0);
    }
    m_rest.remove(0, 2 * count);
    return m_samples;
}

double SoundRecording::seconds()
{
    return static_cast<double>(samples().size()) / sampleRate;
}

void SoundRecording::hear(double seconds)
{
    const double end = this->seconds() + seconds;
    ASSERT_TRUE(waitUntil([this, end] { return this->seconds() >= end; })) << "the recording ended";
}

std::vector<SoundSpan> soundSpans(const std::vector<double> &samples)
{
    constexpr double step = 0.005;
    constexpr double shortestSilence = 0.06;
    constexpr double silence = 0.004;
    std::vector<SoundSpan> spans;
    const double end = static_cast<double>(samples.size()) / SoundRecording::sampleRate;
    for (double at = 0; at + step <= end; at += step) {
        if (level(samples, at, at + step, SoundRecording::sampleRate) < silence)
            continue;
        if (spans.empty() || at - spans.back().end > shortestSilence)
            spans.push_back({at, at + step});
        else
            spans.back().end = at + step;
    }
    return spans;
}

SoundReference::SoundReference(const QString &path)
{
    const QByteArray bytes =
        outputOf(QStringLiteral("ffmpeg"),
                 {QStringLiteral("-nostdin"), QStringLiteral("-v"), QStringLiteral("error"), QStringLiteral("-i"),
                  QStringLiteral("file:") + path, QStringLiteral("-ac"), QStringLiteral("1"), QStringLiteral("-ar"),
                  QString::number(static_cast<int>(SoundRecording::sampleRate)), QStringLiteral("-f"),
                  QStringLiteral("f64le"), QStringLiteral("-")});
    m_samples.resize(static_cast<std::size_t>(bytes.size()) / sizeof(double));
    std::memcpy(m_samples.data(), bytes.constData(), m_samples.size() * sizeof(double));
}

std::optional<double> SoundReference::timeOf(const std::vector<double> &recorded, double at) const
{
    constexpr double likeness = 0.7;
    const std::size_t length = toSamples(pieceSeconds);
    const std::size_t first = toSamples(at);
    if (first + length > recorded.size() || length > m_samples.size())
        return std::nullopt;
    const auto product = [length](auto a, auto b) {
        return std::inner_product(a, a + static_cast<std::ptrdiff_t>(length), b, 0.0);
    };
    const auto piece = recorded.begin() + static_cast<std::ptrdiff_t>(first);
    const double energy = product(piece, piece);
    double best = 0;
    std::optional<double> found;
    for (std::size_t i = 0; i + length <= m_samples.size(); ++i) {
        const auto here = m_samples.begin() + static_cast<std::ptrdiff_t>(i);
        const double likely = product(piece, here);
        if (likely <= best * std::sqrt(energy * 1e-12))
            continue;
        const double relation = likely / std::sqrt(energy * product(here, here) + 1e-12);
        if (relation > best) {
            best = relation;
            found = static_cast<double>(i) / SoundRecording::sampleRate;
        }
    }
    return best >= likeness ? found : std::nullopt;
}

std::optional<double> SoundReference::beginOf(const std::vector<double> &recorded, SoundSpan span) const
{
    // A sound that starts is ramped up, or its first piece is lost; then the next one tells.
    for (double later = 0.02; later < 1 && span.begin + later + pieceSeconds < span.end; later += 0.05) {
        if (const auto time = timeOf(recorded, span.begin + later))
            return *time - later;
    }
    return std::nullopt;
}

std::optional<double> SoundReference::endOf(const std::vector<double> &recorded, SoundSpan span) const
{
    for (double earlier = 0.02 + pieceSeconds; earlier < 1 && span.end - earlier > span.begin; earlier += 0.05) {
        if (const auto time = timeOf(recorded, span.end - earlier))
            return *time + earlier;
    }
    return std::nullopt;
}
