#include "core/transcript_lines_model.h"

#include "core/transcript_text.h"

#include <algorithm>

namespace sorvanta {

TranscriptLinesModel::TranscriptLinesModel(const LiveTranscript &transcript, QObject *parent)
    : QAbstractListModel(parent)
    , m_transcript(transcript)
    , m_count(static_cast<int>(transcript.lineCount()))
{
}

int TranscriptLinesModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : m_count;
}

QVariant TranscriptLinesModel::data(const QModelIndex &index, int role) const
{
    const bool isText = role == TextRole || role == Qt::DisplayRole;
    if (!isText || !checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    return line(index.row()).toString();
}

QHash<int, QByteArray> TranscriptLinesModel::roleNames() const
{
    return {{TextRole, "text"}};
}

QStringView TranscriptLinesModel::line(qsizetype index) const
{
    const QStringView line = m_transcript.line(index);
    return m_stripDashes ? stripDashMarkers(line) : line;
}

void TranscriptLinesModel::apply(const LiveTranscript::Change &change)
{
    const int first = static_cast<int>(change.first);
    const int removed = static_cast<int>(change.removed);
    const int added = static_cast<int>(change.added);
    const int kept = std::min(removed, added);
    if (removed > kept) {
        beginRemoveRows({}, first + kept, first + removed - 1);
        m_count -= removed - kept;
        endRemoveRows();
    }
    if (kept > 0)
        emit dataChanged(index(first), index(first + kept - 1), {TextRole});
    if (added > kept) {
        beginInsertRows({}, first + kept, first + added - 1);
        m_count += added - kept;
        endInsertRows();
    }
    if (added != removed)
        emit countChanged();
}

void TranscriptLinesModel::reset()
{
    beginResetModel();
    m_count = static_cast<int>(m_transcript.lineCount());
    endResetModel();
    emit countChanged();
}

void TranscriptLinesModel::setStripDashes(bool stripDashes)
{
    if (m_stripDashes == stripDashes)
        return;
    m_stripDashes = stripDashes;
    if (m_count > 0)
        emit dataChanged(index(0), index(m_count - 1), {TextRole});
}

} // namespace sorvanta
