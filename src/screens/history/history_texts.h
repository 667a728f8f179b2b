#pragma once

#include "history/transcription_history_entry.h"

#include <QList>
#include <QString>
#include <QStringList>
#include <QVariantList>

namespace sorvanta {

// What the browser shows of an entry.

/// The name of what was transcribed, or "Unknown source".
QString entryTitle(const TranscriptionHistoryEntry &entry);

/// The first line of the text, or that there is none.
QString entryPreview(const TranscriptionHistoryEntry &entry);

/// @param milliseconds since 1970
using DateFormatter = QString (*)(qint64 milliseconds);

/// When the entry was made, as `formatter` writes it; the text in the entry as it stands if that tells no moment.
QString formattedDate(const TranscriptionHistoryEntry &entry, DateFormatter formatter);

/// A small label of an entry.
struct HistoryTag {
    QString text;
    QString systemImage; ///< the name of a symbol

    bool operator==(const HistoryTag &) const = default;
};

/// The model, the language and, if so, that speakers were told apart.
QList<HistoryTag> entryTags(const TranscriptionHistoryEntry &entry);

/// The same for views: maps with `text` and `systemImage`.
QVariantList tagList(const TranscriptionHistoryEntry &entry);

/// The text in pieces that a view lays out at once. It is one piece unless it is very long; then it is cut at ends of
/// lines, which are left out, and where a line is very long itself, behind blanks.
QStringList textPieces(const QString &text);

} // namespace sorvanta
