#include "platform/media/media_duration.h"
#include "support/waiting.h"
#include "unit/audio/listening_test.h"

#include <QDir>
#include <QFile>

#include <clocale>

#include <sys/stat.h>

using namespace sorvanta;

namespace {

class AudioPlayerFiles : public ListeningTest {
protected:
    /// What opening fails with, at once or some time later.
    Error failureOf(const QString &path)
    {
        try {
            const auto player = open(path);
            EXPECT_TRUE(waitUntil([this] { return openingFailure.has_value(); }));
            return openingFailure.value_or(Error({}, 0, {}));
        } catch (const Error &error) {
            return error;
        }
    }

    void expectFailure(const QString &path, int code, const QString &words)
    {
        const Error error = failureOf(path);
        EXPECT_EQ(error.domain(), u"libmpv"_qs);
        EXPECT_EQ(error.code(), code);
        EXPECT_EQ(error.localizedDescription(), words);
        EXPECT_FALSE(failure);
    }
};

TEST_F(AudioPlayerFiles, refusesAFileThatIsNotThere)
{
    expectFailure(folder.path(u"gone.wav"_qs), -13, u"loading failed"_qs);
    expectFailure(QString(), -13, u"loading failed"_qs);
    expectFailure(folder.write(u"a"_qs, "") + QChar(u'\0') + u"b"_qs, -13, u"loading failed"_qs);
}

TEST_F(AudioPlayerFiles, refusesAFileThatIsBroken)
{
    expectFailure(folder.write(u"noise.mp3"_qs, QByteArray(100000, '\x37')), -17, u"unrecognized file format"_qs);
    expectFailure(folder.write(u"text.wav"_qs, "no sound at all\n"), -17, u"unrecognized file format"_qs);
    expectFailure(folder.write(u"empty.wav"_qs, ""), -17, u"unrecognized file format"_qs);
    const QString cut = folder.write(u"cut.m4a"_qs, [this] {
        QFile whole(makeNoise(u"whole.m4a"_qs, 2));
        EXPECT_TRUE(whole.open(QIODevice::ReadOnly));
        return whole.read(8000);
    }());
    expectFailure(cut, -17, u"unrecognized file format"_qs);
}

TEST_F(AudioPlayerFiles, refusesAFileWithoutSound)
{
    const QString path = folder.make(u"silent.mp4"_qs, u"-f lavfi -i testsrc=d=3 -an"_qs);
    expectFailure(path, -16, u"no audio or video data played"_qs);
}

TEST_F(AudioPlayerFiles, refusesWhatIsNoRegularFileWithoutOpeningIt)
{
    const QString pipe = folder.path(u"pipe.wav"_qs);
    ASSERT_EQ(::mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
    expectFailure(pipe, -13, u"loading failed"_qs);
    expectFailure(u"/dev/zero"_qs, -13, u"loading failed"_qs);
    expectFailure(folder.path(QString()), -13, u"loading failed"_qs);
}

TEST_F(AudioPlayerFiles, opensNothingThatAFileRefersTo)
{
    const QByteArray sound = QFile::encodeName(makeNoise(u"a.wav"_qs, 2));
    expectFailure(
        folder.write(u"list.m3u8"_qs, "#EXTM3U\n#EXT-X-TARGETDURATION:2\n#EXTINF:2,\n" + sound + "\n#EXT-X-ENDLIST\n"),
        -17, u"unrecognized file format"_qs);
    expectFailure(folder.write(u"list.m3u"_qs, "#EXTM3U\n" + sound + "\n"), -17, u"unrecognized file format"_qs);
    expectFailure(folder.write(u"list.txt"_qs, "ffconcat version 1.0\nfile " + sound + "\n"), -17,
                  u"unrecognized file format"_qs);
    expectFailure(folder.write(u"list.edl"_qs, "# mpv EDL v0\n" + sound + "\n"), -17, u"unrecognized file format"_qs);
    expectFailure(folder.write(u"list.cue"_qs, "FILE \"a.wav\" WAVE\n  TRACK 01 AUDIO\n    INDEX 01 00:00:00\n"), -17,
                  u"unrecognized file format"_qs);
}

TEST_F(AudioPlayerFiles, takesNoPathForAnAddress)
{
    expectFailure(u"memory://RIFF"_qs, -13, u"loading failed"_qs);
    expectFailure(u"http://127.0.0.1:9/a.wav"_qs, -13, u"loading failed"_qs);
    expectFailure(u"lavfi://sine"_qs, -13, u"loading failed"_qs);
    expectFailure(u"av://lavfi:sine"_qs, -13, u"loading failed"_qs);
    expectFailure(u"edl://a.wav"_qs, -13, u"loading failed"_qs);
    expectFailure(u"fd://0"_qs, -13, u"loading failed"_qs);
    expectFailure(u"-"_qs, -13, u"loading failed"_qs);
    expectFailure(u"file://"_qs + makeNoise(u"a.wav"_qs, 1), -13, u"loading failed"_qs);
}

class AudioPlayerNames : public AudioPlayerFiles, public testing::WithParamInterface<const char16_t *> { };

INSTANTIATE_TEST_SUITE_P(Names, AudioPlayerNames,
                         testing::Values(u"-", u"--vid=auto", u"-.wav", u"http:", u"edl:%5%a.wav", u"memory:", u"av:",
                                         u"%41%2f.wav", u"${path}.wav", u"$HOME.wav", u"a\nb.wav", u"a;quit.wav",
                                         u"\"a' b\\.wav", u" a .wav", u"Ünï – 音.wav", u"a.m3u8", u"a.cue",
                                         u"#a?b=c.wav", u"~~home.wav", u"null", u"a.mp4"));

TEST_P(AudioPlayerNames, opensAFileWhateverItsName)
{
    const QString name = QString::fromUtf16(GetParam());
    QFile sound(makeNoise(u"sound.wav"_qs, 1.5));
    ASSERT_TRUE(sound.rename(folder.path(name)));
    EXPECT_NEAR(open(folder.path(name))->duration(), 1.5, 0.001);

    const QString earlier = QDir::currentPath();
    ASSERT_TRUE(QDir::setCurrent(folder.path(QString())));
    EXPECT_NEAR(open(name)->duration(), 1.5, 0.001) << "also as seen from its folder";
    QDir::setCurrent(earlier);
}

TEST_F(AudioPlayerFiles, opensAFileInAFolderThatLooksLikeAnAddress)
{
    ASSERT_TRUE(QDir(folder.path(QString())).mkpath(u"http:/host"_qs));
    QFile sound(makeNoise(u"sound.wav"_qs, 1.5));
    ASSERT_TRUE(sound.rename(folder.path(u"http:/host/a.wav"_qs)));
    EXPECT_NEAR(open(folder.path(u"http:/host/a.wav"_qs))->duration(), 1.5, 0.001);
}

TEST_F(AudioPlayerFiles, setsTheNumbersOfCThatLibmpvNeeds)
{
    const QByteArray earlier = std::setlocale(LC_NUMERIC, nullptr);
    ASSERT_TRUE(std::setlocale(LC_NUMERIC, "C.UTF-8"));
    const auto player = open(makeNoise(u"a.wav"_qs, 1.5));
    EXPECT_STREQ(std::setlocale(LC_NUMERIC, nullptr), "C");
    EXPECT_NEAR(player->duration(), 1.5, 0.001);
    seekAndWait(*player, 0.75);
    std::setlocale(LC_NUMERIC, earlier.constData());
}

TEST_F(AudioPlayerFiles, playsAFileToTheEndThatVanishesWhilePlaying)
{
    const QString path = makeNoise(u"a.wav"_qs, 3);
    const SoundReference file(path);
    SoundRecording recording;
    const auto player = open(path);
    player->play();
    hearSpans(recording, 1, 0.5);
    ASSERT_TRUE(QFile::remove(path));
    waitFor([this] { return ends == 1; });
    recording.hear(0.3);
    EXPECT_NEAR(file.endOf(recording.samples(), soundSpans(recording.samples()).back()).value_or(-1), 3, 0.03);
    EXPECT_FALSE(failure || openingFailure);
    expectFailure(path, -13, u"loading failed"_qs);
}

TEST_F(AudioPlayerFiles, endsWhereAFileWasCutOffWhilePlaying)
{
    const QString path = makeNoise(u"a.wav"_qs, 30);
    SoundRecording recording;
    const auto player = open(path);
    player->play();
    hearSpans(recording, 1, 0.5);
    ASSERT_TRUE(QFile::resize(path, 48000 * 2 * 3));
    waitFor([this] { return ends == 1; });
    EXPECT_FALSE(failure || openingFailure);
}

TEST_F(AudioPlayerFiles, doesNotReadAFileThatGoesOnWithoutEnd)
{
    const QString path = folder.path(u"pipe.wav"_qs);
    ASSERT_EQ(::mkfifo(QFile::encodeName(path).constData(), 0600), 0);
    QProcess writer;
    writer.start(u"sh"_qs, {u"-c"_qs, u"exec cat /dev/zero > \"$1\""_qs, u"sh"_qs, path});
    expectFailure(path, -13, u"loading failed"_qs);
    writer.kill();
    writer.waitForFinished();
    EXPECT_EQ(mediaDuration(path), 0);
}

TEST_F(AudioPlayerFiles, haveADurationThatNeedsNoPlayer)
{
    EXPECT_NEAR(mediaDuration(makeNoise(u"a.wav"_qs, 1.5)), 1.5, 0.001);
    EXPECT_NEAR(mediaDuration(makeNoise(u"a.mp3"_qs, 4)), 4, 0.1);
    EXPECT_NEAR(mediaDuration(folder.make(u"silent.mp4"_qs, u"-f lavfi -i testsrc=d=3 -an"_qs)), 3, 0.001)
        << "a video without sound has one too";
    EXPECT_EQ(mediaDuration(folder.path(u"gone.wav"_qs)), 0);
    EXPECT_EQ(mediaDuration(folder.write(u"text.wav"_qs, "no sound at all\n")), 0);
    EXPECT_EQ(mediaDuration(folder.path(QString())), 0);
}

} // namespace
