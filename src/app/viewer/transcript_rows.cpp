#include "app/viewer/transcript_rows.h"

#include "platform/unicode_text.h"

#include <algorithm>

namespace sorvanta {

TranscriptRows::TranscriptRows(const TranscriptWindowModel &model, QObject *parent)
    : QAbstractListModel(parent)
    , m_model(model)
    , m_active(model.activeSegmentIndex().value_or(-1))
{
    readTranscriptFrom(0);
    m_count = static_cast<int>(readLines());
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
    // While the end of rows is announced, their lines are gone.
    if (!checkIndex(index, CheckIndexOption::IndexIsValid) || index.row() >= readLines())
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
    if (!m_model.segments().isEmpty())
        return m_model.segments()[index].text;
    const auto next = static_cast<std::size_t>(index) + 1;
    const qsizetype start = m_starts[next - 1];
    const qsizetype end = next < m_starts.size() ? m_starts[next] - 1 : m_end;
    return QStringView(m_model.transcript()).sliced(start, end - start);
}

QString TranscriptRows::times(qsizetype row) const
{
    if (row >= m_model.segments().size())
        return {};
    const TranscriptWindowSegment &segment = m_model.segments()[row];
    return segment.start + QStringLiteral(" → ") + segment.end;
}

/// Finds the lines of the transcript from `position` on, where one begins; those before it are known.
void TranscriptRows::readTranscriptFrom(qsizetype position)
{
    if (!m_model.segments().isEmpty() || m_model.transcript().isEmpty())
        return;
    m_end = m_model.transcript().size();
    forEachLine(QStringView(m_model.transcript()).sliced(position), [this, position](QStringView line) mutable {
        m_starts.push_back(position);
        position += line.size() + 1;
    });
}

qsizetype TranscriptRows::readLines() const
{
    return m_model.segments().isEmpty() ? static_cast<qsizetype>(m_starts.size()) : m_model.segments().size();
}

void TranscriptRows::takeTranscript(qsizetype kept)
{
    if (!m_model.segments().isEmpty()) {
        emit linesChanged(m_count); // none of them, yet the text is another
        return;
    }
    if (kept == 0 || m_starts.empty()) {
        reset();
        return;
    }
    const auto behind = std::upper_bound(m_starts.begin(), m_starts.end(), kept);
    const qsizetype oldEnd = behind == m_starts.end() ? m_end : *behind - 1;
    const auto removed = static_cast<qsizetype>(m_starts.end() - behind) + 1;
    const qsizetype start = *(behind - 1);
    m_starts.erase(behind - 1, m_starts.end());
    const auto first = static_cast<qsizetype>(m_starts.size());
    readTranscriptFrom(start);
    const auto added = static_cast<qsizetype>(m_starts.size()) - first;
    const qsizetype same = oldEnd == kept && line(first).size() == kept - start ? 1 : 0;
    replaceRows(first + same, removed - same, added - same);
}

void TranscriptRows::takeSegments(qsizetype first, qsizetype removed, qsizetype added)
{
    if (first + removed == 0 || m_model.segments().isEmpty()) // lines of the transcript give way, or come back
        reset();
    else
        replaceRows(first, removed, added);
}

/// Announces that the lines from `first` on gave place to others.
void TranscriptRows::replaceRows(qsizetype first, qsizetype removed, qsizetype added)
{
    const int firstRow = static_cast<int>(first);
    const int kept = static_cast<int>(std::min(removed, added));
    if (removed > kept) {
        beginRemoveRows({}, firstRow + kept, static_cast<int>(first + removed) - 1);
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
    m_starts.clear();
    readTranscriptFrom(0);
    m_count = static_cast<int>(readLines());
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
