#pragma once

#include <QString>

#include <optional>

namespace sorvanta {

/// One finished transcription, or one recording that waits for its transcription. Once in the history it does not
/// change.
struct TranscriptionHistoryEntry {
    /// Milliseconds since 1970 in decimal, "-", six lower-case characters: "1770000000123-a1b2c3". No part of the
    /// names of the entry's files.
    QString id;
    /// Trimmed at both ends; empty for an entry that holds only a recording.
    QString text;
    /// What the text came from: as a rule the full path of the audio file.
    QString sourceLabel;
    /// The name of the model as it is shown, not its id.
    QString model;
    /// The code of the language, or "auto".
    QString language;
    bool diarization = false;
    /// The absolute path of the text as a file of its own.
    QString txtPath;
    /// The absolute path of the subtitles; none if there are none.
    std::optional<QString> srtPath = {};
    /// The absolute path of the private copy of the recording; none if there is none.
    std::optional<QString> recordingPath = {};
    /// The moment of adding as ISO 8601 text, see iso8601.h. One that was read from a file may be any text.
    QString createdAt;

    bool operator==(const TranscriptionHistoryEntry &) const = default;
};

} // namespace sorvanta
