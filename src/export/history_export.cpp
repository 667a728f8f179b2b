#include "export/history_export.h"

#include "export/document_export.h"
#include "export/stored_export.h"
#include "export/text_export.h"
#include "platform/error.h"
#include "platform/unicode_text.h"

#include <utility>

namespace sorvanta {

namespace {

std::optional<DeliveryContent> textContent(std::optional<QString> text, std::optional<QString> sourcePath = {})
{
    if (!text)
        return std::nullopt;
    return DeliveryContent{.sourcePath = std::move(sourcePath), .text = std::move(text)};
}

std::optional<DeliveryContent> documentContent(ExportFormat format, const TranscriptionHistoryEntry &entry)
{
    const QString text = trimmedOfWhitespaceAndNewlines(entry.text).toString();
    if (text.isEmpty())
        return std::nullopt;
    try {
        return DeliveryContent{.data = renderDocument(format, text)};
    } catch (const Error &) {
        return std::nullopt;
    }
}

} // namespace

HistoryExport::HistoryExport(Entry entry, ExportDelivery &delivery)
    : m_entry(std::move(entry))
    , m_delivery(delivery)
{
}

void HistoryExport::save(ExportFormat format)
{
    if (const auto delivered = content(format))
        m_delivery.saveWithPanel(*delivered, fileExtension(format), allowedTypes(format), savedWord(format));
}

void HistoryExport::download(ExportFormat format)
{
    if (const auto delivered = content(format))
        m_delivery.saveToDownloads(*delivered, fileExtension(format), savedWord(format));
}

std::optional<DeliveryContent> HistoryExport::content(ExportFormat format) const
{
    const auto entry = m_entry();
    if (!entry)
        return std::nullopt;
    if (format == ExportFormat::txt)
        return textContent(entry->text, storedFile(entry->txtPath));
    if (format == ExportFormat::srt)
        return textContent(historySrtText(*entry), storedFile(entry->srtPath));
    if (isDocument(format))
        return documentContent(format, *entry);
    return textContent(renderExport(format, {entry->text, historySegments(*entry)}));
}

bool canExport(const TranscriptionHistoryEntry &entry)
{
    return storedFile(entry.txtPath) || !trimmedOfWhitespaceAndNewlines(entry.text).isEmpty();
}

} // namespace sorvanta
