#include "platform/main_queue.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QMetaObject>
#include <QPointer>
#include <QThread>
#include <QTimer>

#include <atomic>
#include <deque>
#include <utility>

namespace sorvanta {

namespace {

std::atomic<bool> hasBegunToQuit = false;

void watchQuitting()
{
    QObject::connect(QCoreApplication::instance(), &QCoreApplication::aboutToQuit, [] { hasBegunToQuit = true; });
}
Q_COREAPP_STARTUP_FUNCTION(watchQuitting)

/// Runs what was posted, in order, but not for longer than a moment at a stretch. Qt goes on with posted events as long
/// as there are any, and a worker that posts faster than the work is done would keep windows and timers waiting.
class MainQueue : public QObject {
public:
    /// The one of the application, which goes with it. Main thread only.
    static MainQueue &instance()
    {
        static QPointer<MainQueue> queue;
        if (!queue)
            queue = new MainQueue(QCoreApplication::instance());
        return *queue;
    }

    void take(std::function<void()> work)
    {
        m_waiting.push_back(std::move(work));
        if (!m_isRoundComing)
            beginStretch();
        runStretch();
    }

private:
    using QObject::QObject;

    static constexpr qint64 longestStretch = 8; // milliseconds: half a frame

    /// A timer of no time ends when the event loop has come round.
    void beginStretch()
    {
        m_stretch.start();
        m_isRoundComing = true;
        QTimer::singleShot(0, this, [this] {
            m_isRoundComing = false;
            if (m_waiting.empty())
                return;
            beginStretch();
            runStretch();
        });
    }

    void runStretch()
    {
        while (!m_waiting.empty() && m_stretch.elapsed() < longestStretch) {
            // Taken out first: it may have an event loop of its own, which goes on with the rest.
            const std::function<void()> work = std::move(m_waiting.front());
            m_waiting.pop_front();
            work();
        }
    }

    std::deque<std::function<void()>> m_waiting;
    QElapsedTimer m_stretch;
    bool m_isRoundComing = false;
};

} // namespace

void postToMain(std::function<void()> work)
{
    if (QCoreApplication *application = QCoreApplication::instance())
        QMetaObject::invokeMethod(
            application, [work = std::move(work)]() mutable { MainQueue::instance().take(std::move(work)); },
            Qt::QueuedConnection);
}

bool isMainThread()
{
    const QCoreApplication *application = QCoreApplication::instance();
    return application && QThread::currentThread() == application->thread();
}

bool isQuitting()
{
    return hasBegunToQuit;
}

} // namespace sorvanta
