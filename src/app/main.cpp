#include "app/content_view.h"
#include "app/style/look.h"
#include "platform/desktop/file_panels.h"
#include "platform/desktop/single_instance.h"
#include "platform/folders.h"
#include "platform/termination.h"

#include <QApplication>
#include <QIcon>
#include <QQmlApplicationEngine>
#include <QWindow>
#include <QtQml/qqmlextensionplugin.h>

#include <csignal>

Q_IMPORT_QML_PLUGIN(Sorvanta_StylePlugin)
Q_IMPORT_QML_PLUGIN(Sorvanta_ScreensPlugin)
Q_IMPORT_QML_PLUGIN(Sorvanta_AppPlugin)

using namespace sorvanta;

namespace {

void bringToFront(QWindow *window)
{
    window->setWindowStates(window->windowStates() & ~Qt::WindowMinimized);
    window->raise();
    window->requestActivate();
}

} // namespace

int main(int argumentCount, char **arguments)
{
    // What the engine prints goes to standard output, and a reader who leaves must not end the application.
    std::signal(SIGPIPE, SIG_IGN);

    QApplication application(argumentCount, arguments);
    QApplication::setOrganizationName(QStringLiteral("Sorvanta"));
    QApplication::setApplicationName(QStringLiteral("Sorvanta"));
    QApplication::setDesktopFileName(QStringLiteral("sorvanta"));
    const SingleInstance instance;
    if (instance.isSecond())
        return 0;
    quitOnTermination();
    applyLook();

    // Declared before the engine: the views look at these until the very end.
    SystemFilePanels panels;
    ContentView content(panels, resourceFolder());
    QQmlApplicationEngine engine;
    engine.addImportPath(QStringLiteral("qrc:/qt/qml"));
    engine.setInitialProperties({{QStringLiteral("content"), QVariant::fromValue(&content)}});
    engine.load(QUrl(QStringLiteral("qrc:/qt/qml/Sorvanta/App/Main.qml")));
    if (engine.rootObjects().isEmpty())
        return 1;
    auto *const window = qobject_cast<QWindow *>(engine.rootObjects().constFirst());
    QObject::connect(&instance, &SingleInstance::activated, window, [window] { bringToFront(window); });
    return QApplication::exec();
}
