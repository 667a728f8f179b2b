#include "audio/playback_controller.h"

#include "platform/file_system.h"
#include "platform/main_queue.h"
#include "platform/media/media_duration.h"
#include "platform/worker.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace sorvanta {

namespace {

constexpr double shortestSlider = 0.01; // seconds

} // namespace

PlaybackController::PlaybackController(PlaybackSettings settings, Hooks hooks, OpenPlayer openPlayer, QObject *parent)
    : QObject(parent)
    , m_settings(std::move(settings))
    , m_hooks(std::move(hooks))
    , m_openPlayer(std::move(openPlayer))
{
    m_isRunning.setBinding([this] { return m_isPlaying && !m_isPlaybackPaused; });
    m_timer.setInterval(m_settings.tick);
    connect(&m_timer, &QTimer::timeout, this, &PlaybackController::tick);
}

PlaybackController::~PlaybackController() = default;

void PlaybackController::togglePlayback()
{
    const std::optional<QString> file = fileToPlay();
    if (!file && m_settings.needsFileToPause)
        sayThatThereIsNoFile();
    else if (m_isRunning)
        pause();
    else if (prepare(file, m_settings.opensOtherFile))
        start();
}

void PlaybackController::seekPlayback(double seconds)
{
    if (std::isnan(seconds))
        return;
    switch (m_settings.seek) {
    case PlaybackSettings::Seek::MovesSlider:
        m_playbackTime = std::clamp(seconds, 0.0, sliderEnd());
        if (m_player && !m_isScrubbingAudio)
            m_player->seek(m_playbackTime);
        return;
    case PlaybackSettings::Seek::NeedsPlayer:
        if (m_player)
            movePlayer(seekTarget(seconds));
        return;
    case PlaybackSettings::Seek::OpensPlayer:
        const std::optional<QString> file = fileToPlay();
        if (!file)
            sayThatThereIsNoFile();
        else if (prepare(file, false))
            movePlayer(seekTarget(seconds));
        return;
    }
}

void PlaybackController::stopPlayback(bool reset)
{
    const bool forgets = m_settings.atEnd == PlaybackSettings::AtEnd::ForgetFile;
    const bool rewinds = reset || forgets;
    if (m_player && !rewinds)
        readPosition();
    m_timer.stop();
    m_player.reset();
    m_currentAudioPath.reset();
    setRunning(false);
    if (rewinds)
        m_playbackTime = 0;
    if (forgets) {
        m_playbackDuration = 0;
        m_isScrubbingAudio = false;
    }
    if (reset && m_settings.marksActiveSegment && m_hooks.clearActiveSegment)
        m_hooks.clearActiveSegment();
}

void PlaybackController::refreshPlaybackState()
{
    const int refresh = ++*m_refreshes;
    const std::optional<QString> file = m_hooks.file();
    if (!file) {
        m_playbackDuration = 0;
        return;
    }
    runOnWorker([this, refresh, path = *file, refreshes = std::weak_ptr<int>(m_refreshes)] {
        postToMain([this, refresh, path, refreshes, seconds = mediaDuration(path)] {
            const std::shared_ptr<int> latest = refreshes.lock();
            if (latest && *latest == refresh && m_hooks.file() == path)
                m_playbackDuration = seconds;
        });
    });
}

void PlaybackController::beginScrubbing()
{
    m_isScrubbingAudio = true;
    m_resumeAfterScrub = m_isPlaying;
    if (m_player)
        m_player->pause();
}

void PlaybackController::endScrubbing()
{
    m_isScrubbingAudio = false;
    const bool resumes = std::exchange(m_resumeAfterScrub, false);
    if (!m_player)
        return;
    m_player->seek(m_playbackTime);
    if (resumes)
        start();
}

double PlaybackController::sliderEnd() const
{
    return std::max(m_playbackDuration.value(), shortestSlider);
}

std::optional<QString> PlaybackController::fileToPlay() const
{
    std::optional<QString> file = m_hooks.file();
    if (file && m_settings.fileMustExist && (file->isEmpty() || !itemExists(*file)))
        file.reset();
    return file;
}

void PlaybackController::sayThatThereIsNoFile() const
{
    if (!m_settings.noFileError.isEmpty())
        sayError(m_settings.noFileError);
}

void PlaybackController::sayError(const QString &text) const
{
    if (m_hooks.setError)
        m_hooks.setError(text);
}

bool PlaybackController::prepare(const std::optional<QString> &file, bool isOtherRefused)
{
    if (!m_player || (isOtherRefused && m_currentAudioPath != file))
        return file && openPlayer(*file);
    if (m_settings.readsDurationOnUse)
        readDuration();
    return true;
}

bool PlaybackController::openPlayer(const QString &path)
{
    stopPlayback(false);
    try {
        m_player = m_openPlayer(
            path, {
                      .ended = [this] { handleEnd(); },
                      .failedToOpen =
                          [this](const Error &failure) { handleFailure(failure, m_settings.reportsFailureToOpen); },
                      .failed = [this](const Error &failure) { handleFailure(failure, true); },
                      .durationKnown = [this] { readDuration(); },
                  });
    } catch (const Error &failure) {
        handleFailure(failure, m_settings.reportsFailureToOpen);
        return false;
    }
    m_currentAudioPath = path;
    readDuration();
    if (!m_settings.resumesPosition)
        readPosition();
    else if (m_playbackTime > 0)
        m_player->seek(m_playbackTime);
    return true;
}

void PlaybackController::start()
{
    m_player->play();
    setRunning(true);
    m_timer.start();
    if (!m_settings.playStatus.isEmpty() && m_hooks.setStatus)
        m_hooks.setStatus(m_settings.playStatus);
}

void PlaybackController::pause()
{
    m_player->pause();
    m_timer.stop();
    if (m_settings.readsPositionOnPause && readPosition())
        markSegment();
    setRunning(false);
}

void PlaybackController::movePlayer(double target)
{
    if (m_settings.waitsForSeek) {
        m_player->seek(target, [this, target] {
            m_playbackTime = target;
            markSegment();
        });
        return;
    }
    m_player->seek(target);
    m_playbackTime = target;
    if (m_isRunning)
        m_player->play();
}

void PlaybackController::tick()
{
    if (!m_player->isPlaying())
        return;
    if (readPosition())
        markSegment();
    if (m_settings.readsDurationOnTick)
        readDuration();
}

bool PlaybackController::readPosition()
{
    const double position = m_player->position();
    if (!std::isfinite(position))
        return false;
    m_playbackTime = position;
    return true;
}

void PlaybackController::readDuration()
{
    const double duration = m_player->duration();
    if (std::isfinite(duration))
        m_playbackDuration = duration;
}

void PlaybackController::markSegment() const
{
    if (m_settings.marksActiveSegment && m_hooks.updateActiveSegment)
        m_hooks.updateActiveSegment(m_playbackTime);
}

void PlaybackController::setRunning(bool isRunning)
{
    if (!m_settings.isPlayingWhilePaused) {
        m_isPlaying = isRunning;
    } else if (m_player) {
        m_isPlaybackPaused = !isRunning;
        m_isPlaying = true;
    } else {
        m_isPlaying = false;
        m_isPlaybackPaused = false;
    }
}

void PlaybackController::handleEnd()
{
    if (m_settings.atEnd != PlaybackSettings::AtEnd::KeepPlayer) {
        stopPlayback(true);
        return;
    }
    m_timer.stop();
    setRunning(false);
    m_playbackTime = 0;
}

void PlaybackController::handleFailure(const Error &failure, bool isReported)
{
    stopPlayback(false);
    if (isReported)
        sayError(m_settings.failureError + failure.localizedDescription());
}

double PlaybackController::seekTarget(double seconds) const
{
    const double limit = m_playbackDuration > 0 ? m_playbackDuration.value() : m_player->duration();
    // An unknown duration is not a number, and no limit.
    return std::max(0.0, std::isnan(limit) ? seconds : std::min(seconds, limit));
}

} // namespace sorvanta
