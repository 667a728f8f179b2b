#include "export/run_exports.h"

namespace sorvanta {

namespace {

ExportInput inputOf(const TranscriptionRun &run)
{
    return {run.displayedTranscript(), parseTimedSegments(run.rawOutput(), run.stripDashes())};
}

} // namespace

RunExports::RunExports(const Settings &settings)
    : m_delivery(
        {.form = transcriptionDelivery,
         .panels = settings.panels,
         .defaultName = [naming = settings.naming, source = settings.source](
                            const QString &extension) { return defaultExportName(naming, extension, source()); },
         .messages = messagesOf(settings.run)})
    , m_export({.input = [&run = settings.run](ExportFormat) { return inputOf(run); },
                .nothingForCsv = noTimestampsMessage(ExportFormat::csv),
                .messages = messagesOf(settings.run)},
               m_delivery)
    , m_menu(newTranscriptionExportMenu(m_export, &m_owner))
{
    const auto follow = [menu = m_menu, &run = settings.run] {
        menu->setState({.hasContent = run.hasShownText(), .hasSegments = run.hasSegments()});
    };
    QObject::connect(&settings.run, &TranscriptionRun::hasShownTextChanged, m_menu, follow);
    QObject::connect(&settings.run, &TranscriptionRun::hasSegmentsChanged, m_menu, follow);
    follow();
}

ExportMessages messagesOf(RunState &run)
{
    return {.setMessage = [&run](const std::optional<QString> &message) { run.setStatus(message.value_or(QString())); },
            .setError = [&run](const std::optional<QString> &error) { run.setError(error); }};
}

} // namespace sorvanta
