#pragma once

#include "platform/child_process.h"
#include "platform/utf8_stream.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <functional>
#include <memory>

namespace sorvanta {

/// Runs the engine, `whisper-cli`, as a child process over one audio file.
class WhisperRunner {
public:
    /// What a run tells while it goes on. All are called on the worker that is in run().
    struct Hooks {
        /// The engine's process, before the launch.
        std::function<void(std::shared_ptr<ChildProcess>)> processCreated;
        /// The next piece of output: all pieces so far make up the output so far.
        std::function<void(const QString &piece)> onOutput;
        /// Whether the user asked for a stop; read once, after the child has ended.
        std::function<bool()> isStopping;
        /// Takes what goes to the console, line ends included.
        std::function<void(const QByteArray &)> print;
    };

    struct Settings {
        QString resourceFolder; ///< where the engine is looked for
        bool printsCommand = true; ///< whether the command line goes to the console
    };

    /// @param process not started yet; may be told to end from elsewhere
    WhisperRunner(Settings settings, Hooks hooks, std::shared_ptr<ChildProcess> process);

    /// Runs the engine to its end, blocking the calling thread.
    ///
    /// A chunk that is not well-formed UTF-8, alone or with all before it, is not reported; its bytes come with a later
    /// piece or at the end. No byte that the engine printed is missing then.
    /// @return the whole output; its repairedText() is what the engine said, its repairedRest() what was not reported
    /// @throws Error "Whisper" 1 if there is no engine, "Whisper" 3 if it ended with a status other than 0,
    ///         "Launch" 1 if it could not be started
    /// @throws CancellationError if the user asked for a stop, whatever the status was
    Utf8Stream run(const QString &audioPath, const QString &modelPath, const QString &language);

private:
    QString enginePath() const;
    void printCommand(const QString &engine, const QStringList &arguments) const;

    Settings m_settings;
    Hooks m_hooks;
    std::shared_ptr<ChildProcess> m_process;
};

} // namespace sorvanta
