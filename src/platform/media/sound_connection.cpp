#include "platform/media/sound_connection.h"

#include <QString>

#include <algorithm>
#include <chrono>
#include <memory>
#include <utility>

#include <pulse/error.h>
#include <pulse/proplist.h>
#include <pulse/subscribe.h>
#include <pulse/timeval.h>

namespace sorvanta {

namespace {

using namespace std::chrono_literals;

constexpr auto bufferLength = 20ms;
/// So long an answer of the server may be on its way to us on a busy machine. Where it seems to have been longer, the
/// clock of the day was set meanwhile.
constexpr std::chrono::microseconds longestWay = 1s;

Error noDeviceError(SoundSource source)
{
    return captureError(SoundCapture::NoDevice, source == SoundSource::Microphone
                                                    ? QStringLiteral("There is no microphone.")
                                                    : QStringLiteral("There is no sound output."));
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

struct FreeProperties {
    void operator()(pa_proplist *properties) const { pa_proplist_free(properties); }
};

pa_sample_spec sampleSpec(const AudioFormat &format)
{
    return {format.sampleType == AudioFormat::SampleType::Int16 ? PA_SAMPLE_S16NE : PA_SAMPLE_FLOAT32NE,
            static_cast<uint32_t>(format.sampleRate), static_cast<uint8_t>(format.channels)};
}

} // namespace

Error captureError(SoundCapture::Failure failure, const QString &description)
{
    return {QStringLiteral("SoundCapture"), failure, description};
}

Error noAnswerError()
{
    return captureError(SoundCapture::NoAnswer, QStringLiteral("The sound server does not answer."));
}

SoundConnection::SoundConnection(pa_mainloop *loop, SoundSource source, const AudioFormat &format, Listener listener)
    : m_source(source)
    , m_format(format)
    , m_listener(std::move(listener))
    , m_context(pa_context_new(pa_mainloop_get_api(loop), "Sorvanta"))
{
    pa_context_set_state_callback(
        m_context, [](pa_context *, void *self) { static_cast<SoundConnection *>(self)->contextChanged(); }, this);
    pa_context_set_subscribe_callback(
        m_context,
        [](pa_context *, pa_subscription_event_type_t, uint32_t, void *self) {
            static_cast<SoundConnection *>(self)->lookForDevice();
        },
        this);
    // Nobody but the user starts a server: starting one could take long.
    if (pa_context_connect(m_context, nullptr, PA_CONTEXT_NOAUTOSPAWN, nullptr) < 0)
        fail(pa_context_errno(m_context));
}

SoundConnection::~SoundConnection()
{
    dropStream();
    pa_context_set_state_callback(m_context, nullptr, nullptr);
    pa_context_set_subscribe_callback(m_context, nullptr, nullptr);
    pa_context_disconnect(m_context);
    pa_context_unref(m_context);
}

void SoundConnection::contextChanged()
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
void SoundConnection::lookForDevice()
{
    ask(pa_context_get_server_info(
        m_context,
        [](pa_context *, const pa_server_info *server, void *self) {
            static_cast<SoundConnection *>(self)->takeServer(server);
        },
        this));
}

void SoundConnection::takeServer(const pa_server_info *server)
{
    if (!server)
        return fail(pa_context_errno(m_context));
    m_defaultSink = server->default_sink_name;
    const char *device = m_source == SoundSource::Microphone ? server->default_source_name : server->default_sink_name;
    if (!device || !*device)
        return fail(PA_ERR_NOENTITY);
    if (m_source == SoundSource::Microphone) {
        ask(pa_context_get_source_info_by_name(
            m_context, device,
            [](pa_context *, const pa_source_info *info, int end, void *self) {
                static_cast<SoundConnection *>(self)->takeSource(info, end);
            },
            this));
    } else {
        ask(pa_context_get_sink_info_by_name(
            m_context, device,
            [](pa_context *, const pa_sink_info *info, int end, void *self) {
                static_cast<SoundConnection *>(self)->takeSink(info, end);
            },
            this));
    }
}

void SoundConnection::takeSource(const pa_source_info *info, int end)
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

void SoundConnection::takeSink(const pa_sink_info *info, int end)
{
    if (end < 0)
        return fail(pa_context_errno(m_context));
    if (end > 0 || m_device == info->monitor_source_name)
        return;
    // A stream that the server may move would end up at the microphone when its sink goes.
    m_device = info->monitor_source_name;
    dropStream();
    m_listener.interrupted();
    m_position = 0;
    m_told.reset();
    m_isTimeKnown = false;
    openStream(m_device.constData(), PA_STREAM_DONT_MOVE);
}

void SoundConnection::openStream(const char *device, pa_stream_flags_t flags)
{
    const pa_sample_spec spec = sampleSpec(m_format);
    const std::unique_ptr<pa_proplist, FreeProperties> properties(pa_proplist_new());
    // PipeWire would else mix a microphone of two channels to one that is 3 dB louder, and cut off what is loud.
    pa_proplist_sets(properties.get(), "channelmix.normalize", "true");
    m_stream = pa_stream_new_with_proplist(m_context, "Recording", &spec, nullptr, properties.get());
    if (!m_stream)
        return fail(pa_context_errno(m_context));
    pa_stream_set_state_callback(
        m_stream, [](pa_stream *, void *self) { static_cast<SoundConnection *>(self)->streamChanged(); }, this);
    pa_stream_set_read_callback(
        m_stream, [](pa_stream *, size_t, void *self) { static_cast<SoundConnection *>(self)->read(); }, this);
    pa_stream_set_latency_update_callback(
        m_stream, [](pa_stream *, void *self) { static_cast<SoundConnection *>(self)->timeTold(); }, this);
    for (const auto setCallback :
         {pa_stream_set_moved_callback, pa_stream_set_suspended_callback, pa_stream_set_overflow_callback}) {
        setCallback(
            m_stream, [](pa_stream *, void *self) { static_cast<SoundConnection *>(self)->m_listener.interrupted(); },
            this);
    }
    pa_buffer_attr buffer = {};
    buffer.maxlength = static_cast<uint32_t>(-1);
    buffer.fragsize = static_cast<uint32_t>(soundFrames(bufferLength, m_format.sampleRate) * m_format.bytesPerFrame());
    const int all = flags | PA_STREAM_ADJUST_LATENCY | PA_STREAM_AUTO_TIMING_UPDATE;
    if (pa_stream_connect_record(m_stream, device, &buffer, static_cast<pa_stream_flags_t>(all)) < 0)
        fail(pa_context_errno(m_context));
}

void SoundConnection::dropStream()
{
    if (!m_stream)
        return;
    pa_stream_set_state_callback(m_stream, nullptr, nullptr);
    pa_stream_set_read_callback(m_stream, nullptr, nullptr);
    pa_stream_set_latency_update_callback(m_stream, nullptr, nullptr);
    pa_stream_set_moved_callback(m_stream, nullptr, nullptr);
    pa_stream_set_suspended_callback(m_stream, nullptr, nullptr);
    pa_stream_set_overflow_callback(m_stream, nullptr, nullptr);
    pa_stream_disconnect(m_stream);
    pa_stream_unref(m_stream);
    m_stream = nullptr;
}

void SoundConnection::streamChanged()
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

void SoundConnection::read()
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
            m_listener.interrupted(); // a hole
        m_position += static_cast<qint64>(size);
        pa_stream_drop(m_stream);
    }
}

/// The server tells now and then how far the stream has come and how old the sound is there. The moment is told by the
/// clock of the day, which may be set at any time, and so it is brought to ours at once.
void SoundConnection::timeTold()
{
    if (const pa_timing_info *told = pa_stream_get_timing_info(m_stream)) {
        const std::chrono::microseconds way(pa_timeval_age(&told->timestamp));
        m_told = SoundTime::clock::now() - std::min(way, longestWay);
    }
}

void SoundConnection::deliver(std::span<const std::byte> frames)
{
    const pa_timing_info *told = pa_stream_get_timing_info(m_stream);
    if (!told || !m_told || told->write_index <= 0) {
        if (m_position == 0)
            ask(pa_stream_update_timing_info(m_stream, nullptr, nullptr));
        const SoundTime now = SoundTime::clock::now();
        m_listener.received(frames, now - duration(static_cast<qint64>(frames.size())), false);
        return;
    }
    if (!std::exchange(m_isTimeKnown, true))
        m_listener.interrupted();
    const std::chrono::microseconds age(static_cast<qint64>(told->source_usec) - static_cast<qint64>(told->sink_usec));
    m_listener.received(frames, *m_told - age + duration(m_position - told->write_index), true);
}

SoundTime::duration SoundConnection::duration(qint64 bytes) const
{
    return soundDuration(bytes / m_format.bytesPerFrame(), m_format.sampleRate);
}

void SoundConnection::ask(pa_operation *operation)
{
    if (operation)
        pa_operation_unref(operation);
    else
        fail(pa_context_errno(m_context));
}

/// Only remembers: the caller is a callback of what would be torn down.
void SoundConnection::fail(int code)
{
    if (!m_failure)
        m_failure = serverError(code, m_source);
}

} // namespace sorvanta
