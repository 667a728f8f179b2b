#pragma once

#include <QProcess>
#include <QString>
#include <QTemporaryDir>

#include <optional>
#include <vector>

/// The server of sound_server.sh, which this process and its children use as long as this object lives.
class SoundServer {
public:
    /// Starts the server and waits until it has its devices.
    SoundServer();
    ~SoundServer();

    /// To be called after kill(), with the same address as before.
    void start();
    /// Ends the server as a crash would.
    void kill();
    /// Makes the server hang, or go on.
    void suspend(bool isSuspended);

private:
    void setVariable(const char *name, const QByteArray &value);

    QTemporaryDir m_folder;
    QProcess m_process;
    std::vector<std::pair<QByteArray, std::optional<QByteArray>>> m_earlier;
};

/// What one would hear from a device of the server, from the making of this object on. It begins to hear at once and
/// ends with the server.
class SoundRecording {
public:
    static constexpr double sampleRate = 8000;

    explicit SoundRecording(const QString &device = QStringLiteral("speaker.monitor"));
    ~SoundRecording();

    /// All samples so far, from -1 to 1. The main loop must run for more to come.
    const std::vector<double> &samples();
    double seconds();
    /// Lets the main loop run until this many more seconds have been recorded.
    void hear(double seconds);

private:
    QProcess m_process;
    QByteArray m_rest;
    std::vector<double> m_samples;
};

/// A stretch of sound between silence, in seconds of a recording.
struct SoundSpan {
    double begin;
    double end;
    double length() const { return end - begin; }
};

/// The stretches of sound, in order. Silence shorter than 60 ms does not part them.
std::vector<SoundSpan> soundSpans(const std::vector<double> &samples);

/// The sound of a file as the ffmpeg program reads it, in which recorded pieces are found again. It must nowhere sound
/// the same twice.
class SoundReference {
public:
    explicit SoundReference(const QString &path);

    double seconds() const { return static_cast<double>(m_samples.size()) / SoundRecording::sampleRate; }
    /// Where in the file the piece stands that begins in `recorded` at `at`, both in seconds; none if it is not of
    /// the file.
    std::optional<double> timeOf(const std::vector<double> &recorded, double at) const;
    /// Where in the file the stretch begins.
    std::optional<double> beginOf(const std::vector<double> &recorded, SoundSpan span) const;
    /// Where in the file the stretch ends.
    std::optional<double> endOf(const std::vector<double> &recorded, SoundSpan span) const;

private:
    std::vector<double> m_samples;
};
