#pragma once

#include "platform/error.h"

#include <functional>
#include <memory>

#include <mpv/client.h>

namespace sorvanta::mpv {

/// The failure of libmpv with this number, in its own words.
Error error(int code);

/// An instance of libmpv that plays sound through the sound server and does nothing else: no picture, no scripts, no
/// configuration, no console, no network. It starts paused. Main thread only.
///
/// Its own thread waits for the sound server, for ever if that hangs. So nothing may be asked of it that waits for an
/// answer: only the calls whose names end in "_async", except while a hook runs.
class Handle {
public:
    /// @param readEvents called on the main thread, with nothing else of the program below it, when next() may have
    ///        something to give, and after wakeUp()
    /// @throws Error if libmpv does not start
    explicit Handle(std::function<void()> readEvents);
    /// Falls silent. Does not wait for the sound server.
    ~Handle();
    Handle(const Handle &) = delete;
    Handle &operator=(const Handle &) = delete;

    mpv_handle *get() const { return m_handle; }
    /// The next event, valid until the next call, or null if there is none now.
    const mpv_event *next();
    void wakeUp();

private:
    class Bell;

    std::shared_ptr<Bell> m_bell;
    mpv_handle *m_handle;
};

} // namespace sorvanta::mpv
