#include "core/log_lines_model.h"

#include "platform/unicode_text.h"

#include <utility>

namespace sorvanta {

LogLinesModel::LogLinesModel(std::function<const QString &()> log, QObject *parent)
    : QAbstractListModel(parent)
    , m_log(std::move(log))
{
}

int LogLinesModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : m_count;
}

QVariant LogLinesModel::data(const QModelIndex &index, int role) const
{
    const bool isText = role == TextRole || role == Qt::DisplayRole;
    if (!isText || !checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    const auto row = static_cast<std::size_t>(index.row());
    const qsizetype start = m_starts[row];
    const qsizetype end = row + 1 < m_starts.size() ? m_starts[row + 1] : m_end;
    // The log may have been taken away since it was read.
    QStringView text = QStringView(m_log()).mid(start, end - start);
    while (!text.isEmpty() && isNewline(text.back().unicode()))
        text.chop(1);
    return text.toString();
}

QHash<int, QByteArray> LogLinesModel::roleNames() const
{
    return {{TextRole, "text"}};
}

void LogLinesModel::update()
{
    if (m_log().size() < m_end) {
        reset();
        return;
    }
    if (m_log().size() == m_end)
        return;
    const int before = m_count;
    read();
    const int now = shownRows();
    if (before > 0)
        emit dataChanged(index(before - 1), index(before - 1), {TextRole});
    if (now == before)
        return;
    beginInsertRows({}, before, now - 1);
    m_count = now;
    endInsertRows();
    emit countChanged();
}

void LogLinesModel::reset()
{
    beginResetModel();
    forget();
    read();
    m_count = shownRows();
    endResetModel();
    emit countChanged();
}

void LogLinesModel::clear()
{
    beginResetModel();
    forget();
    m_count = 0;
    endResetModel();
    emit countChanged();
}

void LogLinesModel::forget()
{
    m_starts.assign(1, 0);
    m_end = 0;
}

void LogLinesModel::read()
{
    const QStringView log = m_log();
    for (qsizetype i = m_end; i < log.size(); ++i) {
        if (isNewline(log[i].unicode())) {
            const bool isSecondOfPair = log[i] == u'\n' && i > 0 && log[i - 1] == u'\r';
            if (isSecondOfPair)
                m_starts.back() = i + 1;
            else
                m_starts.push_back(i + 1);
        } else if (i - m_starts.back() >= longestRow && !log[i].isLowSurrogate()) {
            m_starts.push_back(i);
        }
    }
    m_end = log.size();
}

int LogLinesModel::shownRows() const
{
    return static_cast<int>(m_starts.size()) - (m_starts.back() == m_end ? 1 : 0);
}

} // namespace sorvanta
