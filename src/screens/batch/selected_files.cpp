#include "screens/batch/selected_files.h"

#include "screens/batch/file_result.h"

#include <algorithm>

namespace sorvanta {

bool SelectedFiles::add(const QList<QUrl> &urls)
{
    QList<QUrl> added;
    for (const QUrl &url : urls) {
        if (m_known.contains(url))
            continue;
        m_known.insert(url);
        added << url;
    }
    if (added.isEmpty())
        return false;
    const int before = shownCount();
    const int after = static_cast<int>(std::min<qsizetype>(count() + added.size(), mostShown));
    if (after > before) {
        beginInsertRows({}, before, after - 1);
        m_urls << added;
        endInsertRows();
    } else {
        m_urls << added;
    }
    emit filesChanged();
    return true;
}

void SelectedFiles::clear()
{
    if (isEmpty())
        return;
    beginRemoveRows({}, 0, shownCount() - 1);
    m_urls.clear();
    m_known.clear();
    endRemoveRows();
    emit filesChanged();
}

QString SelectedFiles::countText() const
{
    if (isEmpty())
        return u"No files selected"_qs;
    return QString::number(count()) + (count() == 1 ? u" file ready"_qs : u" files ready"_qs);
}

QString SelectedFiles::moreText() const
{
    return count() > mostShown ? u"…and %1 more"_qs.arg(count() - mostShown) : QString();
}

int SelectedFiles::shownCount() const
{
    return static_cast<int>(std::min<qsizetype>(count(), mostShown));
}

int SelectedFiles::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : shownCount();
}

QVariant SelectedFiles::data(const QModelIndex &index, int role) const
{
    const bool isName = role == NameRole || role == Qt::DisplayRole;
    if (!isName || !checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    return oneLineFileName(m_urls[index.row()]);
}

QHash<int, QByteArray> SelectedFiles::roleNames() const
{
    return {{NameRole, "name"}};
}

} // namespace sorvanta
