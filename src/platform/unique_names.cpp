#include "platform/unique_names.h"

#include "platform/folders.h"

#include <QFileInfo>

namespace sorvanta {

QString newDatedName(const QString &prefix, const QDateTime &time)
{
    return prefix + time.toString(u"yyyy-MM-dd_HH-mm"_qs) + u'_' + newUuidText().first(6).toLower();
}

bool isNameTaken(const QString &path)
{
    return QFileInfo::exists(path) || QFileInfo(path).isSymLink();
}

QString freePath(const QString &folder, const QString &name, const QString &extension)
{
    const QString start = folder + u'/' + name;
    const QString end = extension.isEmpty() ? QString() : u'.' + extension;
    QString path = start + end;
    for (int number = 2; isNameTaken(path); ++number)
        path = start + u'-' + QString::number(number) + end;
    return path;
}

} // namespace sorvanta
