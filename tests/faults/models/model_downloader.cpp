#include "models/models_settings_view_model.h"

#include <QCoreApplication>
#include <QSocketNotifier>

#include <cstdio>

#include <unistd.h>

using namespace sorvanta;

/// Downloads a model from the address that the second argument names, into the models folder below the one that the
/// first names. Prints how many bytes have come, one number a line; quits when its standard input has something to
/// read, or comes to its end, as an application does whose window is closed.
int main(int argumentCount, char **arguments)
{
    QCoreApplication application(argumentCount, arguments);
    if (argumentCount != 3)
        return 2;
    ModelsSettingsViewModel models(QString::fromLocal8Bit(arguments[1]));
    ModelInfo model = modelCatalogue().last();
    model.downloadURL = QUrl(QString::fromLocal8Bit(arguments[2]));
    QObject::connect(&models, &ModelsSettingsViewModel::statusMapChanged, &models, [&] {
        const Status status = models.status(model);
        if (const auto *downloading = std::get_if<ModelStatus::Downloading>(&status)) {
            std::printf("%lld\n", static_cast<long long>(downloading->state.bytesReceived));
            std::fflush(stdout);
        }
    });
    QSocketNotifier input(STDIN_FILENO, QSocketNotifier::Read);
    QObject::connect(&input, &QSocketNotifier::activated, &application, &QCoreApplication::quit);
    models.startDownload(model);
    return QCoreApplication::exec();
}
