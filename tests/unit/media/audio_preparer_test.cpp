#include "core/audio_preparer.h"

#include "core/audio_preparation.h"
#include "platform/error.h"
#include "support/media_files.h"
#include "support/posted_work.h"
#include "support/printing.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QRegularExpression>

#include <gtest/gtest.h>

#include <future>
#include <thread>

using namespace sorvanta;
using namespace std::chrono_literals;

namespace {

const QString sound = u"-f lavfi -i sine=frequency=1000:duration=1"_qs;
/// Not even the superuser makes a file there.
constexpr char folderWithoutFiles[] = "/sys";

const QString uuid = u"[0-9A-F]{8}-[0-9A-F]{4}-[0-9A-F]{4}-[0-9A-F]{4}-[0-9A-F]{12}"_qs;

template<typename Work>
auto onWorker(Work work)
{
    return std::async(std::launch::async, work).get();
}

bool fits(const QString &path, const MediaFolder &folder, const QString &pattern)
{
    const QString name = path.section(u'/', -1);
    return path == folder.path(name) && QRegularExpression(u'^' + pattern + u'$').match(name).hasMatch();
}

QString meetingError(const AudioPreparer &preparer, const QString &path)
{
    try {
        return preparer.convertForMeeting(path);
    } catch (const Error &failure) {
        return failure.domain() + u' ' + QString::number(failure.code()) + u' ' + failure.localizedDescription();
    }
}

/// Whether the process has a thread of that name, as the system lists them.
bool hasThread(const QByteArray &name)
{
    const QDir threads(u"/proc/self/task"_qs);
    for (const QString &thread : threads.entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
        QFile file(threads.filePath(thread + u"/comm"_qs));
        if (file.open(QIODevice::ReadOnly) && file.readAll().trimmed() == name)
            return true;
    }
    return false;
}

bool becomesTrue(const std::function<bool()> &condition)
{
    for (int i = 0; i < 2000 && !condition(); ++i)
        std::this_thread::sleep_for(5ms);
    return condition();
}

/// An hour of silence without a byte on disk for it: the file has a hole.
QString makeLongWav(const MediaFolder &folder, const QString &name)
{
    QFile file(folder.make(name, u"-f lavfi -i anullsrc=r=48000:cl=stereo -t 0.1 -c:a pcm_s16le -f wav"_qs));
    EXPECT_TRUE(file.open(QIODevice::ReadWrite));
    QByteArray header = file.read(100);
    const qsizetype data = header.indexOf("data");
    EXPECT_GT(data, 0);
    const QByteArray unknownSize(4, '\xff');
    EXPECT_TRUE(file.seek(4) && file.write(unknownSize) == 4 && file.seek(data + 4) && file.write(unknownSize) == 4);
    EXPECT_TRUE(file.resize(4'000'000'000));
    return file.fileName();
}

AudioPreparer::Settings limited(std::chrono::milliseconds limit)
{
    AudioPreparer::Settings settings;
    settings.wavLimit = settings.meetingLimit = settings.exportLimit = limit;
    return settings;
}

TEST(AudioPreparer, onlyTheExtensionDecidesOnConversion)
{
    for (const QString &name : {u"/m/talk.MP3"_qs, u"a.wav"_qs, u"a.m4a"_qs, u"a.b.Opus"_qs, u"/no/such/file.flac"_qs})
        EXPECT_FALSE(AudioPreparer::needsConversion(name)) << name.toStdString();
    for (const QString &name : {u"movie.mp4"_qs, u"a.mov"_qs, u"a.MKV"_qs, u"a"_qs, u"/dir.wav/a"_qs, u"wav"_qs,
                                u".wav"_qs, u"a."_qs, u"a.wav.txt"_qs, u"a.xyz"_qs, u""_qs})
        EXPECT_TRUE(AudioPreparer::needsConversion(name)) << name.toStdString();
}

TEST(AudioPreparer, theUsualLimitsAreTwoMinutesAndOneForAMeeting)
{
    const AudioPreparer::Settings settings;
    EXPECT_EQ(settings.wavLimit, 120s);
    EXPECT_EQ(settings.exportLimit, 120s);
    EXPECT_EQ(settings.meetingLimit, 60s);
}

TEST(ConvertToWav, makesAFileNamedByAUuidAndRecordsItOnTheMainThread)
{
    MediaFolder folder;
    const QString source = folder.make(u"movie.mp4"_qs, sound + u" -c:a aac"_qs);
    TemporaryFiles files;
    bool wasRecordedBefore = false;
    std::optional<QString> recorded;
    const AudioPreparer preparer(files);
    const std::optional<QString> result = onWorker([&] {
        const auto path =
            preparer.convertToWav(source, u"sv.wav.convert"_qs, [&] { recorded = files.tempConvertedURL(); });
        wasRecordedBefore = recorded.has_value();
        return path;
    });
    ASSERT_TRUE(result);
    EXPECT_TRUE(fits(*result, folder, uuid + u"\\.wav"_qs)) << result->toStdString();
    EXPECT_FALSE(wasRecordedBefore);
    EXPECT_EQ(files.tempConvertedURL(), std::nullopt) << "the field is written on the main thread only";
    runPosted();
    EXPECT_EQ(files.tempConvertedURL(), result);
    EXPECT_EQ(recorded, result) << "the screen hears of it when the field is set";
}

TEST(ConvertToWav, convertsAlsoWhatHasNoExtension)
{
    MediaFolder folder;
    const QString source = folder.make(u"nameless"_qs, sound + u" -f mp3"_qs);
    EXPECT_TRUE(AudioPreparer(TemporaryFiles()).convertToWav(source, u"test"_qs));
}

TEST(ConvertToWav, takesNamesThatLookLikeAddressesOptionsAndPatterns)
{
    MediaFolder folder;
    const QString plain = folder.make(u"plain.flac"_qs, sound);
    for (const QString &name :
         {u"Ünïcödé 日本語 🎙.mp4"_qs, u"two\nlines.mp4"_qs, u"http:host.mp4"_qs, u"concat:a|b.mp4"_qs,
          u"%d%s.mp4"_qs, u" -y.mp4"_qs, u"e\u0301 a?b*c\"'\\.mp4"_qs, u"pipe:0"_qs}) {
        ASSERT_TRUE(QFile::copy(plain, folder.path(name))) << name.toStdString();
        EXPECT_TRUE(AudioPreparer(TemporaryFiles()).convertToWav(folder.path(name), u"test"_qs)) << name.toStdString();
    }
}

TEST(ConvertToWav, runsOnAThreadWithTheNameOfItsQueue)
{
    MediaFolder folder;
    const QString source = makeLongWav(folder, u"long.mp4"_qs);
    const AudioPreparer preparer(TemporaryFiles(), limited(2s));
    auto worker = std::async(std::launch::async, [&] { return preparer.convertToWav(source, u"sv.wav.convert"_qs); });
    EXPECT_TRUE(becomesTrue([] { return hasThread("sv.wav.convert"); }));
    worker.get();
    EXPECT_TRUE(becomesTrue([] { return !hasThread("sv.wav.convert"); }));
}

TEST(PrepareAudio, convertsOnTheQueueThatItsSettingsName)
{
    MediaFolder folder;
    const QString source = makeLongWav(folder, u"long.mp4"_qs);
    const AudioPreparer preparer(TemporaryFiles(), limited(2s));
    const PreparationReport silent = {.status = [] { return QString(); },
                                      .setStatus = [](const QString &) {},
                                      .error = [] { return std::nullopt; },
                                      .setError = [](const QString &) {},
                                      .endRun = [] {},
                                      .refreshPlaybackState = [] {}};
    auto worker =
        std::async(std::launch::async, [&] { return prepareAudio(source, batchPreparation(), preparer, silent); });
    EXPECT_TRUE(becomesTrue([] { return hasThread("sv.batch.wav.co"); })) << "as much of it as the system takes";
    worker.get();
    runPosted();
}

TEST(ConvertToWav, aTimeOutIsAFailureThatLeavesNothingAndBurnsNothing)
{
    MediaFolder folder;
    const QString source = makeLongWav(folder, u"long.mp4"_qs);
    TemporaryFiles files;
    EXPECT_EQ(AudioPreparer(files, limited(100ms)).convertToWav(source, u"too long"_qs), std::nullopt);
    runPosted();
    EXPECT_EQ(files.tempConvertedURL(), std::nullopt);
    EXPECT_TRUE(becomesTrue([] { return !hasThread("too long"); })) << "the copying stops soon";
    EXPECT_EQ(folder.names(), QStringList{u"long.mp4"_qs});
}

TEST(ConvertToWav, givesNoneWhereNoFileCanBeMade)
{
    MediaFolder folder;
    const QString source = folder.make(u"movie.mp4"_qs, sound + u" -c:a aac"_qs);
    qputenv("TMPDIR", folderWithoutFiles);
    EXPECT_EQ(AudioPreparer(TemporaryFiles()).convertToWav(source, u"test"_qs), std::nullopt);
    EXPECT_EQ(AudioPreparer(TemporaryFiles()).exportToM4A(source), std::nullopt);
}

TEST(ConvertForMeeting, aWavOfAnyRateGoesAsItStands)
{
    MediaFolder folder;
    const AudioPreparer preparer{TemporaryFiles()};
    for (const QString &name : {u"8k.wav"_qs, u"192k.WAV"_qs, u"missing.Wav"_qs})
        EXPECT_EQ(preparer.convertForMeeting(folder.path(name)), folder.path(name));
    EXPECT_EQ(folder.names(), QStringList());
}

TEST(ConvertForMeeting, anM4aIsAlwaysConverted)
{
    MediaFolder folder;
    const QString source = folder.make(u"meeting.m4a"_qs, sound);
    TemporaryFiles files;
    const QString result = onWorker([&] { return AudioPreparer(files).convertForMeeting(source); });
    EXPECT_TRUE(fits(result, folder, u"meeting-transcribe-"_qs + uuid + u"\\.wav"_qs)) << result.toStdString();
    EXPECT_EQ(describedFormat(result), u"wav pcm_s16le 16000 1"_qs);
    EXPECT_NEAR(static_cast<double>(samplesOf(result).size()), 16000, 1024.0 * 16000 / 44100);
    EXPECT_EQ(files.tempConvertedURL(), std::nullopt);
    runPosted();
    EXPECT_EQ(files.tempConvertedURL(), result);
}

TEST(ConvertForMeeting, runsOnItsQueueAndATimeOutLeavesThePartlyWrittenFile)
{
    MediaFolder folder;
    const QString source = makeLongWav(folder, u"long.mp4"_qs);
    TemporaryFiles files;
    const AudioPreparer preparer(files, limited(500ms));
    auto worker = std::async(std::launch::async, [&] { return meetingError(preparer, source); });
    EXPECT_TRUE(becomesTrue([] { return hasThread("MeetingRecorder"); }));
    EXPECT_EQ(worker.get(), u"MeetingRecorder 204 Conversion failed."_qs);
    EXPECT_TRUE(becomesTrue([] { return !hasThread("MeetingRecorder"); }));
    runPosted();
    EXPECT_EQ(files.tempConvertedURL(), std::nullopt);
    EXPECT_EQ(folder.names().filter(u"meeting-transcribe-"_qs).size(), 1);
}

TEST(ConvertForMeeting, hasALimitOfItsOwn)
{
    MediaFolder folder;
    const QString source = folder.make(u"a.m4a"_qs, sound);
    AudioPreparer::Settings settings = limited(30s);
    settings.wavLimit = settings.exportLimit = 0ms;
    EXPECT_TRUE(QFile::exists(AudioPreparer(TemporaryFiles(), settings).convertForMeeting(source)))
        << "each conversion has a limit of its own";
}

TEST(ConvertForMeeting, anImpossibleOutputIsToldByItsCode)
{
    MediaFolder folder;
    const QString source = folder.make(u"a.m4a"_qs, sound);
    AudioPreparer::Settings settings;
    settings.wavSettings = {AudioFileSettings::Container::M4a, 12345, 1, 0};
    EXPECT_EQ(meetingError(AudioPreparer(TemporaryFiles(), settings), source),
              u"MeetingRecorder 203 Cannot prepare WAV writer."_qs);
    settings.wavSettings = {AudioFileSettings::Container::Wav, 0, 1, 0};
    EXPECT_EQ(meetingError(AudioPreparer(TemporaryFiles(), settings), source),
              u"MeetingRecorder 202 Cannot read audio for conversion."_qs);
}

TEST(ConvertForMeeting, theSystemsRefusalOfTheNewFileIsToldAsItStands)
{
    MediaFolder folder;
    const QString source = folder.make(u"a.m4a"_qs, sound);
    qputenv("TMPDIR", folderWithoutFiles);
    const QString told = meetingError(AudioPreparer(TemporaryFiles()), source);
    EXPECT_TRUE(
        QRegularExpression(u"^NSCocoaErrorDomain 513 You don’t have permission to save the file “meeting-transcribe-"_qs
                           + uuid + u"\\.wav” in the folder “sys”\\.$"_qs)
            .match(told)
            .hasMatch())
        << told.toStdString();
}

TEST(ConvertForMeeting, nothingDecodableIsAFailedConversion)
{
    MediaFolder folder;
    QFile file(folder.make(u"a.m4a"_qs, sound + u" -movflags +faststart"_qs));
    ASSERT_TRUE(file.open(QIODevice::ReadWrite));
    ASSERT_TRUE(file.resize(file.readAll().indexOf("mdat") + 4));
    file.close();
    EXPECT_EQ(meetingError(AudioPreparer(TemporaryFiles()), file.fileName()),
              u"MeetingRecorder 204 Conversion failed."_qs);
    EXPECT_EQ(AudioPreparer(TemporaryFiles()).convertToWav(file.fileName(), u"test"_qs), std::nullopt);
    EXPECT_EQ(AudioPreparer(TemporaryFiles()).exportToM4A(file.fileName()), std::nullopt);
}

TEST(ExportToM4A, makesCompressedAudioNamedAfterTheMicrophone)
{
    MediaFolder folder;
    const QString source = folder.make(
        u"movie.mp4"_qs, u"-f lavfi -i testsrc=size=64x48:rate=5:duration=3 -f lavfi -i "
                         u"aevalsrc=0.25*sin(2*PI*1000*t)|0.25*sin(2*PI*1000*t):s=44100:d=3 -c:a aac -b:a 192k"_qs);
    TemporaryFiles files;
    const std::optional<QString> result = onWorker([&] { return AudioPreparer(files).exportToM4A(source); });
    ASSERT_TRUE(result);
    EXPECT_TRUE(fits(*result, folder, u"microphone_\\d{4}-\\d\\d-\\d\\d_\\d\\d-\\d\\d_[0-9a-f]{6}\\.m4a"_qs))
        << result->toStdString();
    EXPECT_EQ(describedFormat(*result), u"mov,mp4,m4a,3gp,3g2,mj2 aac 44100 2"_qs);
    const std::vector<double> samples = samplesOf(*result);
    EXPECT_NEAR(static_cast<double>(samples.size()) / 44100, 3, 1024.0 / 44100);
    const std::vector<double> middle(samples.begin() + 44100, samples.begin() + 88200);
    EXPECT_NEAR(decibels(toneAmplitude(middle, 1000, 44100) / 0.25), 0, 0.1);
    EXPECT_EQ(files.tempConvertedURL(), std::nullopt);
    runPosted();
    EXPECT_EQ(files.tempConvertedURL(), result);
}

TEST(ExportToM4A, bringsUnusualSoundToWhatTheFormatKnows)
{
    MediaFolder folder;
    const QString source = folder.make(u"six.mkv"_qs, u"-f lavfi -i anoisesrc=d=1:r=96000 -ac 6 -c:a flac"_qs);
    const std::optional<QString> result = AudioPreparer(TemporaryFiles()).exportToM4A(source);
    ASSERT_TRUE(result);
    EXPECT_EQ(describedFormat(*result), u"mov,mp4,m4a,3gp,3g2,mj2 aac 48000 2"_qs);
}

TEST(ExportToM4A, countsOnWhereTheNameIsTaken)
{
    MediaFolder folder;
    const QString source = folder.make(u"movie.mp4"_qs, sound + u" -c:a aac"_qs);
    AudioPreparer::Settings settings;
    settings.newExportName = [] { return u"microphone_2026-01-02_03-04_abcdef"_qs; };
    const AudioPreparer preparer(TemporaryFiles(), settings);
    EXPECT_EQ(preparer.exportToM4A(source), folder.path(u"microphone_2026-01-02_03-04_abcdef.m4a"_qs));
    EXPECT_EQ(preparer.exportToM4A(source), folder.path(u"microphone_2026-01-02_03-04_abcdef-2.m4a"_qs));
    EXPECT_EQ(preparer.exportToM4A(source), folder.path(u"microphone_2026-01-02_03-04_abcdef-3.m4a"_qs));
}

TEST(ExportToM4A, aTimeOutIsAFailureThatLeavesThePartlyWrittenFile)
{
    MediaFolder folder;
    const QString source = makeLongWav(folder, u"long.mp4"_qs);
    TemporaryFiles files;
    EXPECT_EQ(AudioPreparer(files, limited(100ms)).exportToM4A(source), std::nullopt);
    runPosted();
    EXPECT_EQ(files.tempConvertedURL(), std::nullopt);
    EXPECT_EQ(folder.names().filter(u"microphone_"_qs).size(), 1);
}

TEST(RemoveTemporaries, onAWorkerComesBeforeTheRecordOfTheNextConversion)
{
    MediaFolder folder;
    const QString source = folder.make(u"movie.mp4"_qs, sound + u" -c:a aac"_qs);
    TemporaryFiles files;
    const AudioPreparer preparer(files);
    const auto run = [&] {
        preparer.removeTemporaries();
        return preparer.convertToWav(source, u"test"_qs);
    };
    const std::optional<QString> first = onWorker(run);
    runPosted();
    EXPECT_EQ(files.tempConvertedURL(), first);
    const std::optional<QString> second = onWorker(run);
    EXPECT_TRUE(QFile::exists(*first)) << "a worker leaves the fields of the main thread alone";
    runPosted();
    EXPECT_NE(first, second);
    EXPECT_FALSE(QFile::exists(*first));
    EXPECT_TRUE(QFile::exists(*second));
    EXPECT_EQ(files.tempConvertedURLs(), QStringList{*second});
    preparer.removeTemporaries();
    EXPECT_EQ(files.tempConvertedURL(), std::nullopt);
    EXPECT_EQ(folder.names(), QStringList{u"movie.mp4"_qs}) << "the user's own file is not touched";
}

TEST(TwoScreens, neverShareATemporaryFile)
{
    MediaFolder folder;
    const QString source = folder.make(u"movie.mp4"_qs, sound + u" -c:a aac"_qs);
    TemporaryFiles first;
    TemporaryFiles second;
    auto worker = std::async(std::launch::async, [&] { return AudioPreparer(first).convertToWav(source, u"a"_qs); });
    const std::optional<QString> other = onWorker([&] { return AudioPreparer(second).convertToWav(source, u"b"_qs); });
    const std::optional<QString> one = worker.get();
    runPosted();
    EXPECT_EQ(first.tempConvertedURL(), one);
    EXPECT_EQ(second.tempConvertedURL(), other);
    EXPECT_NE(one, other);
    first.removeTemporaries();
    EXPECT_TRUE(QFile::exists(*other));
}

} // namespace
