#pragma once

#include "history/transcription_history_entry.h"

#include <ostream>

namespace sorvanta {

/// An entry with a value in every required field.
inline TranscriptionHistoryEntry historyEntry(const QString &id, const QString &createdAt = "2026-02-02T02:40:00.123Z")
{
    TranscriptionHistoryEntry entry;
    entry.id = id;
    entry.text = "Text of " + id;
    entry.sourceLabel = "/music/" + id + ".wav";
    entry.model = "Base";
    entry.language = "auto";
    entry.txtPath = "/nowhere/" + id + ".txt";
    entry.createdAt = createdAt;
    return entry;
}

inline QStringList historyIds(const QList<TranscriptionHistoryEntry> &entries)
{
    QStringList ids;
    for (const TranscriptionHistoryEntry &entry : entries)
        ids << entry.id;
    return ids;
}

// GoogleTest finds it by the namespace of the entry.
inline void PrintTo(const TranscriptionHistoryEntry &entry, std::ostream *out)
{
    const auto optional = [](const std::optional<QString> &text) { return text ? text->toStdString() : "none"; };
    *out << entry.id.toStdString() << " | " << entry.text.toStdString() << " | " << entry.sourceLabel.toStdString()
         << " | " << entry.model.toStdString() << " | " << entry.language.toStdString() << " | " << entry.diarization
         << " | " << entry.txtPath.toStdString() << " | " << optional(entry.srtPath) << " | "
         << optional(entry.recordingPath) << " | " << entry.createdAt.toStdString();
}

} // namespace sorvanta
