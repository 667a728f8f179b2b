#include "platform/file_descriptor.h"

#include <QFile>

#include <cerrno>

#include <fcntl.h>

namespace sorvanta {

QByteArray encodedPath(const QString &path)
{
    return path.contains(QChar(u'\0')) ? QByteArray() : QFile::encodeName(path);
}

QByteArray folderOf(const QByteArray &path)
{
    const qsizetype slash = path.lastIndexOf('/');
    if (slash < 0)
        return ".";
    return slash == 0 ? "/" : path.first(slash);
}

FileDescriptor opened(const QByteArray &path, int flags, mode_t mode)
{
    return FileDescriptor(::open(path.constData(), flags | O_CLOEXEC, mode));
}

bool flushFolder(int folder)
{
    // Some file systems keep no folders that could be flushed; they say EINVAL, and there is nothing to do.
    return ::fsync(folder) == 0 || errno == EINVAL;
}

} // namespace sorvanta
