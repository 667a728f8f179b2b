#include "platform/unique_names.h"

#include "platform/folders.h"

#include <QFileInfo>

namespace sorvanta {

QString newDatedName(const QString &prefix, const QDateTime &time)
{
    return prefix + time.toString(u"yyyy-MM-dd_HH-mm"_qs) + u'_' + newUuidText().first(6).toLower();
}

QString freePath(const QString &folder, const QString &name, const QString &extension)
{
    const auto isTaken = [](const QString &path) { return QFileInfo::exists(path) || QFileInfo(path).isSymLink(); };
    QString path = folder + u'/' + name + u'.' + extension;
    for (int number = 2; isTaken(path); ++number)
        path = folder + u'/' + name + u'-' + QString::number(number) + u'.' + extension;
    return path;
}

} // namespace sorvanta
