#include "audio/screen_audio_recorder.h"
#include "unit/meeting/fake_sound.h"

#include <QCoreApplication>
#include <QTimer>

#include <cstdio>

using namespace sorvanta;

/// Records a tone as fast as the clock goes, until it is killed, and prints how many milliseconds of it were handed
/// over, one number a line.
int main(int argumentCount, char **arguments)
{
    QCoreApplication application(argumentCount, arguments);
    FakeSound sound;
    ScreenAudioRecorder recorder(sound.surroundings());
    recorder.startRecording(false, {});
    sound.answerOpening({.hasDisplay = true});
    if (!recorder.isRecording())
        return 1;
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, &timer, [&] {
        while (sound.time() + std::chrono::milliseconds(20) < SoundTime::clock::now())
            sound.play(500 + 100 * std::floor(sound.now), 0.02);
        std::printf("%d\n", static_cast<int>(sound.now * 1000));
        std::fflush(stdout);
    });
    timer.start(10);
    return QCoreApplication::exec();
}
