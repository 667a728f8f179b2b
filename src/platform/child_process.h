#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <atomic>
#include <functional>

namespace sorvanta {

/// A program that runs as a child, once. One thread runs it and waits for it; any other may end it at any time.
class ChildProcess {
public:
    ChildProcess() = default;
    ~ChildProcess();
    ChildProcess(const ChildProcess &) = delete;
    ChildProcess &operator=(const ChildProcess &) = delete;

    /// Starts the program and blocks until it has ended. Output and errors come through one pipe, in the order written,
    /// and are read to the last byte that the program itself wrote; a process that it left behind is not waited for.
    /// The child reads nothing, and ends with the calling thread if that should ever end before it. Needs no event
    /// loop.
    /// @param onChunk called on this thread with what has come; never empty
    /// @return whether the program ended by itself with the status 0
    /// @throws Error "Launch" 1 if it could not be started
    bool run(const QString &program, const QStringList &arguments,
             const std::function<void(const QByteArray &)> &onChunk);

    // For any thread, at any time: before the launch they take effect with it, behind the end they do nothing, and they
    // can never reach a process that took over the child's number.

    /// Asks the child to end (SIGTERM).
    void terminate();
    /// Ends the child (SIGKILL).
    void kill();

private:
    void request(int signal);
    void launched(qint64 processId);

    std::atomic<int> m_request = 0; ///< the signal that was asked for, 0 for none
    std::atomic<int> m_handle = -1; ///< the kernel's handle of the child, from its launch on
};

} // namespace sorvanta
