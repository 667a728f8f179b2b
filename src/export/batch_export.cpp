#include "export/batch_export.h"

#include "export/document_export.h"
#include "export/export_names.h"
#include "export/text_export.h"
#include "platform/error.h"
#include "platform/file_system.h"
#include "platform/paths.h"
#include "platform/unicode_text.h"

#include <QPointer>

#include <optional>
#include <utility>

namespace sorvanta {

namespace {

std::optional<QByteArray> rendered(ExportFormat format, const ExportInput &input)
{
    const bool isBlank = trimmedOfWhitespaceAndNewlines(input.text).isEmpty();
    if (isBlank && (format == ExportFormat::txt || isDocument(format)))
        return std::nullopt;
    if (isDocument(format))
        return renderDocument(format, input.text);
    const auto text = renderExport(format, input);
    return text ? std::optional(text->toUtf8()) : std::nullopt;
}

} // namespace

BatchExport::BatchExport(Settings settings, QObject *parent)
    : QObject(parent)
    , m_settings(std::move(settings))
{
}

void BatchExport::exportAll(ExportFormat format)
{
    const QString label = shortLabel(format);
    QList<BatchExportItem> rendering;
    try {
        rendering = items(format);
    } catch (const Error &error) {
        fail(label, error.localizedDescription());
        return;
    }
    if (rendering.isEmpty()) {
        m_settings.messages.setMessage(u"No %1 exports available."_qs.arg(label));
        return;
    }
    m_settings.panels.chooseFolder(u"Choose Folder"_qs,
                                   [self = QPointer(this), rendering, label](const std::optional<QString> &folder) {
                                       if (self && folder)
                                           self->write(rendering, *folder, label);
                                   });
}

QList<BatchExportItem> BatchExport::items(ExportFormat format) const
{
    QList<BatchExportItem> items;
    const qsizetype count = m_settings.sourceCount();
    for (qsizetype index = 0; index < count; ++index) {
        const BatchExportSource source = m_settings.source(index);
        if (auto data = rendered(format, source.input))
            items.append({m_settings.defaultName(fileExtension(format), source.path), *std::move(data)});
    }
    return items;
}

void BatchExport::write(const QList<BatchExportItem> &items, const QString &folder, const QString &label)
{
    try {
        for (const BatchExportItem &item : items)
            writeFileAtomically(uniqueFolderURL(folder, item.fileName), item.data, FileAccess::Usual);
    } catch (const Error &error) {
        fail(label, error.localizedDescription());
        return;
    }
    m_settings.messages.setMessage(
        u"Exported %1 %2 file(s) to %3"_qs.arg(QString::number(items.size()), label, lastPathComponent(folder)));
    m_settings.messages.setError(std::nullopt);
}

void BatchExport::fail(const QString &label, const QString &description)
{
    m_settings.messages.setError(u"Failed to export %1: %2"_qs.arg(label, description));
}

} // namespace sorvanta
