#pragma once

#include "history/history_list_model.h"

#include <QAbstractListModel>
#include <QByteArray>
#include <QList>
#include <QString>
#include <QtQml/qqml.h>

#include <atomic>
#include <memory>
#include <vector>

namespace sorvanta {

class LowerCaseSearch;

/// The entries of the history that a search text asks for, in the order of the history, with what a row of the browser
/// shows of each. A change is announced as what it is; only where a new search text changes very much, rows are
/// announced as having other contents. Main thread only.
///
/// Of each entry a lower-cased copy is kept, one byte for each ASCII character: half of what the entry itself takes.
/// The copies are made on a worker; a search that comes before them makes those itself that it needs.
class FilteredEntries : public QAbstractListModel {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("held by a screen")
    Q_PROPERTY(bool isEmpty READ isEmpty NOTIFY isEmptyChanged)

public:
    enum Role {
        EntryIdRole = Qt::UserRole,
        TitleRole,
        DateRole, ///< in the short style
        PreviewRole, ///< the beginning of it, if it is very long
        TagsRole, ///< a list of maps with `text` and `systemImage`
    };

    /// @param source the history; outlives this
    explicit FilteredEntries(HistoryListModel &source, QObject *parent = nullptr);
    ~FilteredEntries() override;

    /// Shows those entries whose text, source label or model holds the search text, whatever the case; all of them if
    /// the search text is blank.
    void setSearchText(const QString &searchText);

    int count() const { return static_cast<int>(m_rows.size()); }
    bool isEmpty() const { return m_rows.empty(); }
    const TranscriptionHistoryEntry &entry(int row) const;
    /// The row of the entry with that id, or -1.
    int rowOf(const QString &id) const;
    /// Whether the copies of all entries have been made.
    bool isPrepared() const;

    int rowCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

    Q_SIGNAL void isEmptyChanged();

private:
    using Rows = std::vector<int>;

    /// The copy of an entry, and whether a search that goes on from the present one needs to look at it.
    struct Searched {
        QByteArray form; ///< null while it has not been made
        bool mayMatch = true;
    };
    struct Unprepared;
    struct Prepared;

    bool matches(int sourceRow);
    Rows matchingRows();
    void replaceRows(Rows rows);
    void overwriteRows(Rows rows);
    void prepare();
    void takeForms(int generation, const std::vector<Prepared> &forms);
    void insertRow(int sourceRow);
    void beginRemoval(int sourceRow);
    void endRemoval(int sourceRow);
    void reset();

    HistoryListModel &m_source;
    std::unique_ptr<LowerCaseSearch> m_search; // none while all entries are shown
    Rows m_rows; // of the source, ascending
    std::vector<Searched> m_searched; // for each row of the source
    std::shared_ptr<std::atomic<int>> m_generation; // of the source's rows; a worker stops when it has changed
};

} // namespace sorvanta
