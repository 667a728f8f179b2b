#include "platform/media/sound_capture.h"

#include "platform/main_queue.h"
#include "platform/media/sound_clock.h"
#include "platform/media/sound_connection.h"
#include "platform/named_thread.h"

#include <atomic>
#include <chrono>
#include <optional>
#include <span>
#include <thread>
#include <utility>

#include <pulse/mainloop.h>

namespace sorvanta {

namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

constexpr auto longestOpening = 1500ms;
constexpr auto longestSilence = 1000ms; ///< without any buffer, which come also when nobody speaks
constexpr auto retryInterval = 300ms;
constexpr std::chrono::microseconds longestPoll = 100ms;

struct FreeLoop {
    void operator()(pa_mainloop *loop) const { pa_mainloop_free(loop); }
};

using Loop = std::unique_ptr<pa_mainloop, FreeLoop>;

/// A loop needs a pipe, and nothing else that could be refused.
Loop newLoop()
{
    Loop loop(pa_mainloop_new());
    if (!loop)
        throw captureError(SoundCapture::OtherFailure, QStringLiteral("Too many files are open."));
    return loop;
}

} // namespace

/// All but the constructor, the destructor and start() belongs to the thread of the capture.
class SoundCapture::Session {
public:
    Session(SoundSource source, const AudioFormat &format, const QString &threadName, Events events)
        : m_source(source)
        , m_format(format)
        , m_events(std::make_shared<Events>(std::move(events)))
        , m_clock(format.sampleRate)
        , m_loop(newLoop())
        , m_thread(namedThread(threadName, [this] { run(); }))
    {
    }

    ~Session()
    {
        m_isEnding = true;
        pa_mainloop_wakeup(m_loop.get());
        m_thread.join();
    }
    Session(const Session &) = delete;
    Session &operator=(const Session &) = delete;

    void start(Receive receive)
    {
        m_receive = std::move(receive);
        m_isStarted = true;
    }

private:
    void run()
    {
        m_begin = Clock::now();
        connect();
        while (!m_isEnding) {
            if (pa_mainloop_prepare(m_loop.get(), static_cast<int>(longestPoll.count())) < 0
                || pa_mainloop_poll(m_loop.get()) < 0 || pa_mainloop_dispatch(m_loop.get()) < 0)
                break;
            look();
        }
        m_connection.reset();
    }

    void connect()
    {
        m_connection.emplace(
            m_loop.get(), m_source, m_format,
            SoundConnection::Listener{
                .received = [this](auto frames, auto time, bool isTimeKnown) { pass(frames, time, isTimeKnown); },
                .interrupted = [this] { m_clock.interrupt(); }});
    }

    void pass(std::span<const std::byte> frames, SoundTime time, bool isTimeKnown)
    {
        const qint64 count = static_cast<qint64>(frames.size()) / m_format.bytesPerFrame();
        const SoundClock::Place place = m_clock.place(time, count);
        m_latest = Clock::now();
        m_lastFailure.reset();
        m_hasFailedBefore = false;
        if (isTimeKnown)
            handleOpened();
        if (std::exchange(m_isInterrupted, false))
            tell(&Events::resumed);
        if (m_isStarted)
            handOverCorrected(frames, place, m_format, m_receive);
    }

    void handleOpened()
    {
        if (std::exchange(m_hasOpened, true))
            return;
        m_latest = Clock::now();
        tell(&Events::opened);
    }

    /// Whether all is well, at least ten times a second.
    void look()
    {
        const auto now = Clock::now();
        if (m_connection && m_connection->failure()) {
            m_lastFailure = m_connection->failure();
            m_connection.reset();
            m_clock.interrupt();
            m_retry = now + (m_hasFailedBefore ? retryInterval : 0ms);
            m_hasFailedBefore = true;
        }
        if (!m_hasOpened) {
            const bool isLate = now - m_begin > longestOpening;
            if (isLate && m_connection && m_connection->isOpen())
                handleOpened(); // a device that takes long to start
            else if (isLate || m_lastFailure)
                giveUp();
            return;
        }
        if (now - m_latest > longestSilence && !std::exchange(m_isInterrupted, true))
            tell(&Events::interrupted, m_lastFailure.value_or(noAnswerError()));
        if (!m_connection && now >= m_retry)
            connect();
    }

    void giveUp()
    {
        m_connection.reset();
        m_isEnding = true;
        tell(&Events::failedToOpen, m_lastFailure.value_or(noAnswerError()));
    }

    template<typename... Arguments>
    void tell(std::function<void(const Arguments &...)> Events::*event, const Arguments &...arguments)
    {
        postToMain([events = std::weak_ptr(m_events), event, arguments...] {
            const auto listener = events.lock();
            if (listener && *listener.*event)
                (*listener.*event)(arguments...);
        });
    }

    SoundSource m_source;
    AudioFormat m_format;
    std::shared_ptr<Events> m_events; ///< gone with this object: nothing is told any more
    std::atomic<bool> m_isEnding = false;
    Receive m_receive; ///< set before m_isStarted
    std::atomic<bool> m_isStarted = false;

    std::optional<SoundConnection> m_connection;
    SoundClock m_clock;
    Clock::time_point m_begin;
    Clock::time_point m_latest; ///< when sound came last
    Clock::time_point m_retry;
    bool m_hasOpened = false;
    bool m_hasFailedBefore = false;
    bool m_isInterrupted = false;
    std::optional<Error> m_lastFailure;

    Loop m_loop;
    std::thread m_thread;
};

SoundCapture::SoundCapture(SoundSource source, const AudioFormat &format, const QString &threadName, Events events)
    : m_session(std::make_unique<Session>(source, format, threadName, std::move(events)))
{
}

SoundCapture::~SoundCapture() = default;

void SoundCapture::start(Receive receive)
{
    m_session->start(std::move(receive));
}

} // namespace sorvanta
