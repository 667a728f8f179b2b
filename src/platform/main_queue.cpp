#include "platform/main_queue.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEvent>
#include <QThread>
#include <QTimer>

#include <atomic>
#include <deque>
#include <mutex>
#include <utility>

namespace sorvanta {

namespace {

std::atomic<bool> hasBegunToQuit = false;

/// Runs what was posted, in order, but not for longer than a moment at a stretch. Qt goes on with posted events as long
/// as there are any, and a worker that posts faster than the work is done would keep windows and timers waiting.
class MainQueue : public QObject {
public:
    MainQueue()
    {
        const std::scoped_lock lock(mutex);
        current = this;
    }
    ~MainQueue() override
    {
        const std::scoped_lock lock(mutex);
        current = nullptr;
    }

    /// Main thread.
    static void destroyCurrent() { delete current; }

    /// Any thread. The work is handed over under a lock of our own, which the thread sanitizer sees; Qt's are unseen.
    static void post(std::function<void()> work)
    {
        const std::scoped_lock lock(mutex);
        if (!current)
            return;
        current->m_posted.push_back(std::move(work));
        QCoreApplication::postEvent(current, new QEvent(QEvent::User));
    }

private:
    /// There is one event for each piece of work.
    void customEvent(QEvent * /*event*/) override
    {
        m_waiting.push_back(nextPosted());
        if (!m_isRoundComing)
            beginStretch();
        runStretch();
    }

    std::function<void()> nextPosted()
    {
        const std::scoped_lock lock(mutex);
        std::function<void()> work = std::move(m_posted.front());
        m_posted.pop_front();
        return work;
    }

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

    static inline std::mutex mutex; // of what other threads use: the next two
    static inline MainQueue *current = nullptr; // the one of the application, if there is one
    std::deque<std::function<void()>> m_posted;
    std::deque<std::function<void()>> m_waiting; // of the main thread
    QElapsedTimer m_stretch;
    bool m_isRoundComing = false;
};

void beginWithApplication()
{
    QCoreApplication *application = QCoreApplication::instance();
    new MainQueue;
    // While all that a post makes use of in the application still stands.
    qAddPostRoutine(MainQueue::destroyCurrent);
    QObject::connect(application, &QCoreApplication::aboutToQuit, [] { hasBegunToQuit = true; });
}
Q_COREAPP_STARTUP_FUNCTION(beginWithApplication)

} // namespace

void postToMain(std::function<void()> work)
{
    MainQueue::post(std::move(work));
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
