#include "screens/batch/batch_exports.h"

#include <algorithm>

namespace sorvanta {

namespace {

/// Whether the format takes the bare transcript of the selected result, with its dashes in any case.
bool takesBareTranscript(ExportFormat format)
{
    return format == ExportFormat::markdown || format == ExportFormat::html || format == ExportFormat::json
           || format == ExportFormat::csv;
}

} // namespace

BatchExports::BatchExports(const Settings &settings)
    : m_settings(settings)
    , m_naming(batchNaming(settings.selectedFileCount))
    , m_delivery(
          {.form = transcriptionDelivery,
           .panels = settings.panels,
           .defaultName =
               [this](const QString &extension) { return defaultName(extension, m_settings.results.selected()); },
           .messages = settings.messages})
    , m_export({.input = [this](ExportFormat format) { return selectedInput(format); },
                .nothingForCsv = u"No transcript available for CSV."_qs,
                .messages = settings.messages},
               m_delivery)
    , m_exportAll({.sourceCount = [this] { return m_settings.results.list().size(); },
                   .source = [this](qsizetype row) { return source(row); },
                   .panels = settings.panels,
                   .defaultName = [this](const QString &extension,
                                         const QString &path) { return defaultExportName(m_naming, extension, path); },
                   .messages = settings.messages})
    , m_menu(newBatchExportMenu(
          m_export, [this](ExportFormat format) { m_exportAll.exportAll(format); }, &m_owner))
    , m_exportAllMenu(newExportAllMenu([this](ExportFormat format) { m_exportAll.exportAll(format); }, &m_owner))
{
    updateMenus();
}

QString BatchExports::defaultName(const QString &extension, const FileResult *result) const
{
    return defaultExportName(m_naming, extension, result ? std::optional(result->url.toLocalFile()) : std::nullopt);
}

ExportInput BatchExports::selectedInput(ExportFormat format) const
{
    const FileResult *const result = m_settings.results.selected();
    if (!result)
        return {};
    const bool stripDashes = m_settings.stripDashes();
    return {result->exportText(stripDashes && !takesBareTranscript(format)), result->segments(stripDashes)};
}

BatchExportSource BatchExports::source(qsizetype row) const
{
    const FileResult &result = m_settings.results.list()[row];
    const bool stripDashes = m_settings.stripDashes();
    return {result.url.toLocalFile(), {result.exportText(stripDashes), result.segments(stripDashes)}};
}

void BatchExports::updateMenus() const
{
    const QList<FileResult> &results = m_settings.results.list();
    const FileResult *const selected = m_settings.results.selected();
    const bool stripDashes = m_settings.stripDashes();
    const auto hasContent = [](const FileResult &result) { return result.hasTranscript; };
    const auto hasSegments = [stripDashes](const FileResult &result) { return result.hasSegments(stripDashes); };
    const ExportMenuState state{
        .hasContent = selected && hasContent(*selected),
        .hasSegments = selected && hasSegments(*selected),
        .hasResults = !results.isEmpty(),
        .anyResultHasContent = std::any_of(results.begin(), results.end(), hasContent),
        .anyResultHasSegments = std::any_of(results.begin(), results.end(), hasSegments),
    };
    m_menu->setState(state);
    m_exportAllMenu->setState(state);
}

} // namespace sorvanta
