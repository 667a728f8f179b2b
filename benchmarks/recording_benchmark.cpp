// A meeting recorded with its microphone for as many minutes as the argument says, ten without one, on a sound server
// of its own: processor time, memory, the length of the file, and how far a tone at its end stands from where it
// should.

#include "audio/screen_audio_recorder.h"
#include "platform/media/media_duration.h"
#include "support/media_files.h"
#include "support/sound_server.h"

#include <QCoreApplication>
#include <QProcess>
#include <QTest>

#include <chrono>
#include <cstdio>
#include <fstream>

#include <sys/resource.h>

using namespace sorvanta;

namespace {

double processorSeconds()
{
    rusage usage = {};
    getrusage(RUSAGE_SELF, &usage);
    const auto seconds = [](const timeval &time) {
        return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
    };
    return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

double residentMegabytes()
{
    std::ifstream file("/proc/self/statm");
    double pages = 0;
    file >> pages >> pages;
    return pages * 4096 / 1e6;
}

void play(const QString &path)
{
    QProcess::execute(QStringLiteral("paplay"), {QStringLiteral("--device=speaker"), path});
}

/// Where the sound begins within that stretch of the file, in seconds.
double beginOfTone(const QString &path, double from, double length)
{
    const QByteArray bytes =
        outputOf(QStringLiteral("ffmpeg"),
                 {QStringLiteral("-v"), QStringLiteral("error"), QStringLiteral("-ss"), QString::number(from),
                  QStringLiteral("-t"), QString::number(length), QStringLiteral("-i"), path, QStringLiteral("-ac"),
                  QStringLiteral("1"), QStringLiteral("-ar"), QStringLiteral("8000"), QStringLiteral("-f"),
                  QStringLiteral("s16le"), QStringLiteral("-")});
    const auto *samples = reinterpret_cast<const std::int16_t *>(bytes.constData());
    for (qsizetype i = 0; i < bytes.size() / 2; ++i) {
        if (std::abs(samples[i]) > 1000)
            return from + static_cast<double>(i) / 8000;
    }
    return -1;
}

} // namespace

int main(int argumentCount, char **arguments)
{
    QCoreApplication application(argumentCount, arguments);
    const double minutes = argumentCount > 1 ? std::atof(arguments[1]) : 10;
    MediaFolder folder;
    SoundServer server;
    const QString tone = folder.make(QStringLiteral("tone.wav"),
                                     QStringLiteral("-f lavfi -i aevalsrc=0.25*sin(2*PI*1000*t):d=0.3:s=48000"));
    auto recorder = std::make_unique<ScreenAudioRecorder>(ScreenAudioRecorder::Surroundings::ofThisMachine());
    // The file is there when the system's sound begins; the start is told when the microphone has begun, too.
    std::chrono::steady_clock::time_point begin;
    QObject::connect(
        recorder.get(), &ScreenAudioRecorder::outputURLChanged, &application,
        [&begin] { begin = std::chrono::steady_clock::now(); }, Qt::SingleShotConnection);
    bool hasStarted = false;
    recorder->startRecording(true, [&] { hasStarted = true; });
    if (!QTest::qWaitFor([&] { return hasStarted; }, 10000) || recorder->errorMessage()) {
        std::fprintf(stderr, "%s\n", qPrintable(recorder->errorMessage().value_or(QString())));
        return 1;
    }
    const auto elapsed = [&] {
        return std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
    };
    SoundRecording heard;
    play(tone);
    QTest::qWait(20000);
    const double firstMemory = residentMegabytes();
    const double firstTime = elapsed();
    const double firstProcessor = processorSeconds();
    QTest::qWait(static_cast<int>(std::max(0.0, minutes * 60 - elapsed()) * 1000));
    const double share = (processorSeconds() - firstProcessor) / (elapsed() - firstTime);
    const double growth = residentMegabytes() - firstMemory;
    play(tone);
    QTest::qWait(1000);
    const double length = elapsed();
    recorder->stopRecording();
    const QString raw = recorder->systemURL().value_or(QString());
    const auto stopped = std::chrono::steady_clock::now();
    const bool isFinished = QTest::qWaitFor([&] { return !recorder->systemURL(); }, 60000);
    const double finishing = std::chrono::duration<double>(std::chrono::steady_clock::now() - stopped).count();
    const auto spans = soundSpans(heard.samples());
    const QString output = recorder->outputURL().value_or(QString());
    std::printf("%.1f minutes: %.2f %% of a core, the listening of this program included; memory grew by %.1f MB\n",
                length / 60, share * 100, growth - static_cast<double>(heard.samples().size() * sizeof(double)) / 1e6);
    std::printf("length %+.3f s from the clock; finished in %.1f s; %s\n", mediaDuration(output) - length, finishing,
                qPrintable(recorder->errorMessage().value_or(isFinished ? QStringLiteral("no error")
                                                                        : QStringLiteral("unfinished"))));
    if (spans.size() >= 2) {
        const double distance = beginOfTone(raw, length - 5, 5) - beginOfTone(raw, 0, 15);
        std::printf("the last tone stands %+.1f ms from where it should\n",
                    (distance - (spans.back().begin - spans.front().begin)) * 1000);
    }
    return 0;
}
