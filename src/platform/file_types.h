#pragma once

#include <QString>
#include <QStringList>

namespace sorvanta {

// What a file holds by its name alone: a fixed table, the same on every machine. Nothing is opened.

/// Whether files with this extension are audio. Upper and lower case are the same; an empty text is no extension.
bool isAudioExtension(const QString &extension);

/// Whether files with this extension are movies. "mp4" is one, even when such a file holds sound only.
bool isMovieExtension(const QString &extension);

/// The extensions of all audio files and movies in lower case, for the filter of an open panel.
QStringList mediaExtensions();

} // namespace sorvanta
