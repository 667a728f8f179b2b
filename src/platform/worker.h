#pragma once

#include <functional>
#include <future>

namespace sorvanta {

/// Runs `work` on a thread of the global pool. The pool grows to 64 threads, since such work mostly waits: for a
/// child process, or for a conversion. `work` must not throw.
/// @return becomes ready when the work is done; letting it go waits for nothing
std::future<void> runOnWorker(std::function<void()> work);

} // namespace sorvanta
