#include "platform/paths.h"

namespace sorvanta {

namespace {

QStringView withoutSlashesAtTheEnd(QStringView path)
{
    while (path.size() > 1 && path.endsWith(u'/'))
        path.chop(1);
    return path;
}

} // namespace

QString lastPathComponent(const QString &path)
{
    const QStringView trimmed = withoutSlashesAtTheEnd(path);
    if (trimmed == u"/")
        return trimmed.toString();
    return trimmed.sliced(trimmed.lastIndexOf(u'/') + 1).toString();
}

QString parentFolder(const QString &path)
{
    const QStringView trimmed = withoutSlashesAtTheEnd(path);
    const qsizetype slash = trimmed.lastIndexOf(u'/');
    if (slash < 0)
        return {};
    return slash == 0 ? u"/"_qs : trimmed.first(slash).toString();
}

QString pathExtension(const QString &path)
{
    const QString name = lastPathComponent(path);
    const qsizetype point = name.lastIndexOf(u'.');
    return point > 0 ? name.sliced(point + 1) : QString();
}

} // namespace sorvanta
