#include "screens/batch/file_results.h"

#include <algorithm>

namespace sorvanta {

void FileResults::begin(const QList<QUrl> &files)
{
    QList<FileResult> list;
    list.reserve(files.size());
    for (const QUrl &file : files)
        list << FileResult{.id = QUuid::createUuid(), .url = file, .output = {}, .error = {}};
    replaceAll(list);
}

void FileResults::clear()
{
    if (!m_list.isEmpty())
        replaceAll({});
}

void FileResults::replaceAll(const QList<FileResult> &list)
{
    beginResetModel();
    m_list = list;
    m_selectedResultID = list.isEmpty() ? std::nullopt : std::optional(list.first().id);
    m_selectedRow = rowOf(m_selectedResultID);
    endResetModel();
    emit countChanged();
    emit selectionChanged();
}

void FileResults::setStatus(qsizetype row, FileStatus status)
{
    if (!isRow(row) || m_list[row].status == status)
        return;
    m_list[row].status = status;
    const QModelIndex changed = index(static_cast<int>(row));
    emit dataChanged(changed, changed, {StatusWordRole, StatusToneRole, SymbolRole, SymbolToneRole});
    tellOfSelected(row);
}

void FileResults::setError(qsizetype row, const std::optional<QString> &error)
{
    if (!isRow(row) || m_list[row].error == error)
        return;
    m_list[row].error = error;
    tellOfSelected(row);
}

void FileResults::appendOutput(qsizetype row, QStringView piece, bool hasTranscript, bool hasPlainSegments,
                               bool hasStrippedSegments)
{
    if (!isRow(row))
        return;
    FileResult &result = m_list[row];
    result.output += piece.toUtf8();
    result.hasTranscript = hasTranscript;
    result.hasPlainSegments = hasPlainSegments;
    result.hasStrippedSegments = hasStrippedSegments;
}

void FileResults::setSelectedResultID(const std::optional<QUuid> &id)
{
    if (m_selectedResultID == id)
        return;
    m_selectedResultID = id;
    m_selectedRow = rowOf(id);
    emit selectionChanged();
}

void FileResults::selectRow(int row)
{
    if (isRow(row))
        setSelectedResultID(m_list[row].id);
}

int FileResults::rowOf(const std::optional<QUuid> &id) const
{
    const auto found =
        std::find_if(m_list.begin(), m_list.end(), [&id](const FileResult &result) { return result.id == id; });
    if (found != m_list.end())
        return static_cast<int>(found - m_list.begin());
    return m_list.isEmpty() ? -1 : 0;
}

void FileResults::tellOfSelected(qsizetype row)
{
    if (row == m_selectedRow)
        emit selectedResultChanged();
}

int FileResults::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : count();
}

QVariant FileResults::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    const FileResult &result = m_list[index.row()];
    switch (role) {
    case Qt::DisplayRole:
    case NameRole:
        return oneLineFileName(result.url);
    case StatusWordRole:
        return lookOf(result.status).word;
    case StatusToneRole:
        return lookOf(result.status).tone;
    case SymbolRole:
        return lookOf(result.status).symbol;
    case SymbolToneRole:
        return lookOf(result.status).symbolTone;
    default:
        return {};
    }
}

QHash<int, QByteArray> FileResults::roleNames() const
{
    return {{NameRole, "name"},
            {StatusWordRole, "statusWord"},
            {StatusToneRole, "statusTone"},
            {SymbolRole, "symbol"},
            {SymbolToneRole, "symbolTone"}};
}

} // namespace sorvanta
