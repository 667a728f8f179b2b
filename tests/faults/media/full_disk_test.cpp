#include "core/audio_preparer.h"

#include "platform/error.h"
#include "platform/media/audio_writer.h"
#include "platform/media/wav_file.h"
#include "support/media_files.h"
#include "support/printing.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>

#include <gtest/gtest.h>

#include <vector>

#include <sched.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace sorvanta;

namespace {

void writeOnce(const char *path, const QByteArray &text)
{
    QFile file(QString::fromUtf8(path));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Unbuffered)) << path;
    ASSERT_EQ(file.write(text), text.size()) << path;
}

/// Gives this process mounts of its own, as the superuser of a namespace of its own. Needs no rights, but has to come
/// before there is a second thread.
void leaveTheMounts()
{
    const QByteArray user = QByteArray::number(getuid());
    const QByteArray group = QByteArray::number(getgid());
    ASSERT_EQ(unshare(CLONE_NEWUSER | CLONE_NEWNS), 0);
    writeOnce("/proc/self/setgroups", "deny");
    writeOnce("/proc/self/uid_map", "0 " + user + " 1");
    writeOnce("/proc/self/gid_map", "0 " + group + " 1");
}

class Mounts : public testing::Environment {
public:
    void SetUp() override { leaveTheMounts(); }
};

[[maybe_unused]] const testing::Environment *const mounts = testing::AddGlobalTestEnvironment(new Mounts);

/// A temporary folder of 256 KiB, less than the conversions here make.
class FullDisk : public testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_EQ(mkdir(bytes().constData(), 0700), 0);
        ASSERT_EQ(mount("tmpfs", bytes().constData(), "tmpfs", 0, "size=256k"), 0);
        source = folder.make(u"movie.mp4"_qs, u"-f lavfi -i anoisesrc=d=60:r=16000:a=0.2 -c:a aac"_qs);
        qputenv("TMPDIR", bytes());
    }
    void TearDown() override { EXPECT_EQ(umount2(bytes().constData(), MNT_DETACH), 0); }

    QByteArray bytes() const { return QFile::encodeName(small()); }
    QString small() const { return folder.path(u"small"_qs); }
    QStringList leftFiles() const { return QDir(small()).entryList(QDir::Files); }

    MediaFolder folder;
    QString source;
};

TEST_F(FullDisk, aConversionFailsAndLeavesNothing)
{
    EXPECT_EQ(AudioPreparer(TemporaryFiles()).convertToWav(source, u"test"_qs), std::nullopt);
    EXPECT_EQ(leftFiles(), QStringList());
}

TEST_F(FullDisk, aConversionOfAMeetingSaysWhatIsWrongAndLeavesWhatItWrote)
{
    try {
        AudioPreparer(TemporaryFiles()).convertForMeeting(source);
        FAIL() << "there was room";
    } catch (const Error &failure) {
        EXPECT_EQ(failure.domain(), u"MeetingRecorder"_qs);
        EXPECT_EQ(failure.code(), 204);
        EXPECT_TRUE(QRegularExpression(u"^You can’t save the file “meeting-transcribe-[0-9A-F-]{36}\\.wav” because the "
                                       u"volume “.+” is out of space\\.$"_qs)
                        .match(failure.localizedDescription())
                        .hasMatch())
            << failure.localizedDescription().toStdString();
    }
    ASSERT_EQ(leftFiles().size(), 1);
    EXPECT_GT(QFileInfo(QDir(small()).filePath(leftFiles().first())).size(), 0);
}

TEST_F(FullDisk, anExportGivesNoneAndLeavesWhatItWrote)
{
    EXPECT_EQ(AudioPreparer(TemporaryFiles()).exportToM4A(source), std::nullopt);
    EXPECT_EQ(leftFiles().size(), 1);
}

TEST_F(FullDisk, aWriterFailsOnceAndStaysFailed)
{
    AudioWriter writer(small() + u"/a.wav"_qs, {AudioFileSettings::Container::Wav, 16000, 1, 0});
    const std::vector<std::byte> block(64 * 1024);
    int blocks = 0;
    while (blocks < 100 && writer.append(block))
        ++blocks;
    EXPECT_LT(blocks, 100);
    EXPECT_EQ(writer.status(), AudioWriter::Status::Failed);
    const QString told = writer.errorDescription();
    EXPECT_TRUE(told.startsWith(u"You can’t save the file “a.wav” because the volume “"_qs)) << told.toStdString();
    EXPECT_FALSE(writer.finish());
    EXPECT_EQ(writer.status(), AudioWriter::Status::Failed);
    EXPECT_EQ(writer.errorDescription(), told);
}

TEST_F(FullDisk, aWriterWhoseLastBytesFindNoRoomFails)
{
    QFile filler(small() + u"/filler"_qs);
    ASSERT_TRUE(filler.open(QIODevice::WriteOnly | QIODevice::Unbuffered));
    ASSERT_EQ(filler.write(QByteArray(200 * 1024, 'x')), 200 * 1024);
    AudioWriter writer(small() + u"/a.wav"_qs, {AudioFileSettings::Container::Wav, 16000, 1, 0});
    const std::vector<std::byte> block(100 * 1024);
    EXPECT_TRUE(writer.append(block)) << "it is kept back until there is more";
    EXPECT_FALSE(writer.finish());
    EXPECT_EQ(writer.status(), AudioWriter::Status::Failed);
}

TEST_F(FullDisk, aRecordingStaysWholeToItsLastWrite)
{
    const QString path = small() + u"/a.wav"_qs;
    WavFile file(path, {16000, 1, AudioFormat::SampleType::Int16});
    const std::vector<std::byte> block(30 * 1000);
    try {
        for (int i = 0; i < 100; ++i)
            file.append(block);
        FAIL() << "there was room";
    } catch (const Error &failure) {
        EXPECT_EQ(failure.code(), 640);
        EXPECT_TRUE(
            failure.localizedDescription().startsWith(u"You can’t save the file “a.wav” because the volume “"_qs))
            << failure.localizedDescription().toStdString();
    }
    EXPECT_GT(file.frameCount(), 100'000);
    file.append(block);
    file.close();
    EXPECT_EQ(samplesOf(path).size(), static_cast<std::size_t>(file.frameCount()));
}

TEST_F(FullDisk, aFileThatCannotEvenBeBegunIsRefused)
{
    QFile filler(small() + u"/filler"_qs);
    ASSERT_TRUE(filler.open(QIODevice::WriteOnly | QIODevice::Unbuffered));
    while (filler.write(QByteArray(4096, 'x')) == 4096) { }
    EXPECT_THROW(AudioWriter(small() + u"/a.wav"_qs, {AudioFileSettings::Container::Wav, 16000, 1, 0}), Error);
    EXPECT_EQ(leftFiles(), QStringList{u"filler"_qs});
}

} // namespace
