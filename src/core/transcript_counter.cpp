#include "core/transcript_counter.h"

#include <algorithm>

namespace sorvanta {

void TranscriptCounter::recountFrom(qsizetype firstLine)
{
    m_countsUpTo.resize(std::min(static_cast<std::size_t>(firstLine), m_countsUpTo.size()));
    TextCounts sum = m_countsUpTo.empty() ? TextCounts() : m_countsUpTo.back();
    const qsizetype count = m_lines.lineCount();
    for (auto line = static_cast<qsizetype>(m_countsUpTo.size()); line < count; ++line) {
        // No word and no character reaches over a line feed.
        const TextCounts counts = countText(m_lines.line(line));
        sum.words += counts.words;
        sum.characters += counts.characters;
        m_countsUpTo.push_back(sum);
    }
}

TextCounts TranscriptCounter::counts() const
{
    if (m_countsUpTo.empty())
        return {};
    TextCounts counts = m_countsUpTo.back();
    counts.characters += static_cast<qint64>(m_countsUpTo.size()) - 1;
    return counts;
}

} // namespace sorvanta
