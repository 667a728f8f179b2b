#include "unit/audio/listening_test.h"

#include "platform/main_queue.h"

#include <QElapsedTimer>

using namespace sorvanta;

namespace {

const QString noSound = QStringLiteral("audio output initialization failed");

class AudioPlayerServer : public ListeningTest { };

TEST_F(AudioPlayerServer, saysWhyNothingIsHeardWithoutASoundServer)
{
    server.kill();
    const auto player = open(makeNoise(u"a.wav"_qs, 5));
    EXPECT_NEAR(player->duration(), 5, 0.001) << "the file is open all the same";
    player->play();
    waitFor([this] { return failure.has_value(); });
    EXPECT_EQ(failure->domain(), u"libmpv"_qs);
    EXPECT_EQ(failure->code(), -14);
    EXPECT_EQ(failure->localizedDescription(), noSound);
    EXPECT_FALSE(player->isPlaying());
    EXPECT_FALSE(openingFailure);
    EXPECT_EQ(ends, 0);
}

TEST_F(AudioPlayerServer, canBeSetToAPositionWithoutASoundServer)
{
    server.kill();
    const auto player = open(makeNoise(u"a.wav"_qs, 5));
    seekAndWait(*player, 3);
    EXPECT_EQ(player->position(), 3);
    seekAndWait(*player, 2);
    EXPECT_EQ(player->position(), 2);
    EXPECT_FALSE(failure) << "nothing was to be heard yet";
}

TEST_F(AudioPlayerServer, playsOnWhereItStoodWhenTheServerIsStartedAnew)
{
    const QString path = makeNoise(u"a.wav"_qs, 30);
    const SoundReference file(path);
    const auto player = open(path);
    double left = -1;
    {
        SoundRecording recording;
        player->play();
        hearSpans(recording, 1, 1);
        server.kill();
        QTest::qWait(100);
        left = file.endOf(recording.samples(), soundSpans(recording.samples()).back()).value_or(-1);
    }
    EXPECT_TRUE(player->isPlaying());
    server.start();
    SoundRecording recording;
    hearSpans(recording, 1, 0.5);
    const auto &heard = recording.samples();
    const double resumed = file.beginOf(heard, soundSpans(heard).front()).value_or(-1);
    EXPECT_GT(resumed, left - 0.3);
    EXPECT_LT(resumed, left + 15) << "the recording may have begun later, but nothing was played from the start again";
    EXPECT_FALSE(failure);
    EXPECT_TRUE(player->isPlaying());
    EXPECT_GT(player->position(), left);
}

TEST_F(AudioPlayerServer, saysWhyWhenTheServerStaysAway)
{
    const auto player = open(makeNoise(u"a.wav"_qs, 60));
    {
        SoundRecording recording;
        player->play();
        hearSpans(recording, 1, 1);
    }
    server.kill();
    waitFor([this] { return failure.has_value(); });
    EXPECT_EQ(failure->localizedDescription(), noSound);
    EXPECT_FALSE(player->isPlaying());
    EXPECT_GT(player->position(), 0.5) << "where it stood";
}

TEST_F(AudioPlayerServer, saysNothingOfAServerThatIsStartedAnewInAPause)
{
    const QString path = makeNoise(u"a.wav"_qs, 30);
    const SoundReference file(path);
    const auto player = open(path);
    {
        SoundRecording recording;
        player->play();
        hearSpans(recording, 1, 1);
        player->pause();
        recording.hear(0.3);
    }
    const double position = player->position();
    server.kill();
    QTest::qWait(1000);
    EXPECT_FALSE(failure);
    EXPECT_NEAR(player->position(), position, 0.1) << "but for what the server had not played yet";
    server.start();
    SoundRecording recording;
    player->play();
    hearSpans(recording, 1, 0.5);
    const auto &heard = recording.samples();
    EXPECT_NEAR(file.beginOf(heard, soundSpans(heard).front()).value_or(-1), position, 0.2);
    EXPECT_FALSE(failure);
}

TEST_F(AudioPlayerServer, canBePausedWhileTheServerIsAway)
{
    const auto player = open(makeNoise(u"a.wav"_qs, 30));
    {
        SoundRecording recording;
        player->play();
        hearSpans(recording, 1, 1);
    }
    server.kill();
    QTest::qWait(500);
    player->pause();
    QTest::qWait(8000);
    EXPECT_FALSE(failure) << "nothing is to be heard any more";
}

TEST_F(AudioPlayerServer, doesNotHoldUpTheMainThreadWhenTheServerHangs)
{
    const QString path = makeNoise(u"a.wav"_qs, 30);
    auto playing = open(path);
    {
        SoundRecording recording;
        playing->play();
        hearSpans(recording, 1, 0.5);
    }
    server.suspend(true);
    // A call that waited for the server would wait for ever, and the test would be ended from outside.
    auto opened = open(path);
    EXPECT_NEAR(opened->duration(), 30, 0.001);
    opened->seek(3, {});
    opened->play();
    QTest::qWait(500);
    for (AudioPlayer *player : {playing.get(), opened.get()}) {
        player->pause();
        player->seek(5, {});
        player->play();
        EXPECT_TRUE(player->isPlaying());
        EXPECT_EQ(player->position(), 5);
    }
    playing.reset();
    opened.reset();
    server.suspend(false);
}

TEST_F(AudioPlayerServer, losesNoInstanceOfManyThatComeAndGo)
{
    const QString path = makeNoise(u"a.wav"_qs, 2);
    for (int i = 0; i < 30; ++i) {
        const auto player = open(path);
        player->play();
        if (i % 3 == 0)
            QTest::qWait(30);
    }
    const auto player = open(path);
    player->play();
    waitFor([this] { return ends > 0; });
    EXPECT_FALSE(failure);
}

} // namespace
