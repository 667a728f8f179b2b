#include "core/audio_preparation.h"

#include "support/media_files.h"
#include "support/posted_work.h"
#include "support/printing.h"

#include <QCoreApplication>
#include <QFile>

#include <gtest/gtest.h>

#include <future>

using namespace sorvanta;

namespace {

const QString sound = u"-f lavfi -i sine=frequency=1000:duration=1 -c:a aac"_qs;
const QString picture = u"-f lavfi -i testsrc=size=64x48:rate=5:duration=1"_qs;

/// A screen's fields, and a list of what became of them in which order.
class Screen {
public:
    explicit Screen(PreparationSettings settings)
        : m_settings(std::move(settings))
    {
        m_report.status = [this] { return status; };
        m_report.setStatus = [this](const QString &text) { note(u"status "_qs, status = text); };
        m_report.error = [this] { return error; };
        m_report.setError = [this](const QString &text) {
            error = text;
            note(u"error "_qs, text);
        };
        m_report.endRun = [this] { events += u"end"_qs; };
        m_report.refreshPlaybackState = [this] {
            events += u"refresh"_qs;
            recorded = files.tempConvertedURL();
        };
    }

    /// Prepares on a worker, and then lets the main thread catch up.
    std::optional<QString> prepare(const QString &path)
    {
        const AudioPreparer preparer(files);
        const auto result =
            std::async(std::launch::async, [&] { return prepareAudio(path, m_settings, preparer, m_report); }).get();
        runPosted();
        return result;
    }

    TemporaryFiles files;
    QString status;
    std::optional<QString> error;
    QStringList events;
    std::optional<QString> recorded; ///< at the last refresh

private:
    void note(const QString &kind, const QString &text) { events += kind + text; }

    PreparationSettings m_settings;
    PreparationReport m_report;
};

TEST(FilePreparation, anAudioFileGoesAsItStands)
{
    MediaFolder folder;
    Screen screen(filePreparation());
    screen.files.record(folder.write(u"old.wav"_qs, "1"));
    EXPECT_EQ(screen.prepare(u"/music/talk.MP3"_qs), u"/music/talk.MP3"_qs);
    EXPECT_EQ(screen.events, (QStringList{u"status Audio detected, no conversion needed."_qs, u"refresh"_qs}));
    EXPECT_EQ(screen.files.tempConvertedURL(), std::nullopt);
    EXPECT_EQ(folder.names(), QStringList()) << "the file of the run before is removed";
}

TEST(FilePreparation, aMovieIsConverted)
{
    MediaFolder folder;
    Screen screen(filePreparation());
    screen.files.record(folder.write(u"old.wav"_qs, "1"));
    const std::optional<QString> result = screen.prepare(folder.make(u"movie.mp4"_qs, sound));
    EXPECT_EQ(screen.events, (QStringList{u"status Converting movie.mp4 to wav audio…"_qs, u"refresh"_qs,
                                          u"status Conversion finished, starting transcription…"_qs}));
    ASSERT_TRUE(result);
    EXPECT_EQ(screen.files.tempConvertedURLs(), QStringList{*result});
    EXPECT_EQ(screen.recorded, result) << "the playback is refreshed when the file has been recorded";
    EXPECT_FALSE(QFile::exists(folder.path(u"old.wav"_qs)));
    EXPECT_EQ(describedFormat(*result), u"wav pcm_s16le 16000 1"_qs);
}

TEST(FilePreparation, aFailureKeepsTheMessagesOfTheConversion)
{
    MediaFolder folder;
    Screen screen(filePreparation());
    EXPECT_EQ(screen.prepare(folder.make(u"movie.mp4"_qs, picture)), std::nullopt);
    EXPECT_EQ(
        screen.events,
        (QStringList{u"status Converting movie.mp4 to wav audio…"_qs, u"status Conversion failed."_qs,
                     u"error Could not convert movie.mp4 to audio. The file might not contain an audio track."_qs}));
}

TEST(FilePreparation, theLastMessagesStandInWhereNoneAre)
{
    MediaFolder folder;
    PreparationSettings settings = filePreparation();
    settings.failedError.clear();
    settings.convertingStatus.clear();
    settings.failedStatus.clear();
    Screen screen(settings);
    EXPECT_EQ(screen.prepare(folder.path(u"gone"_qs)), std::nullopt);
    EXPECT_EQ(screen.events, (QStringList{u"error Could not convert file to audio for transcription."_qs,
                                          u"status Conversion failed."_qs}));
}

TEST(FilePreparation, eachOfTheLastMessagesStandsInByItself)
{
    MediaFolder folder;
    PreparationSettings settings = filePreparation();
    settings.failedError.clear();
    Screen withoutError(settings);
    withoutError.prepare(folder.path(u"gone"_qs));
    EXPECT_EQ(withoutError.error, u"Could not convert file to audio for transcription."_qs);
    EXPECT_EQ(withoutError.events.filter(u"status"_qs),
              (QStringList{u"status Converting gone to wav audio…"_qs, u"status Conversion failed."_qs}))
        << "the status that stands is not set anew";

    settings = filePreparation();
    settings.convertingStatus.clear();
    settings.failedStatus.clear();
    Screen withoutStatus(settings);
    withoutStatus.prepare(folder.path(u"gone"_qs));
    EXPECT_EQ(withoutStatus.events,
              (QStringList{u"error Could not convert gone to audio. The file might not contain an audio track."_qs,
                           u"status Conversion failed."_qs}));
}

TEST(BatchPreparation, anAudioFileGoesAsItStands)
{
    MediaFolder folder;
    Screen screen(batchPreparation());
    screen.files.record(folder.write(u"first.wav"_qs, "1"));
    EXPECT_EQ(screen.prepare(u"/music/<name>.ogg"_qs), u"/music/<name>.ogg"_qs);
    EXPECT_EQ(screen.events, QStringList{u"status Audio detected, no conversion needed for <name>.ogg."_qs});
    EXPECT_EQ(folder.names(), QStringList{u"first.wav"_qs}) << "the files of the batch stay until its end";
}

TEST(BatchPreparation, moviesAreConvertedAndRecordedOneBehindTheOther)
{
    MediaFolder folder;
    Screen screen(batchPreparation());
    screen.files.record(folder.write(u"first.wav"_qs, "1"));
    const std::optional<QString> result = screen.prepare(folder.make(u"movie.mp4"_qs, sound));
    ASSERT_TRUE(result);
    EXPECT_EQ(screen.events, (QStringList{u"status Converting movie.mp4 to wav audio…"_qs,
                                          u"status Conversion finished for movie.mp4, starting transcription…"_qs}));
    EXPECT_EQ(screen.files.tempConvertedURLs(), (QStringList{folder.path(u"first.wav"_qs), *result}));
}

TEST(BatchPreparation, aFailureEndsTheBatch)
{
    MediaFolder folder;
    Screen screen(batchPreparation());
    screen.files.record(folder.write(u"first.wav"_qs, "1"));
    EXPECT_EQ(screen.prepare(folder.make(u"movie.mp4"_qs, picture)), std::nullopt);
    EXPECT_EQ(
        screen.events,
        (QStringList{u"status Converting movie.mp4 to wav audio…"_qs, u"status Conversion failed for movie.mp4."_qs,
                     u"error Could not convert movie.mp4 to audio. The file might not contain an audio track."_qs,
                     u"error Could not convert movie.mp4 for transcription."_qs, u"status "_qs, u"end"_qs}));
    EXPECT_EQ(screen.files.tempConvertedURLs(), QStringList());
    EXPECT_EQ(folder.names(), QStringList{u"movie.mp4"_qs});
}

TEST(MicrophonePreparation, anAudioFileGoesAsItStandsWithoutAWord)
{
    MediaFolder folder;
    Screen screen(microphonePreparation());
    screen.files.record(folder.write(u"old.m4a"_qs, "1"));
    EXPECT_EQ(screen.prepare(u"/music/take.wav"_qs), u"/music/take.wav"_qs);
    EXPECT_EQ(screen.events, QStringList());
    EXPECT_EQ(folder.names(), QStringList());
}

TEST(MicrophonePreparation, aMovieIsExportedWithoutAWord)
{
    MediaFolder folder;
    Screen screen(microphonePreparation());
    const std::optional<QString> result = screen.prepare(folder.make(u"movie.mp4"_qs, sound));
    ASSERT_TRUE(result);
    EXPECT_EQ(screen.events, QStringList());
    EXPECT_TRUE(result->startsWith(folder.path(u"microphone_"_qs)) && result->endsWith(u".m4a"_qs));
    EXPECT_EQ(screen.files.tempConvertedURL(), result);
}

TEST(MicrophonePreparation, aFailureEndsTheRun)
{
    MediaFolder folder;
    Screen screen(microphonePreparation());
    EXPECT_EQ(screen.prepare(folder.make(u"movie.mp4"_qs, picture)), std::nullopt);
    EXPECT_EQ(screen.events,
              (QStringList{u"error Could not convert file to audio for transcription."_qs, u"status "_qs, u"end"_qs}));
}

TEST(MeetingPreparation, onlyAWavGoesAsItStands)
{
    MediaFolder folder;
    Screen screen(meetingPreparation());
    EXPECT_EQ(screen.prepare(u"/music/meeting.WAV"_qs), u"/music/meeting.WAV"_qs);
    const std::optional<QString> result = screen.prepare(folder.make(u"meeting.m4a"_qs, sound));
    ASSERT_TRUE(result);
    EXPECT_TRUE(result->startsWith(folder.path(u"meeting-transcribe-"_qs)));
    EXPECT_EQ(screen.files.tempConvertedURL(), result);
    EXPECT_EQ(screen.events, QStringList());
}

TEST(MeetingPreparation, aFailureTellsTheErrorAndEndsTheRun)
{
    MediaFolder folder;
    Screen screen(meetingPreparation());
    screen.files.record(folder.write(u"old.wav"_qs, "1"));
    EXPECT_EQ(screen.prepare(folder.path(u"gone.m4a"_qs)), std::nullopt);
    EXPECT_EQ(screen.events, (QStringList{u"error No audio track found to transcribe."_qs, u"status "_qs, u"end"_qs}));
    EXPECT_EQ(folder.names(), QStringList());
}

TEST(PreparationSettings, nameTheQueues)
{
    EXPECT_EQ(filePreparation().queueLabel, u"sv.wav.convert"_qs);
    EXPECT_EQ(batchPreparation().queueLabel, u"sv.batch.wav.convert"_qs);
}

} // namespace
