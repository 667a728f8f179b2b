#pragma once

#include "core/text_lines.h"
#include "core/transcript_text.h"

#include <vector>

namespace sorvanta {

/// TranscriptCounts() of a shown text, kept up while its lines change. The counts up to each line are kept, so only
/// lines that changed, and those behind them, are counted again.
class TranscriptCounter {
public:
    /// @param lines of the shown text, which are parted by one line feed each; must outlive this
    explicit TranscriptCounter(const TextLines &lines)
        : m_lines(lines)
    {
    }

    /// Counts the lines from `firstLine` on; those before it are as they were.
    void recountFrom(qsizetype firstLine);

    TextCounts counts() const;

private:
    const TextLines &m_lines;
    std::vector<TextCounts> m_countsUpTo; // of each line and those before it, without line feeds
};

} // namespace sorvanta
