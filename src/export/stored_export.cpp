#include "export/stored_export.h"

#include "export/text_export.h"
#include "platform/error.h"
#include "platform/file_system.h"
#include "platform/regular_expression.h"
#include "platform/unicode_text.h"

namespace sorvanta {

namespace {

constexpr QStringView timePattern = u"(\\d{2}:\\d{2}:\\d{2},\\d{3}) --> (\\d{2}:\\d{2}:\\d{2},\\d{3})";

QString withPoint(QStringView time)
{
    return time.toString().replace(u',', u'.');
}

std::optional<TranscriptSegment> parseBlock(QStringView block, RegularExpression &times)
{
    std::optional<TranscriptSegment> segment;
    forEachLine(block, [&](QStringView line) {
        if (trimmedOfWhitespace(line).isEmpty())
            return;
        if (segment)
            segment->text += line.toString() + u' ';
        else if (const auto match = times.firstMatch(line))
            segment = {withPoint(match->group(1)), withPoint(match->group(2)), QString()};
    });
    if (!segment)
        return std::nullopt;
    segment->text = trimmedOfWhitespaceAndNewlines(segment->text).toString();
    if (segment->text.isEmpty())
        return std::nullopt;
    return segment;
}

std::optional<QString> storedSrt(const TranscriptionHistoryEntry &entry)
{
    const auto path = storedFile(entry.srtPath);
    if (!path)
        return std::nullopt;
    try {
        return decodeText(readFile(*path));
    } catch (const Error &) {
        return std::nullopt;
    }
}

} // namespace

std::optional<QString> storedFile(const std::optional<QString> &path)
{
    return path && itemExists(*path) ? path : std::nullopt;
}

QList<TranscriptSegment> parseStoredSrt(const QString &text)
{
    RegularExpression times(timePattern);
    QList<TranscriptSegment> segments;
    for (const QStringView block : QStringView(text).tokenize(u"\n\n")) {
        if (auto segment = parseBlock(block, times))
            segments.append(*std::move(segment));
    }
    return segments;
}

QList<TranscriptSegment> historySegments(const TranscriptionHistoryEntry &entry)
{
    if (const auto text = storedSrt(entry)) {
        if (auto segments = parseStoredSrt(*text); !segments.isEmpty())
            return segments;
    }
    return parseTimedSegments(entry.text, false);
}

std::optional<QString> historySrtText(const TranscriptionHistoryEntry &entry)
{
    if (auto text = storedSrt(entry))
        return text;
    return renderExport(ExportFormat::srt, {.text = entry.text, .segments = historySegments(entry)});
}

bool hasTimestamps(const TranscriptionHistoryEntry &entry)
{
    return storedFile(entry.srtPath) || !historySegments(entry).isEmpty();
}

} // namespace sorvanta
