#include "platform/desktop/file_panels.h"

#include <QFileDialog>
#include <QGuiApplication>
#include <QWindow>

#include <utility>

namespace sorvanta {

namespace {

QString nameFilter(const QString &kind, const QStringList &extensions)
{
    QStringList patterns;
    for (const QString &extension : extensions)
        patterns << QStringLiteral("*.") + extension;
    return kind + QStringLiteral(" (") + patterns.join(u' ') + QLatin1Char(')');
}

/// A name as it can be put into the field of a panel, which takes a quotation mark for the end of a name.
QString withoutQuotationMarks(QString name)
{
    return name.replace(u'"', u'\'');
}

QFileDialog *newPanel(QFileDialog::AcceptMode acceptMode, QFileDialog::FileMode fileMode)
{
    auto *const panel = new QFileDialog;
    panel->setAttribute(Qt::WA_DeleteOnClose);
    panel->setAcceptMode(acceptMode);
    panel->setFileMode(fileMode);
    return panel;
}

/// Shows the panel above the window that has the focus, so that the window manager keeps them together.
void showForFiles(QFileDialog *panel, FilePanels::OnFilesChosen onChosen)
{
    QObject::connect(panel, &QFileDialog::finished, panel, [panel, onChosen = std::move(onChosen)](int result) {
        onChosen(result == QDialog::Accepted ? panel->selectedFiles() : QStringList());
    });
    panel->setWindowModality(Qt::ApplicationModal);
    panel->winId(); // makes the window, which has no handle before
    if (QWindow *const window = panel->windowHandle())
        window->setTransientParent(QGuiApplication::focusWindow());
    panel->show(); // open() would make it modal to one window only
}

void show(QFileDialog *panel, FilePanels::OnChosen onChosen)
{
    showForFiles(panel, [onChosen = std::move(onChosen)](const QStringList &paths) {
        onChosen(paths.isEmpty() ? std::nullopt : std::optional(paths.first()));
    });
}

} // namespace

void SystemFilePanels::openFile(const OpenRequest &request, OnChosen onChosen)
{
    QFileDialog *const panel = newPanel(QFileDialog::AcceptOpen, QFileDialog::ExistingFile);
    panel->setNameFilter(nameFilter(request.kind, request.extensions));
    show(panel, std::move(onChosen));
}

void SystemFilePanels::openFiles(const OpenRequest &request, OnFilesChosen onChosen)
{
    QFileDialog *const panel = newPanel(QFileDialog::AcceptOpen, QFileDialog::ExistingFiles);
    panel->setNameFilter(nameFilter(request.kind, request.extensions));
    showForFiles(panel, std::move(onChosen));
}

void SystemFilePanels::saveFile(const SaveRequest &request, OnChosen onChosen)
{
    QFileDialog *const panel = newPanel(QFileDialog::AcceptSave, QFileDialog::AnyFile);
    if (!request.extensions.isEmpty()) {
        panel->setNameFilter(nameFilter(request.extensions.first().toUpper(), request.extensions));
        panel->setDefaultSuffix(request.extensions.first());
    }
    panel->selectFile(withoutQuotationMarks(request.name));
    show(panel, std::move(onChosen));
}

void SystemFilePanels::chooseFolder(const QString &prompt, OnChosen onChosen)
{
    QFileDialog *const panel = newPanel(QFileDialog::AcceptOpen, QFileDialog::Directory);
    panel->setOption(QFileDialog::ShowDirsOnly);
    panel->setLabelText(QFileDialog::Accept, prompt);
    show(panel, std::move(onChosen));
}

} // namespace sorvanta
