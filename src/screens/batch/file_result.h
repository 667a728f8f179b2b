#pragma once

#include "core/transcript_text.h"
#include "platform/unicode_text.h"

#include <QByteArray>
#include <QList>
#include <QObject>
#include <QString>
#include <QUrl>
#include <QUuid>
#include <QtQml/qqml.h>

#include <optional>

namespace sorvanta {

/// The colours of a file's status for the eye.
namespace FileTone {
Q_NAMESPACE
QML_ELEMENT

enum Tone { Secondary, Blue, Green, Red, Orange };
Q_ENUM_NS(Tone)
} // namespace FileTone

/// How far a batch is with one of its files.
enum class FileStatus { pending, running, done, failed, cancelled };

/// How the row of a file shows its status.
struct FileStatusLook {
    QString word;
    FileTone::Tone tone; ///< of the word
    QString symbol; ///< empty for none
    FileTone::Tone symbolTone;

    bool operator==(const FileStatusLook &) const = default;
};
FileStatusLook lookOf(FileStatus status);

/// What became of one file of a batch. Of the tool's output the bytes are kept and nothing else: there may be thousands
/// of results, and their texts are worked out when they are asked for.
struct FileResult {
    QUuid id; ///< new for each file at each start
    QUrl url; ///< the file as the user gave it, not its converted copy
    QByteArray output; ///< what the tool printed so far, in UTF-8
    // What the output holds, for each form of the option that strips dashes.
    bool hasTranscript = false;
    bool hasPlainSegments = false;
    bool hasStrippedSegments = false;
    FileStatus status = FileStatus::pending;
    std::optional<QString> error; ///< why this file failed

    QString rawOutput() const { return decodeUtf8WithRepair(output); }
    /// The cleaned text.
    QString transcript() const { return cleanWhisperOutput(rawOutput()); }
    /// The text as it is shown, copied, exported and kept in the history.
    QString exportText(bool stripDashes) const;
    /// The timed lines.
    QList<TranscriptSegment> segments(bool stripDashes) const;
    bool hasSegments(bool stripDashes) const { return stripDashes ? hasStrippedSegments : hasPlainSegments; }
};

/// The last path component of a file.
QString fileName(const QUrl &url);

/// The same in one line: a line break in a name, which a file may have, is shown as a blank.
QString oneLineFileName(const QUrl &url);

} // namespace sorvanta
