#include "app/viewer/transcript_rows.h"

#include <algorithm>

namespace sorvanta {

TranscriptRows::TranscriptRows(const TranscriptWindowModel &model, QObject *parent)
    : QAbstractListModel(parent)
    , m_model(model)
    , m_active(model.activeSegmentIndex().value_or(-1))
{
    readTranscript();
    connect(&model, &TranscriptWindowModel::transcriptChanged, this, &TranscriptRows::takeTranscript);
    connect(&model, &TranscriptWindowModel::segmentsChanged, this, &TranscriptRows::takeSegments);
    connect(&model, &TranscriptWindowModel::activeSegmentIndexChanged, this, &TranscriptRows::moveActive);
}

int TranscriptRows::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : m_count;
}

QVariant TranscriptRows::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    switch (role) {
    case Qt::DisplayRole:
    case TextRole:
        return line(index.row()).toString();
    case TimesRole:
        return times(index.row());
    case IsActiveRole:
        return index.row() == m_active;
    default:
        return {};
    }
}

QHash<int, QByteArray> TranscriptRows::roleNames() const
{
    return {{TextRole, "text"}, {TimesRole, "times"}, {IsActiveRole, "isActive"}};
}

QStringView TranscriptRows::line(qsizetype index) const
{
    return m_model.segments().isEmpty() ? m_lines.line(index) : QStringView(m_model.segments()[index].text);
}

QString TranscriptRows::times(qsizetype row) const
{
    if (row >= m_model.segments().size())
        return {};
    const TranscriptWindowSegment &segment = m_model.segments()[row];
    return segment.start + QStringLiteral(" → ") + segment.end;
}

void TranscriptRows::readTranscript()
{
    const bool isShown = m_model.segments().isEmpty() && !m_model.transcript().isEmpty();
    if (isShown)
        m_lines.setText(m_model.transcript());
    else
        m_lines.setLines({});
    m_count = static_cast<int>(m_model.segments().isEmpty() ? m_lines.lineCount() : m_model.segments().size());
}

void TranscriptRows::takeTranscript()
{
    if (m_model.segments().isEmpty())
        reset();
    else
        emit linesChanged(m_count); // none of them, yet the text is another
}

void TranscriptRows::takeSegments(qsizetype first, qsizetype removed, qsizetype added)
{
    const qsizetype before = first + removed;
    if (before == 0 || m_model.segments().isEmpty()) { // lines of the transcript give way to segments, or come back
        reset();
        return;
    }
    const int firstRow = static_cast<int>(first);
    const int kept = static_cast<int>(std::min(removed, added));
    if (removed > kept) {
        beginRemoveRows({}, firstRow + kept, static_cast<int>(before) - 1);
        m_count = firstRow + kept;
        endRemoveRows();
    }
    if (kept > 0)
        emit dataChanged(index(firstRow), index(firstRow + kept - 1), {TextRole, TimesRole});
    if (added > kept) {
        beginInsertRows({}, firstRow + kept, static_cast<int>(first + added) - 1);
        m_count = static_cast<int>(first + added);
        endInsertRows();
    }
    if (added != removed)
        emit countChanged();
    emit linesChanged(first);
}

void TranscriptRows::reset()
{
    beginResetModel();
    readTranscript();
    endResetModel();
    emit countChanged();
    emit linesChanged(0);
}

void TranscriptRows::moveActive()
{
    const int before = m_active;
    m_active = m_model.activeSegmentIndex().value_or(-1);
    for (const int row : {before, m_active}) {
        if (row >= 0 && row < m_count)
            emit dataChanged(index(row), index(row), {IsActiveRole});
    }
}

} // namespace sorvanta
