#pragma once

#include "core/engine_task.h"
#include "platform/utf8_stream.h"

#include <QByteArray>
#include <QString>

#include <functional>
#include <memory>

namespace sorvanta {

/// Runs the engine, `whisper-cli`, as a child process over one audio file.
class WhisperRunner {
public:
    /// What a run tells while it goes on. All are called on the worker that is in run().
    struct Hooks {
        /// The child's handle, before the launch.
        std::function<void(std::shared_ptr<EngineTask>)> taskCreated;
        /// The next piece of output: all pieces so far make up the output so far.
        std::function<void(const QString &piece)> onOutput;
        /// Whether the user asked for a stop; read once, after the child has ended.
        std::function<bool()> isStopping;
        /// Takes a line for the console, line end included.
        std::function<void(const QByteArray &)> print;
    };

    struct Settings {
        QString resourceFolder; ///< where the engine is looked for
        bool printsCommand = true; ///< whether the command line goes to the console
    };

    WhisperRunner(Settings settings, Hooks hooks);

    /// Runs the engine to its end, blocking the calling thread, which must be no thread with an event loop of its own.
    ///
    /// Output and errors of the child come through one pipe, which is read until the child has ended, so that no byte
    /// that it printed is missing. A chunk that is not well-formed UTF-8, alone or with all before it, is not
    /// reported; its bytes come with a later piece or at the end.
    /// @return the whole output; its repairedText() is what the engine said, its repairedRest() what was not reported
    /// @throws Error "Whisper" 1 if there is no engine, "Whisper" 3 if it ended with a status other than 0,
    ///         "Launch" 1 if it could not be started
    /// @throws CancellationError if the user asked for a stop, whatever the status was
    Utf8Stream run(const QString &audioPath, const QString &modelPath, const QString &language);

    /// Hooks that print on the application's own standard output.
    static void printOnStandardOutput(const QByteArray &line);

private:
    QString enginePath() const;
    void printCommand(const QString &engine, const QStringList &arguments) const;

    Settings m_settings;
    Hooks m_hooks;
};

} // namespace sorvanta
