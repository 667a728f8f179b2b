#pragma once

#include <QList>
#include <QString>
#include <QStringView>

#include <array>
#include <optional>

namespace sorvanta {

/// One timed line of the engine's output.
struct TranscriptSegment {
    QString start; ///< "hh:mm:ss.mmm", as printed
    QString end; ///< as `start`
    QString text; ///< never blank; not trimmed

    bool operator==(const TranscriptSegment &) const = default;
};

/// One timed line with its times in seconds.
struct TranscriptWindowSegment {
    QString start;
    QString end;
    QString text;
    double startSeconds = 0.0;
    double endSeconds = 0.0;

    bool operator==(const TranscriptWindowSegment &) const = default;
};

// Pure functions over text, for any thread. None of them fails: what does not fit is skipped.

/// The transcript within the engine's output: the texts of the first unbroken block of lines in brackets, or, if that
/// has none, the lines that are no log. One line feed between lines; may be empty.
QString cleanWhisperOutput(QStringView rawOutput);

/// The timed lines of the engine's output, in its order.
/// @param stripDashes whether stripDashMarkers() goes over each text
QList<TranscriptSegment> parseTimedSegments(QStringView text, bool stripDashes);

/// The timed lines of the engine's output, with seconds.
QList<TranscriptWindowSegment> parseTimedWindowSegments(QStringView text, bool stripDashes);

/// `line` without one leading "- " and the white space round it; unchanged if it has none.
QStringView stripDashMarkers(QStringView line);

/// What a screen shows, searches, counts, copies and saves: the cleaned output, or `transcript` if there is no output.
QString displayedTranscript(QStringView rawOutput, QStringView transcript, bool stripDashes);

/// The words of a text, which white space and line breaks part, and its user-perceived characters.
struct TextCounts {
    qint64 words = 0;
    qint64 characters = 0; ///< line breaks included

    bool operator==(const TextCounts &) const = default;
};
TextCounts countText(QStringView text);

/// The counts as one line, for example "126 words · 622 chars".
QString countsText(const TextCounts &counts);

/// The counts line of a text.
QString TranscriptCounts(QStringView text);

/// The seconds of "hh:mm:ss.mmm", or none unless there are three pieces. A piece that is no number counts as 0.
std::optional<double> timecodeSeconds(QStringView timecode);

/// The clock of recording and playback, minutes and seconds: 75.4 gives "1:15", 3725 gives "62:05".
QString formatClock(double seconds);

// The rules for one line of output, which the functions above and the live text of a run share.

/// A line with this word anywhere is a timing of the engine and counts nowhere.
inline constexpr QStringView engineTimingWord = u"whisper_print";

/// A line with one of these words is no transcript where there are no timed lines.
inline constexpr std::array<QStringView, 2> logWords = {u"samples,", u"whisper.cpp"};

/// Whether a line begins like one of the engine's log, or with a bracket.
/// @param trimmed the line without white space at its beginning
bool beginsLikeLog(QStringView trimmed);

/// What a line that begins with "[" says: all behind the first "]", trimmed, or the line as it is without one.
QStringView withoutBracket(QStringView line);

/// hours, minutes and seconds, each as printed, in seconds; a piece that is no number counts as 0.
double secondsOfTimecode(QStringView hours, QStringView minutes, QStringView seconds);

} // namespace sorvanta
