#pragma once

#include "core/transcript_text.h"
#include "history/transcription_history_entry.h"

#include <QList>
#include <QString>

#include <optional>

namespace sorvanta {

// What an entry of the history has for its exports. The files of an entry are read, blocking, at each call; one that
// cannot be read counts as missing, and nothing is reported.

/// A path that an entry names, if something lies there.
std::optional<QString> storedFile(const std::optional<QString> &path);

/// The timed lines of the entry: those of its stored subtitles, or, where there are none, those in its text, dash
/// markers included.
QList<TranscriptSegment> historySegments(const TranscriptionHistoryEntry &entry);

/// The entry's stored subtitles as they stand, or, without such a file, its timed lines as SubRip; none without timed
/// lines. See decodeText() for the encodings of the file.
std::optional<QString> historySrtText(const TranscriptionHistoryEntry &entry);

/// Whether the entry has a file of subtitles, whatever is in it, or timed lines.
bool hasTimestamps(const TranscriptionHistoryEntry &entry);

/// The timed lines in the text of a SubRip file, as far as blocks are separated by two line feeds. A block without a
/// time or without text is skipped; the lines of a block are joined with blanks.
QList<TranscriptSegment> parseStoredSrt(const QString &text);

} // namespace sorvanta
