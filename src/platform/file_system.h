#pragma once

#include "platform/file_access.h"

#include <QByteArray>
#include <QString>

namespace sorvanta {

// Blocking work with files. Every failure is thrown as an Error of file_errors.h. What is made here is private to
// the user, folders (0700) always and files where nothing else is asked for. A path that holds U+0000 names nothing.

/// Whether something lies at `path`, whatever it is; a symbolic link counts if its target does.
bool itemExists(const QString &path);

/// Whether nothing lies at `path`, for certain: it is neither missing nor there if the system cannot look.
bool itemIsMissing(const QString &path);

/// Whether the same thing lies at both paths, under whatever names.
bool isSameItem(const QString &path, const QString &other);

/// All bytes of the file at `path`. A file for which memory does not suffice is a failure like any other.
QByteArray readFile(const QString &path);

/// Puts a file with `bytes` at `path`. Whoever looks at `path` at any moment, also after a loss of power, finds the
/// old file or the new one, whole; once this returns, it is the new one, on disk. After a failure the old file
/// stands as it was and nothing else lies beside it; only if the very last step fails, the flushing of the folder, the
/// new file is there already, but may not outlast a loss of power. A symbolic link stays one, and what it leads to is
/// replaced, or made where it is missing.
void writeFileAtomically(const QString &path, QByteArrayView bytes, FileAccess access = FileAccess::Private);

/// Copies the file at `source` to `destination`, where nothing may lie, and flushes it to disk; memory does not grow
/// with the file, and file systems that can do so let both share their blocks. The permissions of the source do not
/// count. After a failure nothing of the copy is left.
void copyFile(const QString &source, const QString &destination, FileAccess access = FileAccess::Private);

/// Copies the file at `source` to `destination`, where something may lie: it is replaced as writeFileAtomically()
/// replaces a file. Memory does not grow with the file.
void replaceByCopy(const QString &source, const QString &destination, FileAccess access = FileAccess::Private);

/// Makes the folder at `path` and those above it that are missing.
void makeFolder(const QString &path);

/// Gives the item at `source` the path `destination` on the same volume, at one go; a file that lies there is replaced.
/// What is given its name has outlasted a loss of power if it was flushed before.
void moveItem(const QString &source, const QString &destination);

/// Removes the file, the symbolic link or the empty folder at `path`. A folder that holds something is a failure: no
/// path, wherever it was read, makes whole trees vanish.
void removeItem(const QString &path);

} // namespace sorvanta
