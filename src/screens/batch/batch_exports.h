#pragma once

#include "export/batch_export.h"
#include "export/export_delivery.h"
#include "export/export_menu.h"
#include "export/export_names.h"
#include "export/transcript_export.h"
#include "screens/batch/file_results.h"

#include <QObject>

#include <functional>

namespace sorvanta {

/// The exports of the batch screen, of the selected result and of all of them, with their menus. Main thread only.
class BatchExports {
public:
    struct Settings {
        const FileResults &results; ///< outlives the exports
        FilePanels &panels; ///< outlives the exports
        std::function<bool()> stripDashes;
        std::function<qsizetype()> selectedFileCount;
        ExportMessages messages;
    };

    explicit BatchExports(const Settings &settings);

    /// "Export", for the selected result.
    ExportMenu *menu() const { return m_menu; }
    /// "Export All", above the list of the results.
    ExportMenu *exportAllMenu() const { return m_exportAllMenu; }

    /// Enables what the results allow: to be called when they, their selection or the option that strips dashes change.
    void updateMenus() const;

private:
    ExportInput selectedInput(ExportFormat format) const;
    BatchExportSource source(qsizetype row) const;
    QString defaultName(const QString &extension, const FileResult *result) const;

    const Settings m_settings;
    const ExportNaming m_naming;
    ExportDelivery m_delivery;
    TranscriptExport m_export;
    BatchExport m_exportAll;
    QObject m_owner;
    ExportMenu *m_menu;
    ExportMenu *m_exportAllMenu;
};

} // namespace sorvanta
