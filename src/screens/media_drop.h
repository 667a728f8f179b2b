#pragma once

#include <QString>
#include <QStringList>
#include <QUrl>

namespace sorvanta {

// What a screen can transcribe of what is dropped on it.

/// Whether this is an audio or movie file of this machine, by its name; a folder is none.
bool isMediaFile(const QUrl &url);

/// The first of these formats (media types) whose data is audio or a movie; empty if none is.
QString firstMediaFormat(const QStringList &formats);

} // namespace sorvanta
