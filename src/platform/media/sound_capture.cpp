#include "platform/media/sound_capture.h"

#include "platform/main_queue.h"
#include "platform/media/sound_clock.h"
#include "platform/named_thread.h"

#include <QByteArray>

#include <atomic>
#include <optional>
#include <thread>
#include <utility>
#include <vector>

#include <pulse/context.h>
#include <pulse/error.h>
#include <pulse/introspect.h>
#include <pulse/mainloop.h>
#include <pulse/proplist.h>
#include <pulse/stream.h>
#include <pulse/subscribe.h>
#include <pulse/timeval.h>

namespace sorvanta {

namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

constexpr auto longestOpening = 1500ms;
constexpr auto longestSilence = 1000ms; ///< without any buffer, which come also when nobody speaks
constexpr auto retryInterval = 300ms;
constexpr std::chrono::microseconds longestPoll = 100ms;
constexpr auto bufferLength = 20ms;

Error captureError(SoundCapture::Failure failure, const QString &description)
{
    return {QStringLiteral("SoundCapture"), failure, description};
}

Error noDeviceError(SoundSource source)
{
    return captureError(SoundCapture::NoDevice, source == SoundSource::Microphone
                                                    ? QStringLiteral("There is no microphone.")
                                                    : QStringLiteral("There is no sound output."));
}

Error noAnswerError()
{
    return captureError(SoundCapture::NoAnswer, QStringLiteral("The sound server does not answer."));
}

Error serverError(int code, SoundSource source)
{
    switch (code) {
    case PA_ERR_CONNECTIONREFUSED:
    case PA_ERR_INVALIDSERVER:
        return captureError(SoundCapture::NoServer, QStringLiteral("There is no sound server."));
    case PA_ERR_ACCESS:
    case PA_ERR_AUTHKEY:
        return captureError(SoundCapture::Refused, QStringLiteral("The sound server refuses access."));
    case PA_ERR_NOENTITY:
        return noDeviceError(source);
    case PA_ERR_TIMEOUT:
        return noAnswerError();
    case PA_ERR_CONNECTIONTERMINATED:
    case PA_ERR_KILLED:
        return captureError(SoundCapture::Lost, QStringLiteral("The sound server or the device went away."));
    default:
        return captureError(SoundCapture::OtherFailure, QString::fromUtf8(pa_strerror(code)));
    }
}

struct FreeLoop {
    void operator()(pa_mainloop *loop) const { pa_mainloop_free(loop); }
};

struct FreeProperties {
    void operator()(pa_proplist *properties) const { pa_proplist_free(properties); }
};

pa_sample_spec sampleSpec(const AudioFormat &format)
{
    return {format.sampleType == AudioFormat::SampleType::Int16 ? PA_SAMPLE_S16NE : PA_SAMPLE_FLOAT32NE,
            static_cast<uint32_t>(format.sampleRate), static_cast<uint8_t>(format.channels)};
}

/// One connection with its one stream, and the questions between them. Whatever goes wrong with it, it is replaced.
class Connection {
public:
    struct Owner {
        /// With the time of the first frame, and whether it is the server's; else it is a guess by its arrival.
        std::function<void(std::span<const std::byte>, SoundTime, bool)> received;
        std::function<void()> interrupted; ///< sound may be missing in front of what is received next
    };

    Connection(pa_mainloop *loop, SoundSource source, const AudioFormat &format, Owner owner)
        : m_source(source)
        , m_format(format)
        , m_owner(std::move(owner))
        , m_context(pa_context_new(pa_mainloop_get_api(loop), "Sorvanta"))
    {
        pa_context_set_state_callback(
            m_context, [](pa_context *, void *self) { static_cast<Connection *>(self)->contextChanged(); }, this);
        pa_context_set_subscribe_callback(
            m_context,
            [](pa_context *, pa_subscription_event_type_t, uint32_t, void *self) {
                static_cast<Connection *>(self)->lookForDevice();
            },
            this);
        // Nobody but the user starts a server: starting one could take long.
        if (pa_context_connect(m_context, nullptr, PA_CONTEXT_NOAUTOSPAWN, nullptr) < 0)
            fail(pa_context_errno(m_context));
    }

    ~Connection()
    {
        dropStream();
        pa_context_set_state_callback(m_context, nullptr, nullptr);
        pa_context_set_subscribe_callback(m_context, nullptr, nullptr);
        pa_context_disconnect(m_context);
        pa_context_unref(m_context);
    }
    Connection(const Connection &) = delete;
    Connection &operator=(const Connection &) = delete;

    const std::optional<Error> &failure() const { return m_failure; }
    /// Whether the stream was made.
    bool isOpen() const { return m_isOpen; }

private:
    void contextChanged()
    {
        switch (pa_context_get_state(m_context)) {
        case PA_CONTEXT_READY:
            ask(pa_context_subscribe(m_context, PA_SUBSCRIPTION_MASK_SERVER, nullptr, nullptr));
            lookForDevice();
            break;
        case PA_CONTEXT_FAILED:
        case PA_CONTEXT_TERMINATED:
            fail(pa_context_errno(m_context));
            break;
        default:
            break;
        }
    }

    /// Which devices are the default ones?
    void lookForDevice()
    {
        ask(pa_context_get_server_info(
            m_context,
            [](pa_context *, const pa_server_info *server, void *self) {
                static_cast<Connection *>(self)->takeServer(server);
            },
            this));
    }

    void takeServer(const pa_server_info *server)
    {
        if (!server)
            return fail(pa_context_errno(m_context));
        m_defaultSink = server->default_sink_name;
        const char *device =
            m_source == SoundSource::Microphone ? server->default_source_name : server->default_sink_name;
        if (!device || !*device)
            return fail(PA_ERR_NOENTITY);
        if (m_source == SoundSource::Microphone) {
            ask(pa_context_get_source_info_by_name(
                m_context, device,
                [](pa_context *, const pa_source_info *info, int end, void *self) {
                    static_cast<Connection *>(self)->takeSource(info, end);
                },
                this));
        } else {
            ask(pa_context_get_sink_info_by_name(
                m_context, device,
                [](pa_context *, const pa_sink_info *info, int end, void *self) {
                    static_cast<Connection *>(self)->takeSink(info, end);
                },
                this));
        }
    }

    void takeSource(const pa_source_info *info, int end)
    {
        if (end < 0)
            return fail(pa_context_errno(m_context));
        if (end > 0)
            return;
        // Where there is no microphone, what the machine plays takes its place as the default.
        if (info->monitor_of_sink_name && m_defaultSink == info->monitor_of_sink_name)
            return fail(PA_ERR_NOENTITY);
        // The server itself moves the stream to another default source, unless the user chose one for it.
        if (!m_stream)
            openStream(nullptr, PA_STREAM_NOFLAGS);
    }

    void takeSink(const pa_sink_info *info, int end)
    {
        if (end < 0)
            return fail(pa_context_errno(m_context));
        if (end > 0 || m_device == info->monitor_source_name)
            return;
        // A stream that the server may move would end up at the microphone when its sink goes.
        m_device = info->monitor_source_name;
        dropStream();
        m_owner.interrupted();
        m_position = 0;
        m_isTimeKnown = false;
        openStream(m_device.constData(), PA_STREAM_DONT_MOVE);
    }

    void openStream(const char *device, pa_stream_flags_t flags)
    {
        const pa_sample_spec spec = sampleSpec(m_format);
        const std::unique_ptr<pa_proplist, FreeProperties> properties(pa_proplist_new());
        // PipeWire would else mix a microphone of two channels to one that is 3 dB louder, and cut off what is loud.
        pa_proplist_sets(properties.get(), "channelmix.normalize", "true");
        m_stream = pa_stream_new_with_proplist(m_context, "Recording", &spec, nullptr, properties.get());
        if (!m_stream)
            return fail(pa_context_errno(m_context));
        pa_stream_set_state_callback(
            m_stream, [](pa_stream *, void *self) { static_cast<Connection *>(self)->streamChanged(); }, this);
        pa_stream_set_read_callback(
            m_stream, [](pa_stream *, size_t, void *self) { static_cast<Connection *>(self)->read(); }, this);
        for (const auto setCallback :
             {pa_stream_set_moved_callback, pa_stream_set_suspended_callback, pa_stream_set_overflow_callback}) {
            setCallback(
                m_stream, [](pa_stream *, void *self) { static_cast<Connection *>(self)->m_owner.interrupted(); },
                this);
        }
        pa_buffer_attr buffer = {};
        buffer.maxlength = static_cast<uint32_t>(-1);
        buffer.fragsize =
            static_cast<uint32_t>(soundFrames(bufferLength, m_format.sampleRate) * m_format.bytesPerFrame());
        const int all = flags | PA_STREAM_ADJUST_LATENCY | PA_STREAM_AUTO_TIMING_UPDATE;
        if (pa_stream_connect_record(m_stream, device, &buffer, static_cast<pa_stream_flags_t>(all)) < 0)
            fail(pa_context_errno(m_context));
    }

    void dropStream()
    {
        if (!m_stream)
            return;
        pa_stream_set_state_callback(m_stream, nullptr, nullptr);
        pa_stream_set_read_callback(m_stream, nullptr, nullptr);
        pa_stream_set_moved_callback(m_stream, nullptr, nullptr);
        pa_stream_set_suspended_callback(m_stream, nullptr, nullptr);
        pa_stream_set_overflow_callback(m_stream, nullptr, nullptr);
        pa_stream_disconnect(m_stream);
        pa_stream_unref(m_stream);
        m_stream = nullptr;
    }

    void streamChanged()
    {
        switch (pa_stream_get_state(m_stream)) {
        case PA_STREAM_READY:
            m_isOpen = true;
            break;
        case PA_STREAM_FAILED:
        case PA_STREAM_TERMINATED:
            fail(pa_context_errno(m_context));
            break;
        default:
            break;
        }
    }

    void read()
    {
        while (pa_stream_readable_size(m_stream) > 0) {
            const void *data = nullptr;
            size_t size = 0;
            if (pa_stream_peek(m_stream, &data, &size) < 0)
                return fail(pa_context_errno(m_context));
            if (size == 0)
                return;
            if (data)
                deliver({static_cast<const std::byte *>(data), size});
            else
                m_owner.interrupted(); // a hole
            m_position += static_cast<qint64>(size);
            pa_stream_drop(m_stream);
        }
    }

    /// The server tells now and then how far the stream has come and how old the sound is there.
    void deliver(std::span<const std::byte> frames)
    {
        const pa_timing_info *told = pa_stream_get_timing_info(m_stream);
        const auto now = Clock::now();
        if (!told || told->write_index <= 0) {
            if (m_position == 0)
                ask(pa_stream_update_timing_info(m_stream, nullptr, nullptr));
            m_owner.received(frames, now - duration(static_cast<qint64>(frames.size())), false);
            return;
        }
        if (!std::exchange(m_isTimeKnown, true))
            m_owner.interrupted();
        const std::chrono::microseconds sinceTold(pa_timeval_age(&told->timestamp));
        const std::chrono::microseconds age(static_cast<qint64>(told->source_usec)
                                            - static_cast<qint64>(told->sink_usec));
        m_owner.received(frames, now - sinceTold - age + duration(m_position - told->write_index), true);
    }

    SoundTime::duration duration(qint64 bytes) const
    {
        return soundDuration(bytes / m_format.bytesPerFrame(), m_format.sampleRate);
    }

    void ask(pa_operation *operation)
    {
        if (operation)
            pa_operation_unref(operation);
        else
            fail(pa_context_errno(m_context));
    }

    /// Only remembers: the caller is a callback of what would be torn down.
    void fail(int code)
    {
        if (!m_failure)
            m_failure = serverError(code, m_source);
    }

    SoundSource m_source;
    AudioFormat m_format;
    Owner m_owner;
    pa_context *m_context;
    pa_stream *m_stream = nullptr;
    QByteArray m_defaultSink;
    QByteArray m_device; ///< the monitor that is captured
    qint64 m_position = 0; ///< how many bytes of the stream were read
    bool m_isTimeKnown = false;
    bool m_isOpen = false;
    std::optional<Error> m_failure;
};

} // namespace

/// All but the constructor, the destructor and start() belongs to the thread of the capture.
class SoundCapture::Session {
public:
    Session(SoundSource source, const AudioFormat &format, const QString &threadName, Events events)
        : m_source(source)
        , m_format(format)
        , m_events(std::make_shared<Events>(std::move(events)))
        , m_clock(format.sampleRate)
        , m_loop(pa_mainloop_new())
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
            Connection::Owner{
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

    std::optional<Connection> m_connection;
    SoundClock m_clock;
    Clock::time_point m_begin;
    Clock::time_point m_latest; ///< when sound came last
    Clock::time_point m_retry;
    bool m_hasOpened = false;
    bool m_hasFailedBefore = false;
    bool m_isInterrupted = false;
    std::optional<Error> m_lastFailure;

    std::unique_ptr<pa_mainloop, FreeLoop> m_loop;
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
