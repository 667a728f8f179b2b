#include "core/segment_watch.h"

#include "core/transcript_text.h"
#include "platform/unicode_text.h"

#include <algorithm>

namespace sorvanta {

void SegmentWatch::take(const QString &rawOutput, qsizetype from, qsizetype lineStart)
{
    if (m_hasStripped)
        return;
    constexpr QStringView arrow = u" --> ";
    const QStringView output(rawOutput);
    const qsizetype searchStart = std::max(lineStart, from - arrow.size() + 1);
    if (!m_isArrowSeen && output.indexOf(arrow, searchStart) < 0)
        return;
    const QStringView lines = output.sliced(lineStart);
    m_hasPlain = m_hasPlain || !parseTimedSegments(lines, false).isEmpty();
    m_hasStripped = !parseTimedSegments(lines, true).isEmpty();

    const auto newline = std::find_if(lines.rbegin(), lines.rend(), [](QChar c) { return isNewline(c.unicode()); });
    const QStringView unfinished = lines.last(newline - lines.rbegin());
    m_isArrowSeen = unfinished.contains(arrow);
}

} // namespace sorvanta
