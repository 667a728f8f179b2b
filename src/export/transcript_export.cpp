#include "export/transcript_export.h"

#include "export/document_export.h"
#include "export/text_export.h"
#include "platform/error.h"

#include <utility>

namespace sorvanta {

namespace {

/// @return none if there is nothing to write; throws what the documents throw
std::optional<DeliveryContent> rendered(ExportFormat format, const ExportInput &input)
{
    if (isDocument(format)) {
        if (input.text.isEmpty())
            return std::nullopt;
        return DeliveryContent{.data = renderDocument(format, input.text)};
    }
    if (const auto text = renderExport(format, input))
        return DeliveryContent{.text = text};
    return std::nullopt;
}

} // namespace

TranscriptExport::TranscriptExport(Settings settings, ExportDelivery &delivery)
    : m_settings(std::move(settings))
    , m_delivery(delivery)
{
}

void TranscriptExport::save(ExportFormat format)
{
    try {
        if (const auto content = rendered(format, m_settings.input(format)))
            m_delivery.saveWithPanel(*content, fileExtension(format), allowedTypes(format), savedWord(format));
        else if (format == ExportFormat::srt || format == ExportFormat::vtt)
            m_settings.messages.setError(noTimestampsMessage(format));
        else if (format == ExportFormat::csv)
            m_settings.messages.setError(m_settings.nothingForCsv);
    } catch (const Error &error) {
        m_settings.messages.setError(saveFailure(transcriptionDelivery, fileExtension(format))
                                     + error.localizedDescription());
    }
}

void TranscriptExport::download(ExportFormat format)
{
    try {
        if (const auto content = rendered(format, m_settings.input(format)))
            m_delivery.saveToDownloads(*content, fileExtension(format), savedWord(format));
    } catch (const Error &) {
        m_settings.messages.setError(u"Could not generate %1."_qs.arg(shortLabel(format)));
    }
}

QString noTimestampsMessage(ExportFormat format)
{
    return u"No timestamped transcript available for %1."_qs.arg(shortLabel(format));
}

} // namespace sorvanta
