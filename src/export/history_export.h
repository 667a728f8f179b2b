#pragma once

#include "export/export_actions.h"
#include "export/export_delivery.h"
#include "history/transcription_history_entry.h"

#include <functional>
#include <optional>

namespace sorvanta {

/// The exports of the history's selected entry. Stored files are copied as they stand; where a format has no content,
/// nothing happens.
class HistoryExport : public ExportActions {
public:
    using Entry = std::function<std::optional<TranscriptionHistoryEntry>()>;

    /// @param entry tells the selected one
    /// @param delivery outlives this
    HistoryExport(Entry entry, ExportDelivery &delivery);

    void save(ExportFormat format) override;
    void download(ExportFormat format) override;

private:
    std::optional<DeliveryContent> content(ExportFormat format) const;

    Entry m_entry;
    ExportDelivery &m_delivery;
};

/// Whether the entry has something to export: its stored text, or a text that is not blank.
bool canExport(const TranscriptionHistoryEntry &entry);

} // namespace sorvanta
