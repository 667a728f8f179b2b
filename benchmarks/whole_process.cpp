#include "whole_process.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <vector>

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace sorvanta {

ProcessCost runProcess(const QStringList &command)
{
    const auto start = std::chrono::steady_clock::now();
    const pid_t child = fork();
    if (child == 0) {
        std::vector<QByteArray> words;
        for (const QString &word : command)
            words.push_back(word.toUtf8());
        std::vector<char *> arguments;
        for (QByteArray &word : words)
            arguments.push_back(word.data());
        arguments.push_back(nullptr);
        dup2(open("/dev/null", O_RDWR), STDIN_FILENO);
        execvp(arguments[0], arguments.data());
        _exit(127);
    }
    int status = 0;
    rusage usage = {};
    wait4(child, &status, 0, &usage);
    if (!WIFEXITED(status) || WEXITSTATUS(status) != 0) {
        std::fprintf(stderr, "failed: %s\n", qPrintable(command.join(u' ')));
        std::exit(1);
    }
    const std::chrono::duration<double> seconds = std::chrono::steady_clock::now() - start;
    return {seconds.count(), static_cast<double>(usage.ru_maxrss) / 1024};
}

QStringList ffmpeg(const QStringList &arguments)
{
    return QStringList{QStringLiteral("ffmpeg"), QStringLiteral("-nostdin"), QStringLiteral("-v"),
                       QStringLiteral("error"), QStringLiteral("-y")}
           + arguments;
}

Comparison compareProcesses(const QStringList &ours, const QStringList &theirs, int repetitions)
{
    std::vector<double> ratios;
    std::vector<double> seconds;
    double megabytes = 0;
    for (int i = 0; i < repetitions; ++i) {
        const ProcessCost yardstick = runProcess(theirs);
        const ProcessCost own = runProcess(ours);
        ratios.push_back(own.seconds / yardstick.seconds);
        seconds.push_back(own.seconds);
        megabytes = std::max(megabytes, own.megabytes);
    }
    std::ranges::sort(ratios);
    std::ranges::sort(seconds);
    return {ratios[ratios.size() / 2], ratios.front(), ratios.back(), seconds[seconds.size() / 2], megabytes};
}

} // namespace sorvanta
