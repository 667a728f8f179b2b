#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

#include <vector>

// Media files made and judged by programs that share no code with what is tested: ffmpeg, ffprobe and sox.

/// A new folder that is also the temporary folder of the process, for as long as this object lives.
class MediaFolder {
public:
    MediaFolder();
    ~MediaFolder();

    QString path(const QString &name) const;
    /// The path of a new file with these bytes.
    QString write(const QString &name, const QByteArray &bytes) const;
    /// The path of a new file that the ffmpeg program makes with `arguments`, blank-separated.
    QString make(const QString &name, const QString &arguments) const;
    /// All names in the folder, sorted.
    QStringList names() const;

private:
    QTemporaryDir m_folder;
    bool m_wasSet;
    QByteArray m_earlier;
};

/// The standard output of a program, which must end with 0.
QByteArray outputOf(const QString &program, const QStringList &arguments);

/// What the file `path` holds, as ffprobe tells it: "wav pcm_s16le 16000 1".
QString describedFormat(const QString &path);

/// The samples of the first channel as the ffmpeg program reads them, from -1 to 1.
std::vector<double> samplesOf(const QString &path);

/// Ten to the power of a twentieth of it is the ratio of the amplitudes.
double decibels(double amplitude);

/// The amplitude of the sine of `frequency` within `samples`.
double toneAmplitude(const std::vector<double> &samples, double frequency, double sampleRate);

/// The same of the sound from `from` to `to`, in seconds, as the median of short pieces: where a busy server leaves
/// some sound out, or a frame is put in so that a recording keeps pace with time, what follows has another phase.
double heardAmplitude(const std::vector<double> &samples, double frequency, double from, double to, double sampleRate);

/// The root of the mean square of samples [from, to), in seconds at `sampleRate`.
double level(const std::vector<double> &samples, double from, double to, double sampleRate);
