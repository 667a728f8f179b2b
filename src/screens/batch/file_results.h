#pragma once

#include "screens/batch/file_result.h"

#include <QAbstractListModel>
#include <QList>
#include <QtQml/qqml.h>

#include <optional>

namespace sorvanta {

/// The results of a batch, one row for each file in the files' order, and which of them is selected. A change is
/// announced for the row and the roles that it concerns, so that a list of thousands goes on as it stood. Main thread
/// only.
class FileResults : public QAbstractListModel {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("held by a screen")
    Q_PROPERTY(int count READ count NOTIFY countChanged)
    Q_PROPERTY(int selectedRow READ selectedRow WRITE selectRow NOTIFY selectionChanged)

public:
    enum Role {
        NameRole = Qt::UserRole, ///< "name", in one line
        StatusWordRole, ///< "statusWord"
        StatusToneRole, ///< "statusTone", a FileTone
        SymbolRole, ///< "symbol", empty for none
        SymbolToneRole, ///< "symbolTone", a FileTone
    };

    using QAbstractListModel::QAbstractListModel;

    const QList<FileResult> &list() const { return m_list; }
    int count() const { return static_cast<int>(m_list.size()); }

    /// Takes new results, all pending, of which the first one is selected. The earlier ones are gone.
    void begin(const QList<QUrl> &files);
    /// Forgets all results; none is selected.
    void clear();

    // Of a row that is not there these change nothing.

    void setStatus(qsizetype row, FileStatus status);
    void setError(qsizetype row, const std::optional<QString> &error);
    /// Takes what the tool has printed since.
    void appendOutput(qsizetype row, QStringView piece, bool hasTranscript, bool hasPlainSegments,
                      bool hasStrippedSegments);

    /// The id of the selected result, or none.
    const std::optional<QUuid> &selectedResultID() const { return m_selectedResultID; }
    void setSelectedResultID(const std::optional<QUuid> &id);
    /// Selects the result of a row that is there.
    void selectRow(int row);

    /// The row of the selected result, or, where its id finds none, the first; -1 without results.
    int selectedRow() const { return m_selectedRow; }
    /// The result of that row, or null. All that shows or exports the selected result goes by this.
    const FileResult *selected() const { return m_selectedRow < 0 ? nullptr : &m_list[m_selectedRow]; }

    int rowCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

Q_SIGNALS:
    void countChanged();
    /// The selected result is another one.
    void selectionChanged();
    /// Status or error of the selected result changed.
    void selectedResultChanged();

private:
    bool isRow(qsizetype row) const { return row >= 0 && row < m_list.size(); }
    int rowOf(const std::optional<QUuid> &id) const;
    void replaceAll(const QList<FileResult> &list);
    void tellOfSelected(qsizetype row);

    QList<FileResult> m_list;
    std::optional<QUuid> m_selectedResultID;
    int m_selectedRow = -1;
};

} // namespace sorvanta
