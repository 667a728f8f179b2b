#pragma once

#include "export/export_actions.h"
#include "export/export_delivery.h"
#include "export/export_input.h"

#include <functional>
#include <optional>

namespace sorvanta {

/// The exports of a transcription screen: what is shown at the moment becomes a file. Where a format has no content for
/// it, the save item of a format with times says so in the screen's error, and nothing else happens.
class TranscriptExport : public ExportActions {
public:
    struct Settings {
        std::function<ExportInput(ExportFormat)> input; ///< what is shown, as the format takes it
        QString nothingForCsv; ///< the error of a CSV without content
        ExportMessages messages;
    };

    /// @param delivery outlives this
    TranscriptExport(Settings settings, ExportDelivery &delivery);

    void save(ExportFormat format) override;
    void download(ExportFormat format) override;

private:
    Settings m_settings;
    ExportDelivery &m_delivery;
};

/// The error of a save item whose format needs timed lines: "No timestamped transcript available for SRT."
QString noTimestampsMessage(ExportFormat format);

} // namespace sorvanta
