#include "core/audio_preparer.h"

#include "core/audio_copy.h"
#include "platform/file_errors.h"
#include "platform/file_types.h"
#include "platform/folders.h"
#include "platform/main_queue.h"
#include "platform/paths.h"
#include "platform/unique_names.h"

#include <QFile>

#include <algorithm>
#include <cerrno>
#include <utility>

namespace sorvanta {

namespace {

enum MeetingCode { NoAudioTrack = 201, CannotRead = 202, CannotWrite = 203, ConversionFailed = 204 };

constexpr int mostExportedChannels = 2;
constexpr int exportedBitsPerChannel = 64000;

Error meetingError(MeetingCode code, const QString &description)
{
    return Error(u"MeetingRecorder"_qs, code, description);
}

Error noAudioTrack()
{
    return meetingError(NoAudioTrack, u"No audio track found to transcribe."_qs);
}

/// What the system cannot open now, but perhaps later, is told as it is; all else that does not open holds no audio.
bool isOfThePresentOnly(int systemError)
{
    return systemError == EMFILE || systemError == ENFILE || systemError == EIO || systemError == ENOMEM;
}

std::shared_ptr<AudioCopy> openMeeting(const QString &path)
{
    try {
        return std::make_shared<AudioCopy>(path);
    } catch (const ReadingError &failure) {
        if (isOfThePresentOnly(failure.systemError()))
            throw;
        throw noAudioTrack();
    } catch (const Error &) {
        throw noAudioTrack();
    }
}

void startMeeting(AudioCopy &copy, const AudioFileSettings &wav, const QString &destination)
{
    try {
        copy.startReading(wav);
    } catch (const Error &) {
        throw meetingError(CannotRead, u"Cannot read audio for conversion."_qs);
    }
    try {
        copy.startWriting(destination);
    } catch (const Error &failure) {
        if (failure.domain() == u"NSCocoaErrorDomain")
            throw;
        throw meetingError(CannotWrite, u"Cannot prepare WAV writer."_qs);
    }
}

AudioFileSettings exportSettings(const AudioReader &source)
{
    const int channels = std::clamp(source.sourceChannels(), 1, mostExportedChannels);
    return {AudioFileSettings::Container::M4a, nearestAacSampleRate(source.sourceSampleRate()), channels,
            channels * exportedBitsPerChannel};
}

} // namespace

AudioPreparer::AudioPreparer(TemporaryFiles files, Settings settings)
    : m_files(std::move(files))
    , m_settings(std::move(settings))
{
    if (!m_settings.newExportName)
        m_settings.newExportName = [] { return newDatedName(u"microphone_"_qs); };
}

AudioPreparer::AudioPreparer(TemporaryFiles files)
    : AudioPreparer(std::move(files), Settings())
{
}

bool AudioPreparer::needsConversion(const QString &path)
{
    return !isAudioExtension(pathExtension(path));
}

std::optional<QString> AudioPreparer::convertToWav(const QString &path, const QString &queueLabel,
                                                   const std::function<void()> &recorded) const
{
    const QString output = newTemporaryPath({}, u"wav"_qs);
    bool hasSucceeded = false;
    try {
        const std::shared_ptr<AudioCopy> copy = std::make_shared<AudioCopy>(path);
        copy->startReading(m_settings.wavSettings);
        copy->startWriting(output);
        hasSucceeded = AudioCopy::run(copy, queueLabel, m_settings.wavLimit) && copy->isWhole();
    } catch (const std::exception &) {
        // The result says it: which step failed is not shown.
    }
    if (!hasSucceeded) {
        QFile::remove(output);
        return std::nullopt;
    }
    record(output, recorded);
    return output;
}

QString AudioPreparer::convertForMeeting(const QString &path) const
{
    if (pathExtension(path).compare(u"wav", Qt::CaseInsensitive) == 0)
        return path;
    const std::shared_ptr<AudioCopy> copy = openMeeting(path);
    const QString output = newTemporaryPath(u"meeting-transcribe-"_qs, u"wav"_qs);
    QFile::remove(output);
    startMeeting(*copy, m_settings.wavSettings, output);
    AudioCopy::run(copy, u"MeetingRecorder.convert"_qs, m_settings.meetingLimit);
    if (copy->writerStatus() != AudioWriter::Status::Completed) {
        const QString description = copy->writerErrorDescription();
        throw meetingError(ConversionFailed, description.isEmpty() ? u"Conversion failed."_qs : description);
    }
    record(output);
    return output;
}

std::optional<QString> AudioPreparer::exportToM4A(const QString &path) const
{
    try {
        const std::shared_ptr<AudioCopy> copy = std::make_shared<AudioCopy>(path);
        copy->startReading(exportSettings(copy->source()));
        const QString output = freePath(temporaryFolder(), m_settings.newExportName(), u"m4a"_qs);
        copy->startWriting(output);
        if (!AudioCopy::run(copy, {}, m_settings.exportLimit) || !copy->isWhole())
            return std::nullopt;
        record(output);
        return output;
    } catch (const std::exception &) {
        return std::nullopt;
    }
}

void AudioPreparer::removeTemporaries() const
{
    auto remove = [files = m_files]() mutable { files.removeTemporaries(); };
    if (isMainThread())
        remove();
    else
        postToMain(remove);
}

void AudioPreparer::record(const QString &path, const std::function<void()> &recorded) const
{
    TemporaryFiles made;
    made.record(path);
    postToMain([files = m_files, made, recorded]() mutable {
        files.takeOver(made);
        if (recorded)
            recorded();
    });
}

} // namespace sorvanta
