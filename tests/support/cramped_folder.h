#pragma once

#include <QDir>
#include <QString>

/// Makes a folder below `base` that may be written, but whose path is so long that no file in it can have a name of a
/// few characters. So a file cannot be made there by any user.
inline QString crampedFolder(const QString &base)
{
    constexpr qsizetype length = 4088; // a path has at most 4095 bytes
    constexpr qsizetype longestName = 200;
    QString path = base;
    while (path.size() < length)
        path += u'/' + QString(qMin(longestName, qMax<qsizetype>(1, length - path.size() - 1)), u'd');
    QDir().mkpath(path);
    return path;
}
