#include "core/transcription_progress.h"

#include "core/transcript_text.h"
#include "platform/number_text.h"
#include "platform/regular_expression.h"

#include <algorithm>

namespace sorvanta {

namespace {

constexpr QStringView durationPattern = u"processing '.*' \\(\\d+ samples, ([0-9]*\\.?[0-9]+) sec\\)";
constexpr QStringView endTimePattern = u"\\[\\d{2}:\\d{2}:\\d{2}\\.\\d{3} --> (\\d{2}):(\\d{2}):(\\d{2}\\.\\d{3})\\]";

/// A match of the duration pattern ends with this.
constexpr QStringView durationEnd = u" sec)";

/// The longest match of the end-time pattern: 31 characters, 18 of them digits, which may take two units each.
constexpr qsizetype longestEndTime = 31 + 18;

const QString estimatingText = QStringLiteral("Estimating…");

RegularExpression &durationExpression()
{
    static thread_local RegularExpression expression(durationPattern);
    return expression;
}

RegularExpression &endTimeExpression()
{
    static thread_local RegularExpression expression(endTimePattern);
    return expression;
}

} // namespace

std::optional<double> audioDuration(QStringView output)
{
    const auto match = durationExpression().firstMatch(output);
    return match ? parseDouble(match->group(1)) : std::nullopt;
}

std::optional<double> lastTimedEnd(QStringView output)
{
    std::optional<double> end;
    qsizetype from = 0;
    while (const auto match = endTimeExpression().firstMatch(output, from)) {
        end = secondsOfTimecode(match->group(1), match->group(2), match->group(3));
        from = match->end();
    }
    return end;
}

QString formatRemaining(double seconds)
{
    const qint64 total = roundedSeconds(seconds);
    const qint64 hours = total / 3600;
    const qint64 minutes = total % 3600 / 60;
    if (hours > 0)
        return QStringLiteral("%1h %2m %3s").arg(hours).arg(minutes).arg(total % 60);
    if (minutes > 0)
        return QStringLiteral("%1m %2s").arg(minutes).arg(total % 60);
    return QStringLiteral("%1s").arg(total);
}

QString progressText(double progress)
{
    return QStringLiteral("Progress: %1%").arg(static_cast<int>(progress * 100.0));
}

const ProgressMarks &ProgressScanner::scan(QStringView output, qsizetype from, qsizetype lineStart)
{
    if (!m_isDurationFound && output.indexOf(durationEnd, std::max<qsizetype>(0, from - durationEnd.size() + 1)) >= 0) {
        if (const auto match = durationExpression().firstMatch(output.sliced(lineStart))) {
            m_isDurationFound = true;
            m_marks.duration = parseDouble(match->group(1));
        }
    }
    // Two matches cannot overlap, so one that the last piece completed is found from here as from the beginning.
    if (const auto end = lastTimedEnd(output.sliced(std::max<qsizetype>(0, from - longestEndTime))))
        m_marks.lastEnd = end;
    return m_marks;
}

void TranscriptionProgress::begin(Clock::time_point now)
{
    progress.reset();
    etaText = estimatingText;
    totalDuration.reset();
    transcriptionStart = now;
}

void TranscriptionProgress::beginFile(int fileIndex, int fileCount, Clock::time_point now)
{
    begin(now);
    progress = static_cast<double>(fileIndex) / std::max(fileCount, 1);
}

void TranscriptionProgress::update(QStringView output, Clock::time_point now)
{
    update(output, 0, 1, now);
}

void TranscriptionProgress::update(QStringView output, int fileIndex, int fileCount, Clock::time_point now)
{
    const auto duration = totalDuration ? totalDuration : audioDuration(output);
    update(ProgressMarks{duration, lastTimedEnd(output)}, now, fileIndex, fileCount);
}

void TranscriptionProgress::update(const ProgressMarks &marks, Clock::time_point now, int fileIndex, int fileCount)
{
    if (!totalDuration)
        totalDuration = marks.duration;
    if (!totalDuration)
        return;
    const double ratio = marks.lastEnd.value_or(0.0) / *totalDuration;
    const double fraction = ratio > 0.0 ? std::min(ratio, 1.0) : 0.0; // also for 0 of 0 seconds
    progress = (fraction + fileIndex) / std::max(fileCount, 1);

    if (transcriptionStart && fraction > 0.0) {
        const double elapsed = std::chrono::duration<double>(now - *transcriptionStart).count();
        const double remaining = std::max(elapsed / fraction - elapsed, 0.0);
        etaText = QStringLiteral("ETA: ") + formatRemaining(remaining);
    } else {
        etaText = estimatingText;
    }
}

void TranscriptionProgress::finish()
{
    progress = 1.0;
    etaText = QStringLiteral("Done");
}

} // namespace sorvanta
