#pragma once

#include <QObject>

namespace sorvanta {

/// A handle to the child process of a run, for other threads than the worker that owns the process.
///
/// Its operations may be called at any time: before the launch they take effect with it, after the end of the child
/// they do nothing, and they can never reach a process that took over its number.
class EngineTask : public QObject {
    Q_OBJECT
public:
    /// Asks the child to end (SIGTERM).
    void terminate() { emit terminationRequested(); }

    /// Ends the child (SIGKILL).
    void kill() { emit killRequested(); }

Q_SIGNALS:
    void terminationRequested();
    void killRequested();
};

} // namespace sorvanta
