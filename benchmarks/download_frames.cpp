// The models page while a model is fetched: download_frames URL FOLDER. A window, drawn in software and shown nowhere,
// is asked for 60 frames a second, for two seconds at rest and then as long as the download takes. Prints a line of
// JSON with the frames a second of both and the longest gap between two frames. download.py runs it.

#include "app/style/look.h"
#include "models/models_settings_view_model.h"
#include "screens/models/models_settings_view.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickWindow>
#include <QTimer>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <memory>

using namespace sorvanta;

namespace {

constexpr std::chrono::milliseconds restTime(2000);
constexpr double frameTime = 1000.0 / 60;

/// Asks a window for its frames and notes when they come.
class FrameCounter {
public:
    explicit FrameCounter(QQuickWindow &window)
    {
        QObject::connect(&window, &QQuickWindow::frameSwapped, &window, [this] { note(); });
        QObject::connect(&m_timer, &QTimer::timeout, &window, [this, &window] {
            // A timer knows whole milliseconds only, so the clock decides.
            if (static_cast<double>(m_clock.nsecsElapsed()) / 1e6 < m_due)
                return;
            m_due += frameTime;
            window.update();
        });
        m_timer.setTimerType(Qt::PreciseTimer);
        m_timer.start(1);
        restart();
    }

    void restart()
    {
        m_clock.start();
        m_due = 0;
        m_last = 0;
        m_longest = 0;
        m_frames = 0;
    }
    double framesPerSecond() const { return m_frames / (static_cast<double>(m_clock.nsecsElapsed()) / 1e9); }
    double longestGap() const { return m_longest; }

private:
    void note()
    {
        const double now = static_cast<double>(m_clock.nsecsElapsed()) / 1e6;
        m_longest = std::max(m_longest, now - m_last);
        m_last = now;
        ++m_frames;
    }

    QTimer m_timer;
    QElapsedTimer m_clock;
    double m_due = 0; // milliseconds, as the next two
    double m_last = 0;
    double m_longest = 0;
    int m_frames = 0;
};

} // namespace

int main(int argumentCount, char **arguments)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("QT_QUICK_BACKEND", "software");
    QApplication application(argumentCount, arguments);
    if (argumentCount != 3)
        return 2;
    applyLook();
    ModelsSettingsViewModel models(QString::fromLocal8Bit(arguments[2]));
    ModelsSettingsView screen(
        {.viewModel = models, .recommendedModelID = u"large-v3-turbo"_qs, .revealFile = [](const QString &) {}});
    ModelInfo model = modelCatalogue().first();
    model.downloadURL = QUrl(QString::fromLocal8Bit(arguments[1]));

    QQmlEngine engine;
    engine.addImportPath(u"qrc:/qt/qml"_qs);
    QQmlComponent component(&engine);
    component.setData("import Sorvanta.Screens\nModelsSettingsPage {}", {});
    QQuickWindow window;
    window.resize(1200, 760);
    const std::unique_ptr<QObject> object(component.createWithInitialProperties(
        {{u"view"_qs, QVariant::fromValue(&screen)}, {u"width"_qs, 1200}, {u"height"_qs, 760}}));
    auto *page = qobject_cast<QQuickItem *>(object.get());
    if (!page) {
        std::fprintf(stderr, "%s\n", qUtf8Printable(component.errorString()));
        return 1;
    }
    page->setParentItem(window.contentItem());
    window.show();

    FrameCounter frames(window);
    double restingFrames = 0;
    double restingGap = 0;
    QTimer::singleShot(restTime / 2, &application, [&frames] { frames.restart(); }); // the first ones are not typical
    QTimer::singleShot(restTime + restTime / 2, &application, [&] {
        restingFrames = frames.framesPerSecond();
        restingGap = frames.longestGap();
        frames.restart();
        models.startDownload(model);
    });
    QObject::connect(&models, &ModelsSettingsViewModel::statusMapChanged, &models, [&models, &model] {
        if (!std::holds_alternative<ModelStatus::Downloading>(models.status(model)))
            QCoreApplication::quit();
    });
    QCoreApplication::exec();
    std::printf("{\"resting_frames\": %.1f, \"resting_gap\": %.1f, \"frames\": %.1f, \"gap\": %.1f}\n", restingFrames,
                restingGap, frames.framesPerSecond(), frames.longestGap());
    return models.localURL(model) ? 0 : 1;
}
