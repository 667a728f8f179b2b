#include "platform/desktop/file_panels.h"

#include <QFileDialog>
#include <QGuiApplication>
#include <QWindow>

#include <utility>

namespace sorvanta {

namespace {

/// Puts the panel above the window that has the focus, so that the window manager keeps them together.
void showAboveActiveWindow(QFileDialog &panel)
{
    panel.setWindowModality(Qt::ApplicationModal);
    panel.winId(); // makes the window, which has no handle before
    if (QWindow *const window = panel.windowHandle())
        window->setTransientParent(QGuiApplication::focusWindow());
    panel.open();
}

} // namespace

void SystemFilePanels::openFile(const OpenRequest &request, OnChosen onChosen)
{
    QStringList patterns;
    for (const QString &extension : request.extensions)
        patterns << QStringLiteral("*.") + extension;

    auto *const panel = new QFileDialog;
    panel->setAttribute(Qt::WA_DeleteOnClose);
    panel->setAcceptMode(QFileDialog::AcceptOpen);
    panel->setFileMode(QFileDialog::ExistingFile);
    panel->setNameFilter(request.kind + QStringLiteral(" (") + patterns.join(u' ') + QLatin1Char(')'));
    QObject::connect(panel, &QFileDialog::finished, panel, [panel, onChosen = std::move(onChosen)](int result) {
        const QStringList files = panel->selectedFiles();
        if (result == QDialog::Accepted && !files.isEmpty())
            onChosen(files.first());
        else
            onChosen(std::nullopt);
    });
    showAboveActiveWindow(*panel);
}

} // namespace sorvanta
