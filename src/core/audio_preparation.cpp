#include "core/audio_preparation.h"

#include "platform/error.h"
#include "platform/main_queue.h"
#include "platform/paths.h"

namespace sorvanta {

namespace {

using Conversion = PreparationSettings::Conversion;

QString couldNotConvert()
{
    return u"Could not convert <name> to audio. The file might not contain an audio track."_qs;
}

/// One preparation, with the words for its file.
class Preparation {
public:
    Preparation(const QString &path, const PreparationSettings &settings, const AudioPreparer &preparer,
                const PreparationReport &report)
        : m_path(path)
        , m_settings(settings)
        , m_preparer(preparer)
        , m_report(report)
    {
    }

    std::optional<QString> run() const
    {
        if (m_settings.removesTemporariesFirst)
            m_preparer.removeTemporaries();
        if (m_settings.conversion == Conversion::Meeting)
            return convertForMeeting();
        if (!AudioPreparer::needsConversion(m_path)) {
            showStatus(m_settings.asItStandsStatus);
            if (m_settings.refreshesPlayback)
                postToMain(m_report.refreshPlaybackState);
            return m_path;
        }
        return convert();
    }

private:
    std::optional<QString> convertForMeeting() const
    {
        try {
            return m_preparer.convertForMeeting(m_path);
        } catch (const Error &failure) {
            reportFailure(failure.localizedDescription());
            return std::nullopt;
        } catch (const std::exception &) {
            reportFailure(u"Conversion failed."_qs);
            return std::nullopt;
        }
    }

    std::optional<QString> convert() const
    {
        showStatus(m_settings.convertingStatus);
        const auto recorded = m_settings.refreshesPlayback ? m_report.refreshPlaybackState : nullptr;
        const std::optional<QString> result = m_settings.conversion == Conversion::M4a
                                                  ? m_preparer.exportToM4A(m_path)
                                                  : m_preparer.convertToWav(m_path, m_settings.queueLabel, recorded);
        if (result) {
            showStatus(m_settings.convertedStatus);
            return result;
        }
        showStatus(m_settings.failedStatus);
        showError(m_settings.failedError);
        reportFailure(worded(m_settings.lastError));
        return std::nullopt;
    }

    void reportFailure(const QString &error) const
    {
        postToMain([error, settings = m_settings, preparer = m_preparer, report = m_report] {
            if (!settings.keepsEarlierMessages || !report.error())
                report.setError(error);
            if (!settings.keepsEarlierMessages || report.status().isEmpty())
                report.setStatus(settings.lastStatus);
            if (settings.endsRun)
                report.endRun();
            if (settings.removesTemporariesOnFailure)
                preparer.removeTemporaries();
        });
    }

    void showStatus(const QString &text) const
    {
        if (!text.isEmpty())
            postToMain([setStatus = m_report.setStatus, words = worded(text)] { setStatus(words); });
    }

    void showError(const QString &text) const
    {
        if (!text.isEmpty())
            postToMain([setError = m_report.setError, words = worded(text)] { setError(words); });
    }

    QString worded(QString text) const { return text.replace(u"<name>"_qs, lastPathComponent(m_path)); }

    QString m_path;
    const PreparationSettings &m_settings;
    const AudioPreparer &m_preparer;
    const PreparationReport &m_report;
};

} // namespace

PreparationSettings filePreparation()
{
    PreparationSettings settings;
    settings.queueLabel = u"sv.wav.convert"_qs;
    settings.removesTemporariesFirst = true;
    settings.refreshesPlayback = true;
    settings.asItStandsStatus = u"Audio detected, no conversion needed."_qs;
    settings.convertingStatus = u"Converting <name> to wav audio…"_qs;
    settings.convertedStatus = u"Conversion finished, starting transcription…"_qs;
    settings.failedStatus = u"Conversion failed."_qs;
    settings.failedError = couldNotConvert();
    settings.lastError = u"Could not convert file to audio for transcription."_qs;
    settings.lastStatus = u"Conversion failed."_qs;
    settings.keepsEarlierMessages = true;
    return settings;
}

PreparationSettings batchPreparation()
{
    PreparationSettings settings;
    settings.queueLabel = u"sv.batch.wav.convert"_qs;
    settings.asItStandsStatus = u"Audio detected, no conversion needed for <name>."_qs;
    settings.convertingStatus = u"Converting <name> to wav audio…"_qs;
    settings.convertedStatus = u"Conversion finished for <name>, starting transcription…"_qs;
    settings.failedStatus = u"Conversion failed for <name>."_qs;
    settings.failedError = couldNotConvert();
    settings.lastError = u"Could not convert <name> for transcription."_qs;
    settings.endsRun = true;
    settings.removesTemporariesOnFailure = true;
    return settings;
}

PreparationSettings microphonePreparation()
{
    PreparationSettings settings;
    settings.conversion = Conversion::M4a;
    settings.removesTemporariesFirst = true;
    settings.lastError = u"Could not convert file to audio for transcription."_qs;
    settings.endsRun = true;
    return settings;
}

PreparationSettings meetingPreparation()
{
    PreparationSettings settings;
    settings.conversion = Conversion::Meeting;
    settings.endsRun = true;
    settings.removesTemporariesOnFailure = true;
    return settings;
}

std::optional<QString> prepareAudio(const QString &path, const PreparationSettings &settings,
                                    const AudioPreparer &preparer, const PreparationReport &report)
{
    return Preparation(path, settings, preparer, report).run();
}

} // namespace sorvanta
