// The mixdown of a meeting of two hours, the system's M4A with the microphone's WAV, beside the same by the ffmpeg
// program, each in a process of its own; with the encoder's fast search, which the mixdown uses, and with that which
// the program uses unasked. Prints the median of the ratios; the runs alternate.

#include "audio/recording_mixer.h"
#include "whole_process.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <chrono>
#include <cstdio>

using namespace sorvanta;

namespace {

constexpr int repetitions = 3;

/// A changing sound with a little noise, and pauses as between sentences; ten minutes of it, repeated.
void makeInputs(const QDir &folder, int hours)
{
    const auto make = [&](const QString &name, const QString &sound, const QStringList &encoding) {
        const QString part = folder.filePath(u"part-"_qs + name);
        runProcess(ffmpeg(QStringList{u"-f"_qs, u"lavfi"_qs, u"-i"_qs, sound} + encoding + QStringList{part}));
        runProcess(ffmpeg({u"-stream_loop"_qs, QString::number(6 * hours - 1), u"-i"_qs, part, u"-c"_qs, u"copy"_qs,
                           folder.filePath(name)}));
    };
    make(u"system.m4a"_qs,
         u"aevalsrc='lt(mod(t,7),5)*0.3*sin(2*PI*(300+200*sin(t))*t)*sin(3*t)+0.01*(random(0)-0.5)|"
         u"lt(mod(t,7),5)*0.3*sin(2*PI*(500+100*sin(t))*t)*cos(2*t)+0.01*(random(1)-0.5)':s=44100:d=600"_qs,
         {u"-c:a"_qs, u"aac"_qs, u"-b:a"_qs, u"128k"_qs});
    make(u"mic.wav"_qs,
         u"aevalsrc='gt(mod(t,7),4)*0.3*sin(2*PI*(200+150*sin(t))*t)*sin(4*t)+0.01*(random(2)-0.5)':s=44100:d=600"_qs,
         {u"-c:a"_qs, u"pcm_s16le"_qs});
}

QStringList ours(const QDir &folder)
{
    return {QCoreApplication::applicationFilePath(), u"--mix"_qs, folder.path()};
}

QStringList theirs(const QDir &folder, const QString &search)
{
    return ffmpeg({u"-i"_qs, folder.filePath(u"system.m4a"_qs), u"-i"_qs, folder.filePath(u"mic.wav"_qs),
                   u"-filter_complex"_qs, u"amix=inputs=2:duration=first:normalize=0"_qs, u"-ac"_qs, u"2"_qs, u"-ar"_qs,
                   u"44100"_qs, u"-c:a"_qs, u"aac"_qs, u"-aac_coder"_qs, search, u"-b:a"_qs, u"128k"_qs,
                   folder.filePath(u"theirs.m4a"_qs)});
}

void compare(const QDir &folder, const QString &search)
{
    const Comparison seen = compareProcesses(ours(folder), theirs(folder, search), repetitions);
    std::printf("%.2f of the time of the ffmpeg program with -aac_coder %s (%.2f to %.2f); %.1f s, at most %.0f MB\n",
                seen.ratio, qPrintable(search), seen.leastRatio, seen.greatestRatio, seen.seconds, seen.megabytes);
    std::fflush(stdout);
}

/// What a child process does: one mix, without the limit of the application, and nothing is left of it.
int mix(const QDir &folder)
{
    RecordingMixer::Settings settings;
    settings.limit = std::chrono::hours(1);
    const QString output = folder.filePath(u"ours.m4a"_qs);
    const bool isMixed = RecordingMixer(settings).mixRecordings(folder.filePath(u"system.m4a"_qs),
                                                                folder.filePath(u"mic.wav"_qs), output);
    QFile::remove(output);
    return isMixed ? 0 : 1;
}

} // namespace

int main(int argumentCount, char **arguments)
{
    QCoreApplication application(argumentCount, arguments);
    const QStringList words = QCoreApplication::arguments();
    if (words.size() == 3 && words[1] == u"--mix")
        return mix(QDir(words[2]));

    QTemporaryDir temporary;
    const QDir folder(temporary.path());
    makeInputs(folder, 2);
    std::printf("two hours, two channels and one:\n");
    compare(folder, u"fast"_qs);
    compare(folder, u"twoloop"_qs);
    return 0;
}
