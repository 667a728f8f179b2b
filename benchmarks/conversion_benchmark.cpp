// Whole conversions beside those of the ffmpeg program, each in a process of its own: one hour of an M4A and of an MP4
// with picture for the time, five hours for the memory. Prints the median of the ratios; the runs alternate.

#include "core/audio_preparer.h"
#include "platform/error.h"
#include "whole_process.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QThread>

#include <cstdio>

using namespace sorvanta;

namespace {

constexpr int repetitions = 7;

/// One hour of changing sound with a small picture; the M4A is its sound alone, the long file five times both.
void makeInputs(const QDir &folder)
{
    const QString movie = folder.filePath(u"hour.mp4"_qs);
    runProcess(ffmpeg({u"-f"_qs, u"lavfi"_qs, u"-i"_qs, u"testsrc=size=320x180:rate=25:duration=600"_qs, u"-f"_qs,
                       u"lavfi"_qs, u"-i"_qs,
                       u"aevalsrc='0.3*sin(2*PI*(300+200*sin(t))*t)*sin(3*t)+0.05*(random(0)-0.5)|"
                       u"0.3*sin(2*PI*(500+100*sin(t))*t)*cos(2*t)+0.05*(random(1)-0.5)':s=44100:d=600"_qs,
                       u"-c:v"_qs, u"libx264"_qs, u"-preset"_qs, u"ultrafast"_qs, u"-c:a"_qs, u"aac"_qs, u"-b:a"_qs,
                       u"128k"_qs, folder.filePath(u"part.mp4"_qs)}));
    const auto repeat = [&](int times, const QString &output, const QStringList &streams) {
        runProcess(ffmpeg(QStringList{u"-stream_loop"_qs, QString::number(times - 1), u"-i"_qs,
                                      folder.filePath(u"part.mp4"_qs), u"-c"_qs, u"copy"_qs}
                          + streams + QStringList{output}));
    };
    repeat(6, movie, {});
    repeat(6, folder.filePath(u"hour.m4a"_qs), {u"-vn"_qs});
    repeat(30, folder.filePath(u"five_hours.mp4"_qs), {});
}

QStringList ours(const QString &input)
{
    return {QCoreApplication::applicationFilePath(), u"--convert"_qs, input};
}

QStringList theirs(const QString &input, const QString &output)
{
    return ffmpeg(
        {u"-i"_qs, input, u"-vn"_qs, u"-ac"_qs, u"1"_qs, u"-ar"_qs, u"16000"_qs, u"-c:a"_qs, u"pcm_s16le"_qs, output});
}

void compare(const char *name, const QString &input, const QString &output)
{
    const Comparison seen = compareProcesses(ours(input), theirs(input, output), repetitions);
    std::printf("%s: %.2f of the time of the ffmpeg program (%.2f to %.2f); %.1f s\n", name, seen.ratio,
                seen.leastRatio, seen.greatestRatio, seen.seconds);
}

/// What a child process does: one conversion, and nothing is left of it.
int convert(const QString &input)
{
    TemporaryFiles files;
    const std::optional<QString> result = AudioPreparer(files).convertToWav(input, u"sv.wav.convert"_qs);
    QFile::remove(result.value_or(QString()));
    return result ? 0 : 1;
}

} // namespace

int main(int argumentCount, char **arguments)
{
    QCoreApplication application(argumentCount, arguments);
    const QStringList words = QCoreApplication::arguments();
    if (words.size() == 3 && words[1] == u"--convert")
        return convert(words[2]);
    if (words.size() == 2 && words[1] == u"--idle")
        return 0;

    QTemporaryDir temporary;
    const QDir folder(temporary.path());
    qputenv("TMPDIR", temporary.path().toUtf8());
    makeInputs(folder);
    compare("one hour, M4A", folder.filePath(u"hour.m4a"_qs), folder.filePath(u"out.wav"_qs));
    compare("one hour, MP4 with picture", folder.filePath(u"hour.mp4"_qs), folder.filePath(u"out.wav"_qs));
    const double idle = runProcess({QCoreApplication::applicationFilePath(), u"--idle"_qs}).megabytes;
    const double busy = runProcess(ours(folder.filePath(u"five_hours.mp4"_qs))).megabytes;
    std::printf("five hours, MP4 with picture: %.1f MB more than the idle process\n", busy - idle);
    return 0;
}
