#include "batch_screen_test.h"

#include <QElapsedTimer>
#include <QEventLoop>
#include <QFile>
#include <QTimer>

#include <malloc.h>

#include <algorithm>
#include <cstdio>
#include <unistd.h>

#if defined(__SANITIZE_ADDRESS__)
extern "C" std::size_t __sanitizer_get_current_allocated_bytes(); // GCC has no header for it
#endif

using namespace sorvanta;

namespace {

constexpr int few = 20;
constexpr int many = 2000;

/// The memory that this process takes.
double megabytesInUse()
{
#if defined(__SANITIZE_ADDRESS__)
    const double bytes = static_cast<double>(__sanitizer_get_current_allocated_bytes());
#else
    malloc_trim(0);
    QFile pages(QStringLiteral("/proc/self/statm"));
    pages.open(QIODevice::ReadOnly);
    const double bytes = pages.readAll().split(' ').at(1).toDouble() * static_cast<double>(sysconf(_SC_PAGESIZE));
#endif
    return bytes / 1e6;
}

/// Durations in milliseconds.
class Durations {
public:
    void add(const QElapsedTimer &clock) { m_all << static_cast<double>(clock.nsecsElapsed()) / 1e6; }

    void print(const char *what)
    {
        std::sort(m_all.begin(), m_all.end());
        std::printf("  %s: %.1f ms at the median, %.1f ms at 99 %%, %.1f ms at most\n", what, quantile(0.5),
                    quantile(0.99), quantile(1));
    }

private:
    double quantile(double part) const
    {
        return m_all.isEmpty() ? 0 : m_all[static_cast<qsizetype>(part * static_cast<double>(m_all.size() - 1))];
    }

    QList<double> m_all;
};

/// Watches how long the main thread leaves its events waiting.
class Heartbeat {
public:
    Heartbeat()
    {
        m_timer.setTimerType(Qt::PreciseTimer);
        QObject::connect(&m_timer, &QTimer::timeout, &m_timer, [this] {
            gaps.add(m_clock);
            m_clock.start();
        });
        m_clock.start();
        m_timer.start(1);
    }

    Durations gaps;

private:
    QTimer m_timer;
    QElapsedTimer m_clock;
};

/// Watches how long the ends of the files hold the main thread: from the word "Done" of a row to that of the time,
/// with the history's files in between.
class FileEnds {
public:
    explicit FileEnds(BatchProcessingView &screen)
    {
        QObject::connect(screen.results(), &QAbstractItemModel::dataChanged, &m_context,
                         [this, &screen](const QModelIndex &changed) {
                             if (screen.results()->list().at(changed.row()).status == FileStatus::done)
                                 m_clock.start();
                         });
        QObject::connect(screen.run(), &RunState::progressChanged, &m_context, [this, &screen] {
            if (screen.run()->etaText() != QStringLiteral("Done") || !m_clock.isValid())
                return;
            times.add(m_clock);
            m_clock.invalidate();
        });
    }

    Durations times;

private:
    QObject m_context;
    QElapsedTimer m_clock;
};

class ManyFiles : public BatchScreenTest {
protected:
    static QStringList paths(int count)
    {
        QStringList list;
        for (int i = 0; i < count; ++i)
            list << QStringLiteral("/music/A recording with a name of some length, number %1.wav").arg(i);
        return list;
    }
    /// Adds files until there are `count`, and runs them all.
    void transcribeUpTo(int count)
    {
        QElapsedTimer clock;
        clock.start();
        choose(paths(count));
        const qint64 adding = clock.elapsed();
        clock.restart();
        // An event loop as the application has it: QTest's waiting sleeps between its rounds.
        QEventLoop events;
        QObject::connect(&run(), &sorvanta::RunState::isTranscribingChanged, &events, [&events, this] {
            if (!run().isTranscribing())
                events.quit();
        });
        QTimer::singleShot(280000, &events, &QEventLoop::quit);
        Heartbeat heartbeat;
        FileEnds ends(*screen);
        screen->start();
        events.exec();
        ASSERT_FALSE(run().isTranscribing());
        std::printf("%d files: added in %lld ms, run in %.1f s\n", count, static_cast<long long>(adding),
                    static_cast<double>(clock.elapsed()) / 1000);
        heartbeat.gaps.print("a timer waited");
        ends.times.print("the end of a file took");
        EXPECT_EQ(screen->results()->count(), count);
        for (const FileResult &result : screen->results()->list())
            ASSERT_EQ(result.status, FileStatus::done) << oneLineFileName(result.url).toStdString();
    }
};

TEST_F(ManyFiles, takeLittleMoreMemoryThanFew)
{
    QByteArray log;
    for (int line = 0; line < 60; ++line)
        log += "complain whisper_model_load%3A a line of the log that the engine prints for each file, number "
               + QByteArray::number(line) + "%0A\n";
    useModel(log + twoLines);
    transcribeUpTo(few);
    const double before = megabytesInUse();
    screen->clearFiles();
    transcribeUpTo(many);
    const double after = megabytesInUse();
    std::printf("memory: %.1f MB after %d files, %.1f MB after %d\n", before, few, after, many);
    EXPECT_LT(after - before, 50);
    EXPECT_EQ(bench.history.entries().size(), few + many);
    EXPECT_EQ(bench.temporaryFiles(), QStringList());

    QElapsedTimer clock;
    clock.start();
    for (int row = 0; row < many; row += 100)
        screen->results()->selectRow(row);
    std::printf("twenty results selected in %lld ms\n", static_cast<long long>(clock.elapsed()));
    EXPECT_EQ(screen->pane()->rows()->rowCount(), 2);
}

} // namespace
