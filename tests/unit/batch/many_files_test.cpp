#include "batch_screen_test.h"

#include <QElapsedTimer>
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

/// Watches how long the main thread leaves its events waiting.
class Heartbeat {
public:
    Heartbeat()
    {
        m_timer.setTimerType(Qt::PreciseTimer);
        QObject::connect(&m_timer, &QTimer::timeout, &m_timer, [this] { m_gaps << m_clock.restart(); });
        m_clock.start();
        m_timer.start(1);
    }

    /// The wait, in milliseconds, that this part of all beats stays below.
    qint64 quantile(double part)
    {
        std::sort(m_gaps.begin(), m_gaps.end());
        return m_gaps.isEmpty() ? 0 : m_gaps[static_cast<qsizetype>(part * static_cast<double>(m_gaps.size() - 1))];
    }

private:
    QTimer m_timer;
    QElapsedTimer m_clock;
    QList<qint64> m_gaps;
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
    void run(int count)
    {
        QElapsedTimer clock;
        clock.start();
        choose(paths(count));
        const qint64 adding = clock.elapsed();
        clock.restart();
        Heartbeat heartbeat;
        screen->start();
        ASSERT_TRUE(QTest::qWaitFor([this] { return !BatchScreenTest::run().isTranscribing(); }, 280000));
        std::printf(
            "%d files: added in %lld ms, run in %.1f s; the main thread waited %lld ms at the median, %lld ms at "
            "99 %%, %lld ms at most\n",
            count, static_cast<long long>(adding), static_cast<double>(clock.elapsed()) / 1000,
            static_cast<long long>(heartbeat.quantile(0.5)), static_cast<long long>(heartbeat.quantile(0.99)),
            static_cast<long long>(heartbeat.quantile(1)));
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
    run(few);
    const double before = megabytesInUse();
    screen->clearFiles();
    run(many);
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
