#pragma once

#include "platform/error.h"
#include "platform/media/audio_format.h"
#include "platform/media/sound_buffer.h"
#include "platform/media/sound_capture.h"

#include <QByteArray>

#include <cstddef>
#include <functional>
#include <optional>
#include <span>

#include <pulse/context.h>
#include <pulse/introspect.h>
#include <pulse/mainloop.h>
#include <pulse/stream.h>

namespace sorvanta {

Error captureError(SoundCapture::Failure failure, const QString &description);

/// What a capture says of a server, or of a device, that hangs.
Error noAnswerError();

/// One connection to the sound server with its one stream, and the questions between them. Whatever goes wrong with it,
/// it is replaced. All of it, its listener too, belongs to the thread that runs the loop.
class SoundConnection {
public:
    struct Listener {
        /// With the time of the first frame, and whether it is the server's; else it is a guess by its arrival.
        std::function<void(std::span<const std::byte>, SoundTime, bool)> received;
        std::function<void()> interrupted; ///< sound may be missing in front of what is received next
    };

    /// @param loop outlives this object
    SoundConnection(pa_mainloop *loop, SoundSource source, const AudioFormat &format, Listener listener);
    ~SoundConnection();
    SoundConnection(const SoundConnection &) = delete;
    SoundConnection &operator=(const SoundConnection &) = delete;

    /// Set once: the connection is of no more use then. The codes are those of SoundCapture.
    const std::optional<Error> &failure() const { return m_failure; }
    /// Whether the stream was made.
    bool isOpen() const { return m_isOpen; }

private:
    void contextChanged();
    void lookForDevice();
    void takeServer(const pa_server_info *server);
    void takeSource(const pa_source_info *info, int end);
    void takeSink(const pa_sink_info *info, int end);
    void openStream(const char *device, pa_stream_flags_t flags);
    void dropStream();
    void streamChanged();
    void timeTold();
    void read();
    void deliver(std::span<const std::byte> frames);
    SoundTime::duration duration(qint64 bytes) const;
    void ask(pa_operation *operation);
    void fail(int code);

    SoundSource m_source;
    AudioFormat m_format;
    Listener m_listener;
    pa_context *m_context;
    pa_stream *m_stream = nullptr;
    QByteArray m_defaultSink;
    QByteArray m_device; ///< the monitor that is captured
    qint64 m_position = 0; ///< how many bytes of the stream were read
    /// When the server was as far as it told last.
    std::optional<SoundTime> m_told;
    bool m_isTimeKnown = false;
    bool m_isOpen = false;
    std::optional<Error> m_failure;
};

} // namespace sorvanta
