#pragma once

#include <QString>

namespace sorvanta {

/// Whether the engine's output has a timed line, kept up while it grows: what parseTimedSegments() of the whole output
/// tells, for the work that a piece brings, and for none at all once there is one.
class SegmentWatch {
public:
    /// Looks at a piece that was appended.
    /// @param rawOutput the whole output, the piece included
    /// @param from where the piece begins
    /// @param lineStart where the line begins that was unfinished before
    void take(const QString &rawOutput, qsizetype from, qsizetype lineStart);

    bool hasSegments(bool stripDashes) const { return stripDashes ? m_hasStripped : m_hasPlain; }

private:
    bool m_hasPlain = false;
    bool m_hasStripped = false;
    bool m_isArrowSeen = false; // in the unfinished line
};

} // namespace sorvanta
