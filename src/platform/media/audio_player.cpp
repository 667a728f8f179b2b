#include "platform/media/audio_player.h"

#include "platform/file_descriptor.h"
#include "platform/main_queue.h"
#include "platform/media/mpv.h"

#include <QDir>
#include <QTimer>

#include <array>
#include <chrono>
#include <cmath>
#include <limits>
#include <optional>
#include <utility>
#include <vector>

#include <sys/stat.h>

namespace sorvanta {

namespace {

using Clock = std::chrono::steady_clock;

constexpr std::chrono::milliseconds longestOpening(250);

/// A sound server that is started anew, by its supervisor or by the user, is there again within this time.
constexpr std::chrono::seconds longestOutage(6);
constexpr std::chrono::milliseconds retryInterval(400);

// What the answers of libmpv are told apart by; the numbers from firstSeek on are one seek each.
enum Request : uint64_t { EndRequest = 1, TimeProperty, DurationProperty, EndProperty, OpenedHook, FirstSeek };

/// Anything but a regular file could keep the reader waiting for ever; what is not there is left to libmpv to refuse.
bool isIrregular(const QByteArray &path)
{
    struct stat status = {};
    return path.isEmpty() || (::stat(path.constData(), &status) == 0 && !S_ISREG(status.st_mode));
}

/// What happened while events were read, to be told when nothing of the player is in use any more.
struct News {
    bool hasEnded = false;
    bool isDurationKnown = false;
    std::function<void()> seekCompleted;
    std::optional<Error> openingFailure;
    std::optional<Error> failure;
};

class MpvPlayer : public AudioPlayer {
public:
    MpvPlayer(QByteArray path, Events events)
        : m_path(std::move(path))
        , m_events(std::move(events))
    {
        mpv_observe_property(m_mpv.get(), TimeProperty, "time-pos", MPV_FORMAT_DOUBLE);
        mpv_observe_property(m_mpv.get(), EndProperty, "eof-reached", MPV_FORMAT_FLAG);
        mpv_hook_add(m_mpv.get(), OpenedHook, "on_preloaded", 0);
        m_retry.setSingleShot(true);
        m_retry.setInterval(retryInterval);
        m_retry.callOnTimeout([this] { load(); });
        load();
    }

    /// @throws Error if the file turns out within the time not to open
    void awaitOpening()
    {
        const auto deadline = Clock::now() + longestOpening;
        News news;
        while (m_state == State::Loading && !news.openingFailure) {
            const std::chrono::duration<double> left = deadline - Clock::now();
            if (left.count() <= 0)
                break;
            handle(*mpv_wait_event(m_mpv.get(), left.count()), news);
        }
        if (news.openingFailure)
            throw *news.openingFailure;
        m_hasReturned = true;
    }

    void play() override
    {
        m_isPlaying = true;
        if (m_state == State::Lost)
            load();
        applyPause();
        askWhetherAtEnd();
    }

    void pause() override
    {
        m_isPlaying = false;
        m_retry.stop();
        applyPause();
    }

    bool isPlaying() const override { return m_isPlaying; }
    double position() const override { return m_position; }
    double duration() const override { return m_duration; }

    void seek(double seconds, std::function<void()> completed) override
    {
        m_position = seconds;
        m_earliest = seconds;
        m_seekCompleted = std::move(completed);
        if (m_state == State::Loaded) {
            sendSeek();
        } else {
            m_seek = Seek::Wanted;
            m_mpv.wakeUp();
        }
    }

private:
    enum class State {
        Loading,
        Loaded,
        Lost, ///< without a sound server the file had to be closed; it is opened again to play on
    };
    /// The way of a seek. Until it is over, positions and ends that are told belong to an earlier one.
    enum class Seek { None, Wanted, Sent, Accepted, Moving };

    void load()
    {
        m_state = State::Loading;
        std::array<const char *, 3> command = {"loadfile", m_path.constData(), nullptr};
        mpv_command_async(m_mpv.get(), 0, command.data());
    }

    void applyPause()
    {
        int isPaused = m_isPlaying ? 0 : 1;
        if (m_state == State::Loaded)
            mpv_set_property_async(m_mpv.get(), 0, "pause", MPV_FORMAT_FLAG, &isPaused);
    }

    void sendSeek()
    {
        m_seek = Seek::Sent;
        const QByteArray seconds = QByteArray::number(m_position, 'f', 6);
        std::array<const char *, 4> command = {"seek", seconds.constData(), "absolute+exact", nullptr};
        mpv_command_async(m_mpv.get(), ++m_lastSeek, command.data());
    }

    void askWhetherAtEnd()
    {
        if (m_state == State::Loaded)
            mpv_get_property_async(m_mpv.get(), EndRequest, "eof-reached", MPV_FORMAT_FLAG);
    }

    void readEvents()
    {
        News news;
        for (const mpv_event *event = m_mpv.next(); event; event = m_mpv.next())
            handle(*event, news);
        if (m_state == State::Lost && m_seekCompleted)
            news.seekCompleted = std::exchange(m_seekCompleted, {});
        tell(news);
    }

    void handle(const mpv_event &event, News &news)
    {
        switch (event.event_id) {
        case MPV_EVENT_HOOK:
            handleOpened(static_cast<const mpv_event_hook *>(event.data)->id, news);
            break;
        case MPV_EVENT_FILE_LOADED:
            handleLoaded();
            break;
        case MPV_EVENT_END_FILE:
            handleClosed(*static_cast<const mpv_event_end_file *>(event.data), news);
            break;
        case MPV_EVENT_PROPERTY_CHANGE:
            handleChange(event.reply_userdata, *static_cast<const mpv_event_property *>(event.data));
            break;
        case MPV_EVENT_GET_PROPERTY_REPLY:
            if (event.error == 0 && *static_cast<int *>(static_cast<const mpv_event_property *>(event.data)->data))
                handleEnd(news);
            break;
        case MPV_EVENT_COMMAND_REPLY:
            if (event.reply_userdata == m_lastSeek && m_seek == Seek::Sent)
                m_seek = event.error == 0 ? Seek::Accepted : Seek::None; // refused as the file is being closed
            break;
        case MPV_EVENT_SEEK:
            if (m_seek == Seek::Accepted)
                m_seek = Seek::Moving;
            break;
        case MPV_EVENT_PLAYBACK_RESTART:
            if (m_seek == Seek::Moving) {
                m_seek = Seek::None;
                news.seekCompleted = std::exchange(m_seekCompleted, {});
                askWhetherAtEnd();
            }
            break;
        default:
            break;
        }
    }

    /// The file is open and libmpv waits, not yet for the sound server: the one moment at which it answers at once.
    void handleOpened(uint64_t hook, News &news)
    {
        double seconds = 0;
        if (mpv_get_property(m_mpv.get(), "duration", MPV_FORMAT_DOUBLE, &seconds) == 0 && std::isfinite(seconds)) {
            m_duration = seconds;
            news.isDurationKnown = m_hasReturned;
        }
        mpv_hook_continue(m_mpv.get(), hook);
    }

    void handleLoaded()
    {
        m_state = State::Loaded;
        if (m_seek == Seek::Wanted)
            sendSeek();
        applyPause();
    }

    void handleClosed(const mpv_event_end_file &end, News &news)
    {
        if (end.reason != MPV_END_FILE_REASON_ERROR)
            return;
        if (end.error != MPV_ERROR_AO_INIT_FAILED) {
            m_isPlaying = false;
            news.openingFailure = mpv::error(end.error);
            return;
        }
        m_state = State::Lost;
        m_seek = Seek::Wanted;
        if (!m_isPlaying)
            return;
        if (m_hasSounded && !m_outageBegin)
            m_outageBegin = Clock::now();
        if (m_hasSounded && Clock::now() - *m_outageBegin < longestOutage) {
            m_retry.start();
        } else {
            m_isPlaying = false;
            news.failure = mpv::error(end.error);
        }
    }

    void handleChange(uint64_t property, const mpv_event_property &change)
    {
        if (change.format == MPV_FORMAT_NONE)
            return;
        if (property == EndProperty) {
            if (*static_cast<const int *>(change.data))
                askWhetherAtEnd();
            return;
        }
        const double seconds = *static_cast<const double *>(change.data);
        if (m_seek != Seek::None || m_state != State::Loaded || seconds < m_earliest)
            return;
        if (m_isPlaying && seconds > m_position) {
            m_hasSounded = true;
            m_outageBegin.reset();
        }
        m_position = seconds;
        m_earliest = seconds;
    }

    void handleEnd(News &news)
    {
        if (!m_isPlaying || m_seek != Seek::None)
            return;
        pause();
        seek(0, {});
        news.hasEnded = true;
    }

    void tell(const News &news)
    {
        // Any of these may destroy the player.
        const std::weak_ptr<int> life = m_life;
        const Events events = m_events;
        const auto tellIf = [&life](bool hasHappened, const auto &function, const auto &...arguments) {
            if (hasHappened && function && !life.expired())
                function(arguments...);
        };
        tellIf(news.isDurationKnown, events.durationKnown);
        tellIf(true, news.seekCompleted);
        tellIf(news.hasEnded, events.ended);
        if (news.openingFailure)
            tellIf(true, events.failedToOpen, *news.openingFailure);
        if (news.failure)
            tellIf(true, events.failed, *news.failure);
    }

    QByteArray m_path;
    Events m_events;
    State m_state = State::Loading;
    Seek m_seek = Seek::None;
    uint64_t m_lastSeek = FirstSeek;
    std::function<void()> m_seekCompleted;
    bool m_hasReturned = false;
    bool m_isPlaying = false;
    bool m_hasSounded = false;
    std::optional<Clock::time_point> m_outageBegin;
    double m_position = 0;
    /// Only a seek goes back. Earlier times that are told come from a decoder that begins in front of the wanted
    /// position, or from a clock of the sound server that wavers.
    double m_earliest = 0;
    double m_duration = std::numeric_limits<double>::quiet_NaN();
    QTimer m_retry;
    std::shared_ptr<int> m_life = std::make_shared<int>();
    mpv::Handle m_mpv{[this] { readEvents(); }};
};

} // namespace

std::unique_ptr<AudioPlayer> openAudioPlayer(const QString &path, AudioPlayer::Events events)
{
    // An absolute path is never taken for an address, an option or the name of a protocol.
    const QByteArray absolute = encodedPath(QDir::current().absoluteFilePath(path));
    if (isIrregular(absolute))
        throw mpv::error(MPV_ERROR_LOADING_FAILED);
    auto player = std::make_unique<MpvPlayer>(absolute, std::move(events));
    player->awaitOpening();
    return player;
}

} // namespace sorvanta
