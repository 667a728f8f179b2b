#pragma once

#include "export/export_delivery.h"
#include "export/export_input.h"

#include <QByteArray>
#include <QList>
#include <QObject>
#include <QString>

#include <functional>

namespace sorvanta {

/// One file that an export of all results writes.
struct BatchExportItem {
    QString fileName; ///< as proposed, with its extension
    QByteArray data;

    bool operator==(const BatchExportItem &) const = default;
};

/// One result of a batch, as an export of all takes it.
struct BatchExportSource {
    QString path; ///< of the file that was transcribed
    ExportInput input; ///< text and timed lines as they are shown
};

/// Writes one file for each result of a batch into a folder that the user chooses. Main thread only.
class BatchExport : public QObject {
public:
    struct Settings {
        // All results in the order of their list. There may be thousands, and the texts of one at a time are held.
        std::function<qsizetype()> sourceCount;
        std::function<BatchExportSource(qsizetype index)> source;
        FilePanels &panels; ///< outlives the export
        std::function<QString(const QString &extension, const QString &path)> defaultName; ///< of one result's file
        ExportMessages messages;
    };

    explicit BatchExport(Settings settings, QObject *parent = nullptr);

    /// Renders all results, asks for a folder, and writes; results without content are passed over. At a failure what
    /// has been written stays.
    void exportAll(ExportFormat format);

private:
    QList<BatchExportItem> items(ExportFormat format) const;
    void write(const QList<BatchExportItem> &items, const QString &folder, const QString &label);
    void fail(const QString &label, const QString &description);

    Settings m_settings;
};

} // namespace sorvanta
