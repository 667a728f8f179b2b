#include "screens/models/model_rows.h"

#include <QMetaProperty>

#include <utility>

namespace sorvanta {

namespace {

constexpr int firstRole = Qt::UserRole;

const QMetaObject &fields()
{
    return ModelRow::staticMetaObject;
}

} // namespace

ModelRows::ModelRows(QList<ModelRow> rows, QObject *parent)
    : QAbstractListModel(parent)
    , m_rows(std::move(rows))
{
}

void ModelRows::replace(int place, const ModelRow &row)
{
    QList<int> changed;
    for (int field = 0; field < fields().propertyCount(); ++field) {
        const QMetaProperty property = fields().property(field);
        if (property.readOnGadget(&m_rows[place]) != property.readOnGadget(&row))
            changed << firstRole + field;
    }
    if (changed.isEmpty())
        return;
    m_rows[place] = row;
    emit dataChanged(index(place), index(place), changed);
}

int ModelRows::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_rows.size());
}

QVariant ModelRows::data(const QModelIndex &index, int role) const
{
    const int field = role - firstRole;
    if (!index.isValid() || field < 0 || field >= fields().propertyCount())
        return {};
    return fields().property(field).readOnGadget(&m_rows[index.row()]);
}

QHash<int, QByteArray> ModelRows::roleNames() const
{
    QHash<int, QByteArray> names;
    for (int field = 0; field < fields().propertyCount(); ++field)
        names.insert(firstRole + field, fields().property(field).name());
    return names;
}

} // namespace sorvanta
