#include "core/transcript_text.h"

#include "platform/number_text.h"
#include "platform/regular_expression.h"
#include "platform/unicode_text.h"

#include <algorithm>
#include <utility>

namespace sorvanta {

namespace {

constexpr std::array<QStringView, 14> ignoredPrefixes = {
    u"main:",   u"system_info:", u"whisper_",  u"ggml_",      u"encode:", u"decode:",  u"processing ",
    u"output_", u"duration:",    u"language:", u"translate:", u"error:",  u"warning:", u"build info",
};

bool isPlainTranscriptLine(QStringView trimmed)
{
    return !trimmed.isEmpty() && !beginsLikeLog(trimmed)
           && std::none_of(logWords.begin(), logWords.end(),
                           [trimmed](QStringView word) { return trimmed.contains(word); });
}

void appendLine(QString &text, QStringView line)
{
    if (!text.isEmpty())
        text += u'\n';
    text += line;
}

/// The block of lines in brackets; a line of another kind ends it.
QString timedBlock(QStringView rawOutput)
{
    QString block;
    bool hasBegun = false;
    bool hasEnded = false;
    forEachLine(rawOutput, [&](QStringView line) {
        if (hasEnded || line.contains(engineTimingWord))
            return;
        const QStringView trimmed = trimmedOfWhitespace(line);
        if (trimmed.startsWith(u'[')) {
            hasBegun = true;
            const QStringView entry = withoutBracket(line);
            if (!trimmedOfWhitespace(entry).isEmpty())
                appendLine(block, entry);
        } else if (hasBegun && !trimmed.isEmpty()) {
            hasEnded = true;
        }
    });
    return block;
}

QString plainLines(QStringView rawOutput)
{
    QString text;
    forEachLine(rawOutput, [&text](QStringView line) {
        const QStringView trimmed = trimmedOfWhitespaceAndNewlines(line);
        if (!line.contains(engineTimingWord) && isPlainTranscriptLine(trimmed))
            appendLine(text, trimmed);
    });
    return text;
}

constexpr QStringView arrow = u" --> ";

constexpr QStringView timedLinePattern =
    u"\\[(\\d{2}):(\\d{2}):(\\d{2}\\.\\d{3}) --> (\\d{2}):(\\d{2}):(\\d{2}\\.\\d{3})\\]\\s*(.*)";

struct TimedLine {
    QStringView start;
    QStringView end;
    QStringView text;
};

/// Whether a text is "hh:mm:ss.mmm" in the digits 0 to 9.
bool isPlainTimecode(QStringView text)
{
    constexpr QStringView shape = u"00:00:00.000";
    return text.size() == shape.size()
           && std::equal(text.begin(), text.end(), shape.begin(), [](QChar unit, QChar wanted) {
                  return wanted == u'0' ? unit >= u'0' && unit <= u'9' : unit == wanted;
              });
}

/// The timed line that stands in a line as the engine prints it: from its beginning and in plain digits. What the
/// pattern would find there, at a small part of its cost.
std::optional<TimedLine> plainTimedLine(QStringView line)
{
    constexpr qsizetype timecodeSize = 12;
    constexpr qsizetype endStart = 1 + timecodeSize + arrow.size();
    constexpr qsizetype bracket = endStart + timecodeSize;
    if (line.size() <= bracket || line[0] != u'[' || line[bracket] != u']'
        || line.sliced(1 + timecodeSize, arrow.size()) != arrow)
        return std::nullopt;
    const TimedLine timed{line.sliced(1, timecodeSize), line.sliced(endStart, timecodeSize), {}};
    if (!isPlainTimecode(timed.start) || !isPlainTimecode(timed.end))
        return std::nullopt;
    qsizetype text = bracket + 1;
    while (text < line.size() && hasWhiteSpaceProperty(line[text].unicode()))
        ++text;
    return TimedLine{timed.start, timed.end, line.sliced(text)};
}

/// Calls `visit(TimedLine)` for each timed line.
template<typename Visitor>
void forEachTimedLine(QStringView text, bool stripDashes, Visitor visit)
{
    RegularExpression pattern(timedLinePattern);
    const auto find = [&pattern](QStringView line) {
        auto timed = plainTimedLine(line);
        if (timed || !line.contains(arrow))
            return timed;
        if (const auto match = pattern.firstMatch(line)) {
            // The three groups of a time stand side by side with their colons.
            const auto timecode = [&match](int firstGroup) {
                return QStringView(match->group(firstGroup).begin(), match->group(firstGroup + 2).end());
            };
            timed = TimedLine{timecode(1), timecode(4), match->group(7)};
        }
        return timed;
    };
    forEachLine(text, [&](QStringView line) {
        auto timed = find(trimmedOfWhitespace(line));
        if (!timed)
            return;
        if (stripDashes)
            timed->text = stripDashMarkers(timed->text);
        if (!trimmedOfWhitespaceAndNewlines(timed->text).isEmpty())
            visit(*timed);
    });
}

} // namespace

QString cleanWhisperOutput(QStringView rawOutput)
{
    const QString block = timedBlock(rawOutput);
    return block.isEmpty() ? plainLines(rawOutput) : block;
}

QList<TranscriptSegment> parseTimedSegments(QStringView text, bool stripDashes)
{
    QList<TranscriptSegment> segments;
    forEachTimedLine(text, stripDashes, [&segments](const TimedLine &line) {
        segments.append({line.start.toString(), line.end.toString(), line.text.toString()});
    });
    return segments;
}

QList<TranscriptWindowSegment> parseTimedWindowSegments(QStringView text, bool stripDashes)
{
    QList<TranscriptWindowSegment> segments;
    forEachTimedLine(text, stripDashes, [&segments](const TimedLine &line) {
        const auto start = timecodeSeconds(line.start);
        const auto end = timecodeSeconds(line.end);
        if (start && end)
            segments.append({line.start.toString(), line.end.toString(), line.text.toString(), *start, *end});
    });
    return segments;
}

QStringView stripDashMarkers(QStringView line)
{
    GraphemeClusters clusters(line);
    qsizetype start = 0;
    while (start < line.size() && hasWhiteSpaceProperty(line[start].unicode()))
        start = clusters.end(start);

    const QStringView rest = line.sliced(start);
    if (!rest.startsWith(u"- "))
        return line;
    // A mark on the blank makes another character of it.
    if (clusters.end(start + 1) != start + 2)
        return line;
    return trimmedOfWhitespace(rest.sliced(2));
}

QString displayedTranscript(QStringView rawOutput, QStringView transcript, bool stripDashes)
{
    const QString text = rawOutput.isEmpty() ? transcript.toString() : cleanWhisperOutput(rawOutput);
    if (!stripDashes)
        return text;
    QString stripped;
    stripped.reserve(text.size());
    forEachLine(text, [&stripped, isFirst = true](QStringView line) mutable {
        if (!isFirst)
            stripped += u'\n';
        isFirst = false;
        stripped += stripDashMarkers(line);
    });
    return stripped;
}

TextCounts countText(QStringView text)
{
    GraphemeClusters clusters(text);
    TextCounts counts;
    bool isInWord = false;
    for (qsizetype i = 0; i < text.size(); i = clusters.end(i)) {
        const bool isSeparator = hasWhiteSpaceProperty(text[i].unicode());
        if (!isSeparator && !isInWord)
            ++counts.words;
        isInWord = !isSeparator;
        ++counts.characters;
    }
    return counts;
}

QString countsText(const TextCounts &counts)
{
    return QStringLiteral("%1 words · %2 chars").arg(counts.words).arg(counts.characters);
}

QString TranscriptCounts(QStringView text)
{
    return countsText(countText(text));
}

std::optional<double> timecodeSeconds(QStringView timecode)
{
    if (isPlainTimecode(timecode)) {
        const auto number = [timecode](qsizetype at, qsizetype digits) {
            int value = 0;
            for (const QChar digit : timecode.sliced(at, digits))
                value = 10 * value + (digit.unicode() - u'0');
            return value;
        };
        return 3600.0 * number(0, 2) + 60.0 * number(3, 2) + (1000 * number(6, 2) + number(9, 3)) / 1000.0;
    }
    const auto pieces = timecode.split(u':', Qt::SkipEmptyParts);
    if (pieces.size() != 3)
        return std::nullopt;
    return secondsOfTimecode(pieces[0], pieces[1], pieces[2]);
}

QString formatClock(double seconds)
{
    const qint64 total = roundedSeconds(seconds);
    return QStringLiteral("%1:%2").arg(total / 60).arg(total % 60, 2, 10, QLatin1Char('0'));
}

bool beginsLikeLog(QStringView trimmed)
{
    constexpr qsizetype longestPrefix =
        std::max_element(ignoredPrefixes.begin(), ignoredPrefixes.end(), [](QStringView left, QStringView right) {
            return left.size() < right.size();
        })->size();
    const QString beginning = trimmed.left(longestPrefix).toString().toLower();
    return beginning.startsWith(u'[')
           || std::any_of(ignoredPrefixes.begin(), ignoredPrefixes.end(),
                          [&beginning](QStringView prefix) { return beginning.startsWith(prefix); });
}

QStringView withoutBracket(QStringView line)
{
    const qsizetype bracket = line.indexOf(u']');
    return bracket < 0 ? line : trimmedOfWhitespace(line.sliced(bracket + 1));
}

double secondsOfTimecode(QStringView hours, QStringView minutes, QStringView seconds)
{
    return parseDouble(hours).value_or(0.0) * 3600.0 + parseDouble(minutes).value_or(0.0) * 60.0
           + parseDouble(seconds).value_or(0.0);
}

} // namespace sorvanta
