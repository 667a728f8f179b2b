#pragma once

#include "platform/error.h"

#include <QString>

#include <functional>
#include <system_error>
#include <thread>

namespace sorvanta {

/// What a user is told when the system has no thread to give.
Error threadError(const std::system_error &failure);

/// A new thread that runs `work` once; see runOnNamedThread().
std::thread namedThread(const QString &name, std::function<void()> work);

/// Runs `work` once on a new thread that nobody waits for. `name` is what a debugger and the system's list of
/// threads show, cut to 15 bytes; an empty one names nothing. `work` owns whatever it uses and must not throw.
/// @throws Error if the system has no thread to give
void runOnNamedThread(const QString &name, std::function<void()> work);

} // namespace sorvanta
