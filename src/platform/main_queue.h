#pragma once

#include <functional>

namespace sorvanta {

/// Runs `work` on the main thread, after everything that was posted before. The one way in for other threads: all
/// observable fields belong to the main thread. However much is posted, windows and timers have their turns in between.
/// May be called from any thread; what is posted once the application object is going is dropped.
void postToMain(std::function<void()> work);

/// Whether the calling thread is the main one; no thread is once the application object has gone.
bool isMainThread();

/// Whether the application is on its way out: work that nobody will see the end of stops then. May be asked from any
/// thread.
bool isQuitting();

} // namespace sorvanta
