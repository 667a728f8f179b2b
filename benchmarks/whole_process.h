#pragma once

#include <QStringList>

namespace sorvanta {

/// What a process took from its start to its end.
struct ProcessCost {
    double seconds = 0; ///< of wall time
    double megabytes = 0; ///< the most that was resident
};

/// Runs a program to its end; the benchmark ends if it fails.
ProcessCost runProcess(const QStringList &command);

/// The ffmpeg program, quiet and asking nothing, with these arguments.
QStringList ffmpeg(const QStringList &arguments);

/// A program of ours beside another one that does the same.
struct Comparison {
    double ratio; ///< of our seconds to theirs: the median, the least and the greatest
    double leastRatio;
    double greatestRatio;
    double seconds; ///< of ours, the median
    double megabytes; ///< of ours, the most
};

/// Runs both in turn, `repetitions` times.
Comparison compareProcesses(const QStringList &ours, const QStringList &theirs, int repetitions);

} // namespace sorvanta
