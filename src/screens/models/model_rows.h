#pragma once

#include "screens/models/model_row.h"

#include <QAbstractListModel>
#include <QList>
#include <QtQml/qqml.h>

namespace sorvanta {

/// The rows of the models, each field of ModelRow a role of the same name. A change is announced for the row and the
/// fields that it concerns, so that the view of a row lives through all of its states. Main thread only.
class ModelRows : public QAbstractListModel {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("held by a screen")

public:
    /// @param rows whose number does not change later
    explicit ModelRows(QList<ModelRow> rows, QObject *parent = nullptr);

    const QList<ModelRow> &rows() const { return m_rows; }
    /// Shows `row` in that place, and says nothing if it is shown there already.
    void replace(int place, const ModelRow &row);

    int rowCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

private:
    QList<ModelRow> m_rows;
};

} // namespace sorvanta
