#include "export/srt_export.h"

namespace sorvanta {

namespace {

QString withComma(QString timecode)
{
    return timecode.replace(u'.', u',');
}

} // namespace

std::optional<QString> renderSrt(const QList<TranscriptSegment> &segments)
{
    if (segments.isEmpty())
        return std::nullopt;
    QString text;
    int number = 0;
    for (const TranscriptSegment &segment : segments) {
        if (number > 0)
            text += u'\n';
        text += QString::number(++number) + u'\n';
        text += withComma(segment.start) + QStringLiteral(" --> ") + withComma(segment.end) + u'\n';
        text += segment.text + u'\n';
    }
    return text;
}

} // namespace sorvanta
