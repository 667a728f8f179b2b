#pragma once

#include "export/export_format.h"
#include "export/export_input.h"

#include <QString>

#include <optional>

namespace sorvanta {

/// The transcript as the content of a file in one of the text formats, with LF line ends, to be written as UTF-8
/// without a byte order mark. None if the format has no content for this input, which is no failure, and for the
/// documents, which are no text. Half a surrogate pair becomes U+FFFD, so that any encoder writes the same. Touches no
/// file; for any thread.
///
/// | Format | None without | With segments | Without segments |
/// |---|---|---|---|
/// | txt | text (white space is text here) | the text as it is | the text as it is |
/// | srt | segments | numbered SubRip blocks, a comma before the milliseconds, LF at the end | |
/// | vtt | segments | WebVTT cues without identifiers, LF at the end | |
/// | csv | both segments and text | a row a segment | one row with all text and no times |
/// | markdown | text | a paragraph a segment, its time in bold type | the text, trimmed |
/// | html | text | a paragraph a segment, its time in strong type | one paragraph with line breaks |
/// | json | text | an object with `segments` and `text` | an object with `text` |
///
/// But for txt, text of nothing but white space is no text.
std::optional<QString> renderExport(ExportFormat format, const ExportInput &input);

} // namespace sorvanta
