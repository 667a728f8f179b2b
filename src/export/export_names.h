#pragma once

#include <QString>

#include <functional>
#include <optional>

namespace sorvanta {

/// How a screen names what it exports.
struct ExportNaming {
    QString ending; ///< behind the name of the source, for example "_transcription"
    std::function<QString()> nameWithoutSource; ///< the whole name, without the extension, where there is no source
};

/// The file screen and the microphone screen: "talk_transcription", "transcript_transcription".
ExportNaming transcriptionNaming();

/// The meeting screen; without a recording each name is a new one: "meeting_2026-02-02_02-40_1a2b3c_transcription".
ExportNaming meetingNaming();

/// The batch screen.
/// @param selectedFileCount tells how many files are selected
ExportNaming batchNaming(std::function<qsizetype()> selectedFileCount);

/// The history: "talk_history", "transcript_history".
ExportNaming historyNaming();

/// The file name that is proposed, without a folder.
/// @param extension without a point
/// @param source the path that the transcript was made of, or none
QString defaultExportName(const ExportNaming &naming, const QString &extension, const std::optional<QString> &source);

/// `path`, or, if its name is taken, the first free one of "name-2.txt", "name-3.txt" and so on. Nothing is created.
QString uniqueDownloadURL(const QString &path);

/// The path of `fileName` in `folder`, or, if it is taken, the first free one of "name (1).txt", "name (2).txt" and so
/// on; without an extension the point is left out. Nothing is created.
QString uniqueFolderURL(const QString &folder, const QString &fileName);

} // namespace sorvanta
