#pragma once

#include <QString>
#include <QStringView>

#include <chrono>
#include <optional>

namespace sorvanta {

/// What the engine's output says of how far it is.
struct ProgressMarks {
    std::optional<double> duration; ///< seconds of audio, from the first "processing" line
    std::optional<double> lastEnd; ///< seconds at the end of the last timed line

    bool operator==(const ProgressMarks &) const = default;
};

/// The length of the audio in seconds by the first "processing" line of the output, or none.
std::optional<double> audioDuration(QStringView output);

/// The end, in seconds, of the last timed line of the output, or none.
std::optional<double> lastTimedEnd(QStringView output);

/// A remaining time for the eye: 42 gives "42s", 65 "1m 5s", 3725 "1h 2m 5s".
QString formatRemaining(double seconds);

/// "Progress: " and the whole percentage, cut towards zero: 0.999 gives "Progress: 99%".
QString progressText(double progress);

/// Finds the marks of a growing output, reading each piece once.
class ProgressScanner {
public:
    /// Reads on.
    /// @param output the whole output so far; it only ever grows
    /// @param from where the new piece begins
    /// @param lineStart where the line begins in which the new piece begins
    const ProgressMarks &scan(QStringView output, qsizetype from, qsizetype lineStart);

private:
    ProgressMarks m_marks;
    bool m_isDurationFound = false;
};

/// The progress of a run and its remaining time, derived from the engine's output and the clock.
class TranscriptionProgress {
public:
    using Clock = std::chrono::steady_clock;

    /// At the begin of a run: nothing is known, the time runs from `now`.
    void begin(Clock::time_point now);

    /// At the begin of file `fileIndex` (from zero) of `fileCount` in a batch.
    void beginFile(int fileIndex, int fileCount, Clock::time_point now);

    /// Takes the whole output so far.
    void update(QStringView output, Clock::time_point now);

    /// Takes the whole output so far of file `fileIndex` (from zero) of `fileCount`. The fraction runs over the batch,
    /// the remaining time speaks of the file.
    void update(QStringView output, int fileIndex, int fileCount, Clock::time_point now);

    /// The same from marks that were found before, for one file of a batch or, by default, for a single file.
    void update(const ProgressMarks &marks, Clock::time_point now, int fileIndex = 0, int fileCount = 1);

    /// At the end of a run that went well.
    void finish();

    std::optional<double> progress; ///< 0.0 to 1.0; none while the length of the audio is not known
    QString etaText; ///< "Estimating…", "ETA: 10s", "Done"
    std::optional<double> totalDuration; ///< seconds of audio
    std::optional<Clock::time_point> transcriptionStart;
};

} // namespace sorvanta
