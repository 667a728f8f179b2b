#pragma once

#include "export/export_format.h"

#include <QByteArray>
#include <QString>

namespace sorvanta {

/// The text as the content of a DOCX or PDF file: paragraphs in one plain font, without title, times or styles. Touches
/// no file. A PDF cannot fail, and is made on the main thread only.
/// @param format docx or pdf
/// @throws Error "Export" if a DOCX cannot be made
QByteArray renderDocument(ExportFormat format, const QString &text);

} // namespace sorvanta
