#pragma once

#include <QString>

#include <array>

namespace sorvanta {

/// What a transcript can be saved as.
enum class ExportFormat { txt, srt, vtt, csv, docx, pdf, markdown, html, json };

/// All formats in the order of every menu.
inline constexpr std::array allExportFormats = {ExportFormat::txt,      ExportFormat::srt,  ExportFormat::vtt,
                                                ExportFormat::csv,      ExportFormat::docx, ExportFormat::pdf,
                                                ExportFormat::markdown, ExportFormat::html, ExportFormat::json};

/// The format's name in a menu, for example "Markdown (.md)".
QString menuLabel(ExportFormat format);

/// The format's name in a message, for example "Markdown".
QString shortLabel(ExportFormat format);

/// The extension of the format's files, without a dot and in lower case.
QString fileExtension(ExportFormat format);

/// Whether the format is a document with pages (DOCX, PDF), whose content is no text.
bool isDocument(ExportFormat format);

} // namespace sorvanta
