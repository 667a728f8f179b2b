#pragma once

#include "core/transcript_text.h"

#include <QList>
#include <QString>

#include <optional>

namespace sorvanta {

/// The segments as SubRip subtitles (numbered blocks, a comma before the milliseconds, LF line ends, one LF at the
/// end), or none without segments.
std::optional<QString> renderSrt(const QList<TranscriptSegment> &segments);

} // namespace sorvanta
