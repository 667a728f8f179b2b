#pragma once

#include "core/transcript_text.h"

#include <QList>
#include <QString>

namespace sorvanta {

/// The transcript that an export is made of.
struct ExportInput {
    QString text = {}; ///< as the user sees it; may have white space at its ends
    QList<TranscriptSegment> segments = {}; ///< the timed lines in the transcript's order; empty if there are none
};

} // namespace sorvanta
