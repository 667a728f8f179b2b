#include "core/whisper_runner.h"

#include "platform/error.h"

#include <QEventLoop>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QStringList>

#include <csignal>
#include <cstdio>
#include <sys/prctl.h>
#include <utility>

namespace sorvanta {

namespace {

const QString errorDomain = QStringLiteral("Whisper");
const QString engineFolder = QStringLiteral("sorvanta_extra_data/whisper.cpp/build/bin");
const QString engineName = QStringLiteral("whisper-cli");

enum ErrorCode { engineNotFound = 1, engineFailed = 3 };

QStringList engineArguments(const QString &audioPath, const QString &modelPath, const QString &language)
{
    return {QStringLiteral("-m"), modelPath, QStringLiteral("-f"), audioPath, QStringLiteral("-l"), language};
}

/// One pipe for both streams, nothing to read, and an end together with the worker's: a crash of the application
/// leaves no engine behind.
void configure(QProcess &process)
{
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.setStandardInputFile(QProcess::nullDevice());
    process.setChildProcessModifier([] { prctl(PR_SET_PDEATHSIG, SIGTERM); });
}

} // namespace

WhisperRunner::WhisperRunner(Settings settings, Hooks hooks)
    : m_settings(std::move(settings))
    , m_hooks(std::move(hooks))
{
}

Utf8Stream WhisperRunner::run(const QString &audioPath, const QString &modelPath, const QString &language)
{
    const QString engine = enginePath();
    const QStringList arguments = engineArguments(audioPath, modelPath, language);

    QProcess process;
    const auto task = std::make_shared<EngineTask>();
    QObject::connect(task.get(), &EngineTask::terminationRequested, &process, &QProcess::terminate,
                     Qt::QueuedConnection);
    QObject::connect(task.get(), &EngineTask::killRequested, &process, &QProcess::kill, Qt::QueuedConnection);
    m_hooks.taskCreated(task);

    configure(process);
    if (m_settings.printsCommand)
        printCommand(engine, arguments);

    Utf8Stream stream;
    const auto takeChunk = [&] {
        const QByteArray chunk = process.readAll();
        if (chunk.isEmpty())
            return;
        if (const auto piece = stream.append(chunk)) {
            m_hooks.onOutput(*piece);
            m_hooks.print(chunk + '\n');
        }
    };
    QEventLoop loop;
    QObject::connect(&process, &QProcess::readyRead, &process, takeChunk);
    QObject::connect(&process, &QProcess::finished, &loop, &QEventLoop::quit);
    process.start(engine, arguments);
    if (!process.waitForStarted(-1))
        throw Error(QStringLiteral("Launch"), 1,
                    QStringLiteral("The program “%1” couldn’t be started: %2").arg(engineName, process.errorString()));
    // waitForStarted() may already have seen the end of a short child.
    if (process.state() != QProcess::NotRunning)
        loop.exec();
    takeChunk();

    if (m_hooks.isStopping())
        throw CancellationError();
    if (process.exitStatus() != QProcess::NormalExit || process.exitCode() != 0)
        throw Error(errorDomain, engineFailed, QStringLiteral("Whisper failed: ") + stream.repairedText());
    return stream;
}

void WhisperRunner::printOnStandardOutput(const QByteArray &line)
{
    std::fwrite(line.constData(), 1, static_cast<std::size_t>(line.size()), stdout);
    std::fflush(stdout);
}

QString WhisperRunner::enginePath() const
{
    const QString path = m_settings.resourceFolder + QLatin1Char('/') + engineFolder + QLatin1Char('/') + engineName;
    if (!QFileInfo::exists(path))
        throw Error(errorDomain, engineNotFound, QStringLiteral("whisper-cli not found in bundle at ") + engineFolder);
    return path;
}

void WhisperRunner::printCommand(const QString &engine, const QStringList &arguments) const
{
    QString command = QLatin1Char('"') + engine + QLatin1Char('"');
    for (const QString &argument : arguments)
        command += QStringLiteral(" \"") + argument + QLatin1Char('"');
    m_hooks.print("Running command:\n");
    m_hooks.print(command.toUtf8() + '\n');
}

} // namespace sorvanta
