#include "platform/desktop/desktop.h"

#include <QClipboard>
#include <QDesktopServices>
#include <QGuiApplication>

namespace sorvanta {

void copyToPasteboard(const QString &text)
{
    QGuiApplication::clipboard()->setText(text);
}

void openAddress(const QUrl &address)
{
    QDesktopServices::openUrl(address);
}

} // namespace sorvanta
