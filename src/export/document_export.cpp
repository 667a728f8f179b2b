#include "export/document_export.h"

#include "export/docx_document.h"
#include "export/pdf_document.h"

namespace sorvanta {

QByteArray renderDocument(ExportFormat format, const QString &text)
{
    return format == ExportFormat::docx ? renderDocx(text) : renderPdf(text);
}

} // namespace sorvanta
