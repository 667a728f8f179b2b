#include "core/whisper_runner.h"

#include "platform/error.h"

#include <QFileInfo>

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

} // namespace

WhisperRunner::WhisperRunner(Settings settings, Hooks hooks, std::shared_ptr<ChildProcess> process)
    : m_settings(std::move(settings))
    , m_hooks(std::move(hooks))
    , m_process(std::move(process))
{
}

Utf8Stream WhisperRunner::run(const QString &audioPath, const QString &modelPath, const QString &language)
{
    const QString engine = enginePath();
    const QStringList arguments = engineArguments(audioPath, modelPath, language);
    m_hooks.processCreated(m_process);
    if (m_settings.printsCommand)
        printCommand(engine, arguments);

    Utf8Stream output;
    const bool hasSucceeded = m_process->run(engine, arguments, [this, &output](const QByteArray &chunk) {
        if (const auto piece = output.append(chunk)) {
            m_hooks.onOutput(*piece);
            m_hooks.print(chunk + '\n');
        }
    });
    if (m_hooks.isStopping())
        throw CancellationError();
    if (!hasSucceeded)
        throw Error(errorDomain, engineFailed, QStringLiteral("Whisper failed: ") + output.repairedText());
    return output;
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
