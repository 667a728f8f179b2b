#pragma once

#include <QString>
#include <QUrl>

namespace sorvanta {

/// Puts `text` on the general pasteboard as plain text. Main thread only.
void copyToPasteboard(const QString &text);

/// Opens the address in the user's browser, or a mail address in the user's mail program. Main thread only.
void openAddress(const QUrl &address);

} // namespace sorvanta
