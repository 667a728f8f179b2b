#include "support/media_files.h"

#include <QDir>
#include <QFile>
#include <QProcess>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <numbers>

MediaFolder::MediaFolder()
    : m_wasSet(qEnvironmentVariableIsSet("TMPDIR"))
    , m_earlier(qgetenv("TMPDIR"))
{
    qputenv("TMPDIR", QFile::encodeName(m_folder.path()));
}

MediaFolder::~MediaFolder()
{
    m_wasSet ? qputenv("TMPDIR", m_earlier) : qunsetenv("TMPDIR");
}

QString MediaFolder::path(const QString &name) const
{
    return m_folder.filePath(name);
}

QString MediaFolder::write(const QString &name, const QByteArray &bytes) const
{
    QFile file(path(name));
    EXPECT_TRUE(file.open(QIODevice::WriteOnly));
    EXPECT_EQ(file.write(bytes), bytes.size());
    return path(name);
}

QString MediaFolder::make(const QString &name, const QString &arguments) const
{
    outputOf(u"ffmpeg"_qs, QStringList{u"-nostdin"_qs, u"-v"_qs, u"error"_qs} + arguments.split(u' ')
                               + QStringList{u"file:"_qs + path(name)});
    return path(name);
}

QStringList MediaFolder::names() const
{
    return QDir(m_folder.path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot, QDir::Name);
}

QByteArray outputOf(const QString &program, const QStringList &arguments)
{
    QProcess process;
    process.start(program, arguments);
    EXPECT_TRUE(process.waitForFinished(120000)) << program.toStdString();
    EXPECT_EQ(process.exitCode(), 0) << arguments.join(u' ').toStdString()
                                     << process.readAllStandardError().toStdString();
    return process.readAllStandardOutput();
}

QString describedFormat(const QString &path)
{
    const QByteArray output =
        outputOf(u"ffprobe"_qs, {u"-v"_qs, u"error"_qs, u"-of"_qs, u"csv=p=0:s=\\ "_qs, u"-show_entries"_qs,
                                 u"stream=codec_name,sample_rate,channels:format=format_name"_qs, u"file:"_qs + path});
    const QStringList lines = QString::fromUtf8(output).split(u'\n', Qt::SkipEmptyParts);
    EXPECT_EQ(lines.size(), 2) << output.toStdString();
    return lines.isEmpty() ? QString() : lines.last() + u' ' + lines.first();
}

std::vector<double> samplesOf(const QString &path)
{
    const QByteArray bytes =
        outputOf(u"ffmpeg"_qs, {u"-nostdin"_qs, u"-v"_qs, u"error"_qs, u"-i"_qs, u"file:"_qs + path, u"-af"_qs,
                                u"pan=mono|c0=c0"_qs, u"-f"_qs, u"f64le"_qs, u"-"_qs});
    std::vector<double> samples(static_cast<std::size_t>(bytes.size()) / sizeof(double));
    std::memcpy(samples.data(), bytes.constData(), samples.size() * sizeof(double));
    return samples;
}

double decibels(double amplitude)
{
    return 20 * std::log10(amplitude);
}

double toneAmplitude(const std::vector<double> &samples, double frequency, double sampleRate)
{
    double real = 0;
    double imaginary = 0;
    for (std::size_t i = 0; i < samples.size(); ++i) {
        const double angle = 2 * std::numbers::pi * frequency * static_cast<double>(i) / sampleRate;
        real += samples[i] * std::cos(angle);
        imaginary += samples[i] * std::sin(angle);
    }
    return 2 * std::hypot(real, imaginary) / static_cast<double>(samples.size());
}

double heardAmplitude(const std::vector<double> &samples, double frequency, double from, double to, double sampleRate)
{
    constexpr double longest = 0.1;
    const int count = std::max(1, static_cast<int>((to - from) / longest));
    const double length = std::min(longest, to - from);
    std::vector<double> pieces;
    for (int i = 0; i < count; ++i) {
        const auto begin = samples.begin() + static_cast<std::ptrdiff_t>((from + i * length) * sampleRate);
        pieces.push_back(
            toneAmplitude({begin, begin + static_cast<std::ptrdiff_t>(length * sampleRate)}, frequency, sampleRate));
    }
    const auto median = pieces.begin() + count / 2;
    std::nth_element(pieces.begin(), median, pieces.end());
    return *median;
}

double level(const std::vector<double> &samples, double from, double to, double sampleRate)
{
    const auto first = static_cast<std::size_t>(from * sampleRate);
    const auto last = std::min(samples.size(), static_cast<std::size_t>(to * sampleRate));
    double sum = 0;
    for (std::size_t i = first; i < last; ++i)
        sum += samples[i] * samples[i];
    return last > first ? std::sqrt(sum / static_cast<double>(last - first)) : 0;
}
