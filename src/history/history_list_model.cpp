#include "history/history_list_model.h"

#include <utility>

namespace sorvanta {

int HistoryListModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_entries.size());
}

QVariant HistoryListModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid() || role != EntryRole)
        return {};
    return QVariant::fromValue(m_entries[index.row()]);
}

QHash<int, QByteArray> HistoryListModel::roleNames() const
{
    return {{EntryRole, "entry"}};
}

void HistoryListModel::insertFirst(TranscriptionHistoryEntry entry)
{
    beginInsertRows({}, 0, 0);
    m_entries.prepend(std::move(entry));
    endInsertRows();
}

TranscriptionHistoryEntry HistoryListModel::takeAt(qsizetype row)
{
    beginRemoveRows({}, static_cast<int>(row), static_cast<int>(row));
    TranscriptionHistoryEntry entry = m_entries.takeAt(row);
    endRemoveRows();
    return entry;
}

void HistoryListModel::replaceAll(QList<TranscriptionHistoryEntry> entries)
{
    if (entries == m_entries)
        return;
    beginResetModel();
    m_entries = std::move(entries);
    endResetModel();
}

} // namespace sorvanta
