#pragma once

#include "history/transcription_history_entry.h"

#include <QByteArray>
#include <QList>

#include <functional>

namespace sorvanta {

/// The text of a history file: a JSON array of entries in the given order, UTF-8, pretty printed, keys sorted, paths
/// with their slashes as they are. What an entry does not have is left out.
QByteArray encodedHistory(const QList<TranscriptionHistoryEntry> &entries);

/// The same piece by piece: gives `sink` one piece after the other.
void encodeHistory(const QList<TranscriptionHistoryEntry> &entries, const std::function<void(QByteArrayView)> &sink);

/// What, followed by a history file of at least one entry from `firstEntryOffset` on, is the history file with `entry`
/// before the others.
QByteArray encodedBeforeOthers(const TranscriptionHistoryEntry &entry);

/// Where the first entry of an encoded history begins: behind the bracket and its line end.
constexpr qint64 firstEntryOffset = 2;

/// The entries of a history file in the order of the file. Keys that are not known are ignored; of keys that come
/// twice the first counts.
/// @throws Error 4865 if an entry lacks something required or has null for it, 4864 if anything else is wrong; one
/// bad entry fails the whole file
QList<TranscriptionHistoryEntry> decodedHistory(const QByteArray &document);

/// Sorts by `createdAt`, the newest first. Entries whose date cannot be read go to the end; equal ones keep their
/// order.
void sortNewestFirst(QList<TranscriptionHistoryEntry> &entries);

} // namespace sorvanta
