#include "platform/child_process.h"

#include "platform/error.h"
#include "platform/paths.h"

#include <QProcess>

#include <csignal>
#include <sys/prctl.h>
#include <unistd.h>

extern "C" { // which the header of glibc 2.36 forgets to say
#include <sys/pidfd.h>
}

namespace sorvanta {

namespace {

/// The words of a failed start, without the name of the system call that Qt puts before them.
QString launchDescription(const QString &program, const QString &reason)
{
    return QStringLiteral("The program “%1” couldn’t be started: %2.")
        .arg(lastPathComponent(program), reason.section(QStringLiteral(": "), -1));
}

} // namespace

ChildProcess::~ChildProcess()
{
    if (m_handle >= 0)
        close(m_handle);
}

bool ChildProcess::run(const QString &program, const QStringList &arguments,
                       const std::function<void(const QByteArray &)> &onChunk)
{
    QProcess process;
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.setStandardInputFile(QProcess::nullDevice());
    process.setChildProcessModifier([] { prctl(PR_SET_PDEATHSIG, SIGTERM); });
    process.start(program, arguments);
    if (!process.waitForStarted(-1))
        throw Error(QStringLiteral("Launch"), 1, launchDescription(program, process.errorString()));
    launched(process.processId());

    const auto takeChunk = [&process, &onChunk] {
        if (const QByteArray chunk = process.readAll(); !chunk.isEmpty())
            onChunk(chunk);
    };
    while (process.waitForReadyRead(-1))
        takeChunk();
    process.waitForFinished(-1);
    takeChunk();
    return process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0;
}

void ChildProcess::terminate()
{
    request(SIGTERM);
}

void ChildProcess::kill()
{
    request(SIGKILL);
}

void ChildProcess::request(int signal)
{
    m_request = signal;
    if (const int handle = m_handle; handle >= 0)
        pidfd_send_signal(handle, signal, nullptr, 0);
}

/// The child cannot have been reaped yet: only run() does that.
void ChildProcess::launched(qint64 processId)
{
    m_handle = pidfd_open(static_cast<pid_t>(processId), 0);
    if (const int signal = m_request; signal != 0)
        request(signal);
}

} // namespace sorvanta
