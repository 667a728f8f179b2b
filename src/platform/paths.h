#pragma once

#include <QString>

namespace sorvanta {

/// The text behind the last slash: "talk.wav" of "/music/talk.wav". Slashes at the end do not count.
QString lastPathComponent(const QString &path);

/// The path without its last component: "/music" of "/music/talk.wav", "/" of "/music", and empty text of "music".
/// Nothing is resolved: "/music/.." stands in "/music".
QString parentFolder(const QString &path);

/// The text behind the last point of the last component, without the point; empty if there is none, if it ends the
/// name, or if it begins it (".profile").
QString pathExtension(const QString &path);

} // namespace sorvanta
