#include "export/text_export.h"

#include "platform/json_writer.h"
#include "platform/unicode_text.h"

namespace sorvanta {

namespace {

using Segments = QList<TranscriptSegment>;

/// The texts that `textOf(segment)` gives, with `separator` between them.
template<typename TextOf>
QString joined(const Segments &segments, QStringView separator, TextOf textOf)
{
    QString text;
    for (qsizetype i = 0; i < segments.size(); ++i) {
        if (i > 0)
            text += separator;
        text += textOf(segments[i]);
    }
    return text;
}

std::optional<QString> renderTxt(const QString &text)
{
    if (text.isEmpty())
        return std::nullopt;
    return text;
}

QString srtTime(QString timecode)
{
    return timecode.replace(u'.', u',');
}

std::optional<QString> renderSrt(const Segments &segments)
{
    if (segments.isEmpty())
        return std::nullopt;
    return joined(segments, u"\n", [number = 0](const TranscriptSegment &segment) mutable {
        return u"%1\n%2 --> %3\n%4\n"_qs.arg(QString::number(++number), srtTime(segment.start), srtTime(segment.end),
                                             segment.text);
    });
}

std::optional<QString> renderVtt(const Segments &segments)
{
    if (segments.isEmpty())
        return std::nullopt;
    const QString cues = joined(segments, u"\n\n", [](const TranscriptSegment &segment) {
        return u"%1 --> %2\n%3"_qs.arg(segment.start, segment.end, segment.text);
    });
    return u"WEBVTT\n\n"_qs + cues + u'\n';
}

QString csvEscaped(QString text)
{
    return text.replace(u'"', u"\"\""_qs).replace(u'\n', u' ');
}

std::optional<QString> renderCsv(const Segments &segments, QStringView trimmedText)
{
    const QString header = u"start,end,text\n"_qs;
    if (!segments.isEmpty()) {
        return header + joined(segments, u"\n", [](const TranscriptSegment &segment) {
                   return u"%1,%2,\"%3\""_qs.arg(segment.start, segment.end, csvEscaped(segment.text));
               });
    }
    if (trimmedText.isEmpty())
        return std::nullopt;
    return header + u",,\"%1\""_qs.arg(csvEscaped(trimmedText.toString()));
}

std::optional<QString> renderMarkdown(const Segments &segments, QStringView trimmedText)
{
    if (trimmedText.isEmpty())
        return std::nullopt;
    if (segments.isEmpty())
        return trimmedText.toString();
    return joined(segments, u"\n\n", [](const TranscriptSegment &segment) {
        return u"**[%1 -> %2]** %3"_qs.arg(segment.start, segment.end, segment.text);
    });
}

QString htmlEscaped(const QString &text)
{
    return text.toHtmlEscaped().replace(u'\'', u"&#39;"_qs);
}

QString htmlBody(const Segments &segments, QStringView trimmedText)
{
    if (segments.isEmpty())
        return u"<p>%1</p>"_qs.arg(htmlEscaped(trimmedText.toString()).replace(u'\n', u"<br>"_qs));
    return joined(segments, u"\n", [](const TranscriptSegment &segment) {
        return u"<p><strong>[%1 -> %2]</strong> %3</p>"_qs.arg(segment.start, segment.end, htmlEscaped(segment.text));
    });
}

std::optional<QString> renderHtml(const Segments &segments, QStringView trimmedText)
{
    if (trimmedText.isEmpty())
        return std::nullopt;
    return u"<!doctype html>\n<html>\n<head>\n<meta charset=\"utf-8\">\n<title>Transcript Export</title>\n</head>\n"
           "<body>\n%1\n</body>\n</html>"_qs.arg(htmlBody(segments, trimmedText));
}

void writeMember(JsonWriter &writer, QStringView key, QStringView text)
{
    writer.key(key);
    writer.string(text);
}

std::optional<QString> renderJson(const Segments &segments, QStringView trimmedText)
{
    if (trimmedText.isEmpty())
        return std::nullopt;
    JsonWriter writer(JsonWriter::Layout::Pretty, JsonWriter::Slashes::Escaped);
    writer.beginObject();
    if (!segments.isEmpty()) {
        writer.key(u"segments");
        writer.beginArray();
        for (const TranscriptSegment &segment : segments) {
            writer.beginObject();
            writeMember(writer, u"end", segment.end);
            writeMember(writer, u"start", segment.start);
            writeMember(writer, u"text", segment.text);
            writer.endObject();
        }
        writer.endArray();
    }
    writeMember(writer, u"text", trimmedText);
    writer.endObject();
    return QString::fromUtf8(writer.takeBytes());
}

std::optional<QString> render(ExportFormat format, const ExportInput &input)
{
    const QStringView trimmedText = trimmedOfWhitespaceAndNewlines(input.text);
    switch (format) {
    case ExportFormat::txt:
        return renderTxt(input.text);
    case ExportFormat::srt:
        return renderSrt(input.segments);
    case ExportFormat::vtt:
        return renderVtt(input.segments);
    case ExportFormat::csv:
        return renderCsv(input.segments, trimmedText);
    case ExportFormat::markdown:
        return renderMarkdown(input.segments, trimmedText);
    case ExportFormat::html:
        return renderHtml(input.segments, trimmedText);
    case ExportFormat::json:
        return renderJson(input.segments, trimmedText);
    case ExportFormat::docx:
    case ExportFormat::pdf:
        break;
    }
    return std::nullopt;
}

} // namespace

std::optional<QString> renderExport(ExportFormat format, const ExportInput &input)
{
    std::optional<QString> content = render(format, input);
    if (content)
        repairSurrogates(*content);
    return content;
}

} // namespace sorvanta
