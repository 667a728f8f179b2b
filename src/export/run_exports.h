#pragma once

#include "core/transcription_run.h"
#include "export/export_delivery.h"
#include "export/export_menu.h"
#include "export/export_names.h"
#include "export/transcript_export.h"

#include <functional>
#include <optional>

namespace sorvanta {

/// The exports of a screen that shows the transcript of one run, with their menu, which follows the run. The messages
/// go to the run's status and error. Main thread only.
class RunExports {
public:
    struct Settings {
        TranscriptionRun &run; ///< outlives the exports
        FilePanels &panels; ///< outlives the exports
        ExportNaming naming;
        std::function<std::optional<QString>()> source; ///< the path of what was transcribed, or none
    };

    explicit RunExports(const Settings &settings);

    ExportMenu *menu() const { return m_menu; }

private:
    ExportDelivery m_delivery;
    TranscriptExport m_export;
    QObject m_owner;
    ExportMenu *m_menu;
};

/// The messages of a screen's exports go to the status and the error of its run.
/// @param run outlives them
ExportMessages messagesOf(RunState &run);

} // namespace sorvanta
