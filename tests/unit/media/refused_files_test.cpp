#include "core/audio_preparer.h"
#include "platform/error.h"
#include "platform/media/audio_reader.h"

#include "support/media_files.h"
#include "support/printing.h"

#include <gtest/gtest.h>

#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace sorvanta;

namespace {

QString openingError(const QString &path)
{
    try {
        const AudioReader reader(path);
    } catch (const Error &failure) {
        return failure.localizedDescription();
    }
    return {};
}

/// What each conversion makes of a file that holds no sound, told in one line.
QString outcomes(const QString &path)
{
    const AudioPreparer preparer{TemporaryFiles()};
    QString told = preparer.convertToWav(path, u"test"_qs) ? u"wav, "_qs : u"none, "_qs;
    told += preparer.exportToM4A(path) ? u"m4a, "_qs : u"none, "_qs;
    try {
        told += preparer.convertForMeeting(path);
    } catch (const Error &failure) {
        told += failure.domain() + u' ' + QString::number(failure.code()) + u' ' + failure.localizedDescription();
    }
    return told;
}

const QString noTrack = u"none, none, MeetingRecorder 201 No audio track found to transcribe."_qs;

TEST(RefusedFiles, aMissingFileHasNoTrack)
{
    MediaFolder folder;
    EXPECT_EQ(openingError(folder.path(u"talk.mp4"_qs)),
              u"The file “talk.mp4” couldn’t be opened because there is no such file."_qs);
    EXPECT_EQ(outcomes(folder.path(u"talk.mp4"_qs)), noTrack);
    EXPECT_EQ(folder.names(), QStringList());
}

TEST(RefusedFiles, anEmptyFileHasNoTrack)
{
    MediaFolder folder;
    EXPECT_EQ(outcomes(folder.write(u"empty.mp4"_qs, {})), noTrack);
    EXPECT_EQ(folder.names(), QStringList{u"empty.mp4"_qs});
}

TEST(RefusedFiles, textHasNoTrackWhateverItsName)
{
    MediaFolder folder;
    for (const QString &name : {u"text.mp4"_qs, u"text"_qs, u"text.txt"_qs, u"text.mkv"_qs}) {
        const QByteArray text =
            QByteArray("It was a bright cold day in April, and the clocks were striking.\n").repeated(99);
        EXPECT_EQ(outcomes(folder.write(name, text)), noTrack) << name.toStdString();
    }
    EXPECT_EQ(folder.names().size(), 4);
}

TEST(RefusedFiles, aVideoWithoutSoundHasNoTrack)
{
    MediaFolder folder;
    EXPECT_EQ(outcomes(folder.make(u"silent.mp4"_qs, u"-f lavfi -i testsrc=size=64x48:rate=5:duration=1"_qs)), noTrack);
    EXPECT_EQ(folder.names(), QStringList{u"silent.mp4"_qs});
}

TEST(RefusedFiles, aFolderHasNoTrack)
{
    MediaFolder folder;
    EXPECT_EQ(outcomes(folder.path(u"."_qs)), noTrack);
}

TEST(RefusedFiles, aNamedPipeIsRefusedAndItsWriterNeverWaitedFor)
{
    MediaFolder folder;
    ASSERT_EQ(mkfifo(folder.path(u"pipe.mp4"_qs).toUtf8().constData(), 0600), 0);
    EXPECT_EQ(outcomes(folder.path(u"pipe.mp4"_qs)), noTrack) << "there is no writer";
}

TEST(RefusedFiles, aDeviceHasNoTrack)
{
    EXPECT_EQ(outcomes(u"/dev/zero"_qs), noTrack);
    EXPECT_EQ(outcomes(u"/dev/null"_qs), noTrack);
}

TEST(RefusedFiles, aLinkIsFollowed)
{
    MediaFolder folder;
    folder.make(u"sound.flac"_qs, u"-f lavfi -i sine=duration=1"_qs);
    ASSERT_TRUE(QFile::link(folder.path(u"sound.flac"_qs), folder.path(u"link.mp4"_qs)));
    EXPECT_TRUE(AudioPreparer(TemporaryFiles()).convertToWav(folder.path(u"link.mp4"_qs), u"test"_qs));
}

/// The superuser may read everything, so the question is asked by a child process that is nobody.
TEST(RefusedFiles, aFileThatMayNotBeReadHasNoTrack)
{
    MediaFolder folder;
    const QString path = folder.make(u"secret.flac"_qs, u"-f lavfi -i sine=duration=1"_qs);
    ASSERT_EQ(chmod(folder.path(u"."_qs).toUtf8().constData(), 0755), 0);
    ASSERT_EQ(chmod(path.toUtf8().constData(), 0), 0);
    const pid_t child = fork();
    if (child == 0) {
        constexpr uid_t nobody = 65534;
        const bool isNobody = getuid() != 0 || setuid(nobody) == 0;
        const bool isTold =
            openingError(path)
            == u"The file “secret.flac” couldn’t be opened because you don’t have permission to view it.";
        _exit(isNobody && isTold && outcomes(path) == noTrack ? 0 : 1);
    }
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);
}

TEST(RefusedFiles, whatTheSystemCannotOpenAtPresentIsToldAsItStands)
{
    MediaFolder folder;
    const QString path = folder.make(u"sound.flac"_qs, u"-f lavfi -i sine=duration=1"_qs);
    rlimit limit = {};
    ASSERT_EQ(getrlimit(RLIMIT_NOFILE, &limit), 0);
    const rlimit none = {0, limit.rlim_max};
    ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &none), 0);
    const QString told = outcomes(path);
    ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &limit), 0);
    EXPECT_EQ(told, u"none, none, NSCocoaErrorDomain 256 The file “sound.flac” couldn’t be opened."_qs);
}

TEST(RefusedFiles, whatTheSystemCannotReadIsToldAsItStands)
{
    EXPECT_EQ(outcomes(u"/proc/self/mem"_qs),
              u"none, none, NSCocoaErrorDomain 256 The file “mem” couldn’t be opened."_qs);
}

TEST(RefusedFiles, aPathThatLeadsNowhereHasNoTrack)
{
    MediaFolder folder;
    ASSERT_TRUE(QFile::link(folder.path(u"a.mp4"_qs), folder.path(u"b.mp4"_qs)));
    ASSERT_TRUE(QFile::link(folder.path(u"b.mp4"_qs), folder.path(u"a.mp4"_qs)));
    EXPECT_EQ(outcomes(folder.path(u"a.mp4"_qs)), noTrack) << "a circle of links";
    EXPECT_EQ(outcomes(folder.write(u"c.mp4"_qs, "c") + u"/d.mp4"_qs), noTrack) << "a file is no folder";
}

TEST(RefusedFiles, aPlaylistOpensNoOtherFile)
{
    MediaFolder folder;
    folder.make(u"sound.ts"_qs, u"-f lavfi -i sine=duration=1 -c:a aac"_qs);
    const QString list =
        folder.write(u"list.m3u8"_qs, "#EXTM3U\n#EXT-X-TARGETDURATION:1\n#EXTINF:1,\nsound.ts\n#EXT-X-ENDLIST\n");
    const QString concat = folder.write(u"list.ffconcat"_qs, "ffconcat version 1.0\nfile sound.ts\n");
    EXPECT_EQ(outcomes(list), noTrack);
    EXPECT_EQ(outcomes(concat), noTrack);
}

TEST(RefusedFiles, aTrackInAnEncodingThatNobodyKnowsCannotBeRead)
{
    MediaFolder folder;
    QFile file(folder.make(u"odd.mov"_qs, u"-f lavfi -i sine=duration=1 -c:a pcm_s16le"_qs));
    ASSERT_TRUE(file.open(QIODevice::ReadWrite));
    QByteArray bytes = file.readAll();
    ASSERT_EQ(bytes.count("sowt"), 1);
    bytes.replace("sowt", "zzzz");
    file.seek(0);
    file.write(bytes);
    file.close();
    EXPECT_EQ(outcomes(file.fileName()), u"none, none, MeetingRecorder 202 Cannot read audio for conversion."_qs);
    EXPECT_EQ(folder.names(), QStringList{u"odd.mov"_qs});
}

} // namespace
