// One download as the application does it: one_download URL FOLDER. Prints a line of JSON with what it cost beside the
// time: the main thread's processor time, how many changes screens were told of, and by how many MB memory grew.
// download.py runs it.

#include "models/models_settings_view_model.h"

#include <QCoreApplication>
#include <QFile>

#include <cstdio>
#include <ctime>

using namespace sorvanta;

namespace {

double mainThreadSeconds()
{
    timespec time = {};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) / 1e9;
}

/// A figure of /proc/self/status, in MB.
double memory(const QByteArray &name)
{
    QFile status(u"/proc/self/status"_qs);
    if (!status.open(QIODevice::ReadOnly))
        return 0;
    for (const QByteArray &line : status.readAll().split('\n')) {
        if (line.startsWith(name + ':'))
            return line.mid(name.size() + 1).trimmed().split(' ').first().toDouble() / 1024;
    }
    return 0;
}

} // namespace

int main(int argumentCount, char **arguments)
{
    QCoreApplication application(argumentCount, arguments);
    if (argumentCount != 3)
        return 2;
    ModelsSettingsViewModel models(QString::fromLocal8Bit(arguments[2]));
    ModelInfo model = modelCatalogue().last();
    model.downloadURL = QUrl(QString::fromLocal8Bit(arguments[1]));

    int changes = 0;
    QObject::connect(&models, &ModelsSettingsViewModel::statusMapChanged, &models, [&] {
        ++changes;
        if (!std::holds_alternative<ModelStatus::Downloading>(models.status(model)))
            QCoreApplication::quit();
    });
    const double residentBefore = memory("VmRSS");
    const double secondsBefore = mainThreadSeconds();
    models.startDownload(model);
    QCoreApplication::exec();
    std::printf("{\"main_thread_seconds\": %.6f, \"changes\": %d, \"growth\": %.1f}\n",
                mainThreadSeconds() - secondsBefore, changes, memory("VmHWM") - residentBefore);
    return models.localURL(model) ? 0 : 1;
}
