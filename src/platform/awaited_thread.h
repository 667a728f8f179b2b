#pragma once

#include <QString>

#include <functional>

namespace sorvanta {

/// Runs `work` once on a new thread, for whose end the application waits when it goes: nothing that `work` uses is torn
/// down under it. `work` ends soon once isQuitting(), and must not throw. Main thread only.
/// @param name of the thread, as of runOnNamedThread()
/// @throws Error if the system has no thread to give
void runOnAwaitedThread(const QString &name, std::function<void()> work);

} // namespace sorvanta
