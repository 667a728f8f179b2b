#include "platform/media/mpv.h"

#include "platform/main_queue.h"
#include "platform/named_thread.h"

#include <QCoreApplication>

#include <atomic>
#include <chrono>
#include <clocale>
#include <condition_variable>
#include <cstring>
#include <mutex>
#include <utility>

namespace sorvanta::mpv {

namespace {

struct Option {
    const char *name;
    const char *value;
};

constexpr Option options[] = {
    // Nothing but sound, of nothing but the one file.
    {"vid", "no"},
    {"sid", "no"},
    {"vo", "null"},
    {"audio-display", "no"},
    {"config", "no"},
    {"terminal", "no"},
    {"load-scripts", "no"},
    {"load-auto-profiles", "no"},
    {"load-stats-overlay", "no"},
    {"load-osd-console", "no"},
    {"osc", "no"},
    {"ytdl", "no"},
    {"input-default-bindings", "no"},
    {"input-builtin-bindings", "no"},
    {"autoload-files", "no"},
    {"access-references", "no"},
    {"demuxer", "lavf"},
    {"cache", "no"},
    {"demuxer-max-bytes", "8MiB"},
    {"demuxer-max-back-bytes", "0"},
    // Another way to the sound card than the server's could take it away from the server.
    {"ao", "pulse"},
    {"audio-client-name", "Sorvanta"},
    // Else the position runs ahead of the sound at the start, and jumps back.
    {"pulse-latency-hacks", "yes"},
    // Else the end is told while the last piece still waits to be heard.
    {"gapless-audio", "no"},
    {"hr-seek", "yes"},
    // An MP3 decoder is silent until it has read some frames: it begins in front of the wanted position.
    {"hr-seek-demuxer-offset", "0.25"},
    {"idle", "yes"},
    {"pause", "yes"},
    {"keep-open", "yes"},
    {"keep-open-pause", "no"},
};

/// libmpv reads and writes numbers with the C library and refuses to start under any other locale. The application
/// object, and a toolkit below it, set the user's.
void useNumbersOfC()
{
    if (std::strcmp(std::setlocale(LC_NUMERIC, nullptr), "C") != 0)
        std::setlocale(LC_NUMERIC, "C");
}

void checked(int result)
{
    if (result < 0)
        throw error(result);
}

/// How many instances are being released on threads of their own.
class Releases {
public:
    void begin()
    {
        const std::lock_guard lock(m_mutex);
        ++m_count;
    }
    void end()
    {
        const std::lock_guard lock(m_mutex);
        --m_count;
        m_changed.notify_all();
    }
    /// Waits for all of them, but not for long: one that waits for a sound server that hangs never ends.
    void await()
    {
        std::unique_lock lock(m_mutex);
        m_changed.wait_for(lock, std::chrono::seconds(1), [this] { return m_count == 0; });
    }

private:
    std::mutex m_mutex;
    std::condition_variable m_changed;
    int m_count = 0;
};

/// Outlives the threads, which may still run at the very end of the process.
Releases &releases()
{
    static auto *const instance = new Releases;
    return *instance;
}

void awaitReleases()
{
    releases().await();
}

void release(mpv_handle *handle)
{
    releases().begin();
    const auto destroy = [handle] {
        mpv_terminate_destroy(handle);
        releases().end();
    };
    try {
        runOnNamedThread(QStringLiteral("player release"), destroy);
    } catch (const Error &) {
        destroy();
    }
}

} // namespace

Error error(int code)
{
    return {QStringLiteral("libmpv"), code, QString::fromUtf8(mpv_error_string(code))};
}

/// Rung by a thread of libmpv, heard on the main one.
class Handle::Bell : public std::enable_shared_from_this<Bell> {
public:
    explicit Bell(std::function<void()> hear)
        : m_hear(std::move(hear))
    {
    }

    void ring()
    {
        if (m_isRung.exchange(true))
            return;
        postToMain([bell = weak_from_this()] {
            if (const auto self = bell.lock()) {
                self->m_isRung = false;
                self->m_hear();
            }
        });
    }

private:
    std::function<void()> m_hear;
    std::atomic<bool> m_isRung = false;
};

Handle::Handle(std::function<void()> readEvents)
    : m_bell(std::make_shared<Bell>(std::move(readEvents)))
{
    useNumbersOfC();
    m_handle = mpv_create();
    if (!m_handle)
        throw error(MPV_ERROR_NOMEM);
    try {
        for (const Option &option : options)
            checked(mpv_set_option_string(m_handle, option.name, option.value));
        checked(mpv_initialize(m_handle));
    } catch (const Error &) {
        mpv_terminate_destroy(m_handle);
        throw;
    }
    static const bool isAwaited = (qAddPostRoutine(awaitReleases), true);
    Q_UNUSED(isAwaited)
    mpv_set_wakeup_callback(
        m_handle, [](void *bell) { static_cast<Bell *>(bell)->ring(); }, m_bell.get());
}

Handle::~Handle()
{
    mpv_set_wakeup_callback(m_handle, nullptr, nullptr);
    release(m_handle);
}

const mpv_event *Handle::next()
{
    const mpv_event *event = mpv_wait_event(m_handle, 0);
    return event->event_id == MPV_EVENT_NONE ? nullptr : event;
}

void Handle::wakeUp()
{
    m_bell->ring();
}

} // namespace sorvanta::mpv
