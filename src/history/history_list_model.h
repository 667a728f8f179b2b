#pragma once

#include "history/transcription_history_entry.h"

#include <QAbstractListModel>
#include <QList>

namespace sorvanta {

/// The list of the history in display order. Each change is announced as what it is, so that a view of many rows is
/// not made anew for one. Owned by the store, which alone changes it; main thread only.
class HistoryListModel : public QAbstractListModel {
    Q_OBJECT

public:
    enum Role {
        EntryRole = Qt::UserRole ///< the whole entry, named "entry"
    };

    using QAbstractListModel::QAbstractListModel;

    const QList<TranscriptionHistoryEntry> &entries() const { return m_entries; }

    int rowCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

    void insertFirst(TranscriptionHistoryEntry entry);
    /// Removes the entry in that row. @return it
    TranscriptionHistoryEntry takeAt(qsizetype row);
    /// Takes another list. Nothing is announced if it is the same.
    void replaceAll(QList<TranscriptionHistoryEntry> entries);

private:
    QList<TranscriptionHistoryEntry> m_entries;
};

} // namespace sorvanta
