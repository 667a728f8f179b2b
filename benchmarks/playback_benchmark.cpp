// What playing costs: the CPU time of this process while the controller of the file screen plays through a private
// sound server, over the wall time, beside a paused player and beside a process that only waits.
//   playback_benchmark [SECONDS [FILE]]

#include "audio/playback_controller.h"
#include "support/media_files.h"
#include "support/sound_server.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QTest>

#include <cstdio>
#include <cstdlib>
#include <ctime>

using namespace sorvanta;

namespace {

double cpuSeconds()
{
    timespec time = {};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) / 1e9;
}

void measure(const char *what, int seconds)
{
    const double before = cpuSeconds();
    QElapsedTimer timer;
    timer.start();
    QTest::qWait(seconds * 1000);
    const double wall = static_cast<double>(timer.nsecsElapsed()) / 1e9;
    std::printf("%-28s %6.2f %% of a core\n", what, 100 * (cpuSeconds() - before) / wall);
}

void play(const QString &path, const char *name, int seconds)
{
    QElapsedTimer timer;
    timer.start();
    PlaybackController controller(filePlayback(), {.file = [path] { return path; }});
    controller.togglePlayback();
    std::printf("%s: the press took %.1f ms\n", name, static_cast<double>(timer.nsecsElapsed()) / 1e6);
    QTest::qWait(1000);
    measure("  playing", seconds);
    if (!controller.isPlaying() || controller.playbackTime() < seconds - 2)
        std::printf("  it did not play\n");
    controller.togglePlayback();
    QTest::qWait(500);
    measure("  paused", seconds / 4);
}

} // namespace

int main(int argumentCount, char **arguments)
{
    const QCoreApplication application(argumentCount, arguments);
    const int seconds = argumentCount > 1 ? std::atoi(arguments[1]) : 20;
    const SoundServer server;
    measure("waiting", seconds / 4);
    if (argumentCount > 2) {
        play(QString::fromLocal8Bit(arguments[2]), arguments[2], seconds);
        return 0;
    }
    const MediaFolder folder;
    const QString source = QStringLiteral("-f lavfi -i sine=d=%1:r=48000").arg(2 * seconds);
    play(folder.make(QStringLiteral("a.wav"), source), "WAV", seconds);
    play(folder.make(QStringLiteral("a.mp3"), source), "MP3", seconds);
    play(folder.make(QStringLiteral("a.mp4"),
                     source
                         + QStringLiteral(" -f lavfi -i testsrc=d=%1:s=1280x720:r=30 -preset ultrafast -shortest")
                               .arg(2 * seconds)),
         "MP4 with picture", seconds);
    return 0;
}
