// One run of what the window holds, without the window. The arguments are steps:
//   state           prints one line: whether the policies are accepted, the selected row, whether there are screens
//   accept          accepts the policies
//   select ROW      selects a row of the sidebar, -1 for none
//   language ROW    picks a language on the file screen
//   language?       prints the language of the file screen
//   models?         prints the models that the four screens that transcribe have chosen
//   signals         prints how often acceptance and selection were announced so far
//   vanish          ends at once, without any tidying up
//   quit            quits as the button does, within a running application

#include "app/content_view.h"
#include "support/fake_file_panels.h"

#include <QGuiApplication>
#include <QSettings>
#include <QTimer>

#include <cstdlib>
#include <iostream>

using namespace sorvanta;

namespace {

void printState(const ContentView &content)
{
    std::cout << (content.hasAcceptedPolicies() ? "accepted" : "not accepted") << ", row " << content.selectedIndex()
              << ", " << (content.detail() ? "screens" : "no screens") << std::endl;
}

template<typename Screen>
QString chosenModel(Screen *screen)
{
    return screen->model()->selectedModelID().value_or(QStringLiteral("none"));
}

void printModels(DetailView &detail)
{
    const QStringList chosen{chosenModel(detail.fileScreen()), chosenModel(detail.microphoneScreen()),
                             chosenModel(detail.meetingScreen()), chosenModel(detail.batchScreen())};
    std::cout << chosen.join(u' ').toStdString() << std::endl;
}

} // namespace

int main(int argumentCount, char **arguments)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication application(argumentCount, arguments);
    FakeFilePanels panels;
    ContentView content(panels, QStringLiteral("/nowhere"));
    int accepted = 0;
    int selected = 0;
    QObject::connect(&content, &ContentView::hasAcceptedPoliciesChanged, [&] { ++accepted; });
    QObject::connect(&content, &ContentView::selectedItemChanged, [&] { ++selected; });

    const QStringList steps = QGuiApplication::arguments().sliced(1);
    for (qsizetype i = 0; i < steps.size(); ++i) {
        const QString &step = steps[i];
        if (step == QStringLiteral("state"))
            printState(content);
        else if (step == QStringLiteral("accept"))
            content.acceptPolicies();
        else if (step == QStringLiteral("select"))
            content.selectIndex(steps[++i].toInt());
        else if (step == QStringLiteral("language"))
            content.detail()->fileScreen()->language()->choose(steps[++i].toInt());
        else if (step == QStringLiteral("language?"))
            std::cout << content.detail()->fileScreen()->language()->language().toStdString() << std::endl;
        else if (step == QStringLiteral("models?"))
            printModels(*content.detail());
        else if (step == QStringLiteral("signals"))
            std::cout << accepted << " " << selected << std::endl;
        else if (step == QStringLiteral("vanish"))
            std::_Exit(0);
        else if (step == QStringLiteral("quit")) {
            QTimer::singleShot(0, &application, [&content] { content.quit(); });
            return QGuiApplication::exec();
        } else
            return 2;
    }
    return 0;
}
