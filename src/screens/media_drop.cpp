#include "screens/media_drop.h"

#include "platform/file_types.h"
#include "platform/paths.h"

#include <QFileInfo>

#include <algorithm>

namespace sorvanta {

namespace {

bool isMediaFormat(const QString &format)
{
    return format.startsWith(QStringLiteral("audio/")) || format.startsWith(QStringLiteral("video/"));
}

} // namespace

bool isMediaFile(const QUrl &url)
{
    if (!url.isLocalFile())
        return false;
    const QString path = url.toLocalFile();
    const QString extension = pathExtension(path);
    return (isAudioExtension(extension) || isMovieExtension(extension)) && !QFileInfo(path).isDir();
}

QString firstMediaFormat(const QStringList &formats)
{
    const auto format = std::find_if(formats.begin(), formats.end(), isMediaFormat);
    return format == formats.end() ? QString() : *format;
}

} // namespace sorvanta
