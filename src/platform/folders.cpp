#include "platform/folders.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>
#include <QUuid>

namespace sorvanta {

std::optional<QString> applicationSupportFolder()
{
    const QString folder = QDir::cleanPath(QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation));
    if (folder.isEmpty())
        return std::nullopt;
    // A relative XDG_DATA_HOME does not count.
    return QDir::isAbsolutePath(folder) ? folder : QDir::homePath() + QStringLiteral("/.local/share");
}

std::optional<QString> downloadsFolder()
{
    const QString folder = QStandardPaths::writableLocation(QStandardPaths::DownloadLocation);
    return QFileInfo(folder).isDir() ? std::optional(QDir::cleanPath(folder)) : std::nullopt;
}

QString temporaryFolder()
{
    const QFileInfo folder(QDir::tempPath());
    return folder.isDir() && folder.isWritable() ? folder.filePath() : QStringLiteral("/tmp");
}

QString resourceFolder()
{
    return QDir::cleanPath(QCoreApplication::applicationDirPath() + QStringLiteral("/../lib/sorvanta"));
}

QString newTemporaryPath(const QString &prefix, const QString &extension)
{
    const QString suffix = extension.isEmpty() ? QString() : QLatin1Char('.') + extension;
    return temporaryFolder() + QLatin1Char('/') + prefix + newUuidText() + suffix;
}

QString newUuidText()
{
    return QUuid::createUuid().toString(QUuid::WithoutBraces).toUpper();
}

} // namespace sorvanta
