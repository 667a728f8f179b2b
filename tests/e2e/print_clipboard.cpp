// Prints the text that lies on the clipboard of the desktop.

#include <QClipboard>
#include <QGuiApplication>

#include <cstdio>

int main(int argumentCount, char **arguments)
{
    QGuiApplication application(argumentCount, arguments);
    std::fputs(QGuiApplication::clipboard()->text().toUtf8().constData(), stdout);
    return 0;
}
