// What the browser of the history costs with 10,000 entries of 5 kB each: how long it takes until it is on show, what a
// letter typed into its search costs the main thread, what a frame of scrolling costs, and what memory the search
// keeps; beside a straightforward search that lower-cases each entry anew. Drawn offscreen and in software.

#include "app/style/look.h"
#include "history/history_json.h"
#include "history/transcription_history_store.h"
#include "platform/file_system.h"
#include "screens/history/history_view.h"
#include "support/fake_file_panels.h"
#include "support/history_entries.h"

#include <QApplication>
#include <QDateTime>
#include <QElapsedTimer>
#include <QFile>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickWindow>
#include <QTemporaryDir>
#include <QThreadPool>
#include <QtQml/qqmlextensionplugin.h>

#include <algorithm>
#include <cstdio>
#include <ctime>
#include <memory>
#include <random>
#include <vector>

#include <malloc.h>

Q_IMPORT_QML_PLUGIN(Sorvanta_StylePlugin)
Q_IMPORT_QML_PLUGIN(Sorvanta_ViewerPlugin)
Q_IMPORT_QML_PLUGIN(Sorvanta_ScreensPlugin)

using namespace sorvanta;

namespace {

constexpr int entryCount = 10'000;
constexpr qsizetype textBytes = 5'000;

struct Script {
    const char *name;
    QString syllables; ///< parted by blanks; words are made of them
    QStringList queries;
};

const Script scripts[] = {
    {"Latin",
     u"har bour walk ing the boat s and tide ta ble en gine qui et mor ning long sto ry of a lec ture ri ver weir"_qs,
     {u"harbour"_qs, u"morning boat"_qs, u"turbo"_qs, u"zebra crossing"_qs, u"e"_qs, u"walking the tide table"_qs,
      u"entry 9999"_qs}},
    {"mixed scripts",
     u"ü ber prü fung heißt für uns 会議 は 三 時 に 始 まります раз го вор о лод ках é té ça où the boat"_qs,
     {u"überprüfung"_qs, u"会議は"_qs, u"ЛОДКАХ"_qs, u"zebra crossing"_qs, u"é"_qs, u"heißt uns"_qs, u"entry 9999"_qs}},
};

QList<TranscriptionHistoryEntry> entriesOf(const Script &script)
{
    std::mt19937 random(7);
    const QStringList syllables = script.syllables.split(u' ');
    QList<TranscriptionHistoryEntry> entries;
    for (int i = 0; i < entryCount; ++i) {
        QString text;
        qsizetype bytes = 0;
        while (bytes < textBytes) {
            QString word;
            for (unsigned left = 1 + random() % 3; left > 0; --left)
                word += syllables[static_cast<qsizetype>(random() % static_cast<unsigned>(syllables.size()))];
            bytes += word.toUtf8().size() + 1;
            text += word + (random() % 12 == 0 ? u'\n' : u' ');
        }
        text.chop(1);
        entries << historyEntry(u"entry %1"_qs.arg(i),
                                u"2026-02-02T%1:%2:00.123Z"_qs.arg(i / 600, 2, 10, QLatin1Char('0'))
                                    .arg(i / 10 % 60, 2, 10, QLatin1Char('0')));
        entries.last().text = text;
        entries.last().model = i % 3 == 0 ? u"Large V3 Turbo"_qs : u"Base"_qs;
    }
    return entries;
}

/// The processor time that this thread has taken, in milliseconds.
double threadMilliseconds()
{
    timespec time{};
    ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) / 1e6;
}

/// How much work the main thread had with something, and how long it took while other programs ran too.
class Times {
public:
    template<typename Work>
    void add(Work work)
    {
        const double before = threadMilliseconds();
        QElapsedTimer timer;
        timer.start();
        work();
        m_passed.push_back(static_cast<double>(timer.nsecsElapsed()) / 1e6);
        m_worked.push_back(threadMilliseconds() - before);
    }

    void print(const char *what)
    {
        std::sort(m_worked.begin(), m_worked.end());
        std::sort(m_passed.begin(), m_passed.end());
        const std::size_t middle = m_worked.size() / 2;
        std::printf("  %-40s work: median %7.2f ms, worst %7.2f ms   clock: %7.2f, %7.2f   (%zu times)\n", what,
                    m_worked[middle], m_worked.back(), m_passed[middle], m_passed.back(), m_worked.size());
    }

private:
    std::vector<double> m_worked;
    std::vector<double> m_passed;
};

/// The heap in use, in MB.
double heapMegabytes()
{
    const struct mallinfo2 info = ::mallinfo2();
    return static_cast<double>(info.uordblks + info.hblkhd) / 1e6;
}

/// The page in a window, drawn when it is told.
class Page {
public:
    explicit Page(HistoryView &view)
    {
        m_engine.addImportPath(u"qrc:/qt/qml"_qs);
        QQmlComponent component(&m_engine);
        component.setData("import Sorvanta.Screens\nHistoryPage {}", {});
        m_page.reset(qobject_cast<QQuickItem *>(component.createWithInitialProperties(
            {{u"view"_qs, QVariant::fromValue(&view)}, {u"width"_qs, 940}, {u"height"_qs, 700}})));
        if (!m_page)
            qFatal("%s", qUtf8Printable(component.errorString()));
        m_window.resize(940, 700);
        m_page->setParentItem(m_window.contentItem());
        m_window.show();
        while (!m_window.isExposed())
            QCoreApplication::processEvents();
        draw();
    }

    void draw() { m_window.grabWindow(); }
    /// Takes the page out of the window, as a section that is not on show, or puts it back.
    void setShown(bool isShown) { m_page->setParentItem(isShown ? m_window.contentItem() : nullptr); }
    QObject *list() const { return m_page->findChild<QObject *>(u"historyList"_qs); }

private:
    QQmlEngine m_engine;
    QQuickWindow m_window;
    std::unique_ptr<QQuickItem> m_page;
};

QStringList straightforward(const QList<TranscriptionHistoryEntry> &entries, const QString &query)
{
    QStringList found;
    const QString wanted = query.toLower();
    for (const TranscriptionHistoryEntry &entry : entries) {
        if (entry.text.toLower().contains(wanted) || entry.sourceLabel.toLower().contains(wanted)
            || entry.model.toLower().contains(wanted))
            found << entry.id;
    }
    return found;
}

void type(HistoryView &view, Page &page, const QList<TranscriptionHistoryEntry> &entries, const Script &script)
{
    Times keystrokes;
    Times backspaces;
    Times frames;
    Times plain;
    const auto show = [&](Times &times, const QString &text) {
        times.add([&] { view.setSearchText(text); });
        frames.add([&] { page.draw(); });
    };
    for (const QString &query : script.queries) {
        for (qsizetype typed = 1; typed <= query.size(); ++typed)
            show(keystrokes, query.left(typed));
        QStringList expected;
        plain.add([&] { expected = straightforward(entries, query); });
        if (expected.size() != view.rows()->count())
            std::printf("WRONG RESULT: %d entries, %lld expected\n", view.rows()->count(),
                        static_cast<long long>(expected.size()));
        for (qsizetype left = query.size() - 1; left >= 0; --left)
            show(backspaces, query.left(left));
    }
    keystrokes.print("a letter typed");
    backspaces.print("a letter taken back");
    frames.print("the frame after it");
    plain.print("straightforward search");
}

void scroll(Page &page)
{
    Times steps;
    Times jumps;
    QObject *const list = page.list();
    const double top = list->property("originY").toDouble();
    for (int step = 0; step < 300; ++step) {
        steps.add([&] {
            list->setProperty("contentY", top + step * 40);
            page.draw();
        });
    }
    for (int jump = 0; jump < 50; ++jump) {
        jumps.add([&] {
            list->setProperty("contentY", top + jump * 19'000);
            page.draw();
        });
    }
    list->setProperty("contentY", top);
    steps.print("a frame of scrolling by 40 pixels");
    jumps.print("a frame of jumping by 190 rows");
}

void select(HistoryView &view, Page &page)
{
    Times selections;
    for (int row = 0; row < 100; ++row) {
        selections.add([&] {
            view.selectRow(row);
            page.draw();
        });
    }
    selections.print("another entry selected, with its frame");
}

void choose(Page &page)
{
    Times choices;
    for (int i = 0; i < 20; ++i) {
        page.setShown(false);
        page.draw();
        choices.add([&] {
            page.setShown(true);
            page.draw();
        });
    }
    choices.print("the section chosen, with its frame");
}

void addWhileHidden(HistoryView &view, Page &page, TranscriptionHistoryStore &store)
{
    Times additions;
    page.list()->setProperty("contentY", page.list()->property("originY").toDouble() + 900'000);
    page.draw();
    page.setShown(false);
    for (int i = 0; i < 5; ++i) {
        additions.add([&] {
            store.addEntry({.text = u"added"_qs, .sourceLabel = u"/added %1"_qs.arg(i), .model = u"Base"_qs});
            QCoreApplication::processEvents();
        });
        view.selectRow(i);
    }
    page.setShown(true);
    page.draw();
    additions.print("an entry added while the page is hidden");
}

void setWrittenYesterday(const QString &path)
{
    QFile file(path);
    const bool isSet = file.open(QIODevice::ReadWrite)
                       && file.setFileTime(QDateTime::currentDateTime().addDays(-1), QFileDevice::FileModificationTime);
    if (!isSet)
        qFatal("the time of the history cannot be set");
}

void measure(const Script &script)
{
    std::printf("%s\n", script.name);
    const QTemporaryDir folder;
    HistorySurroundings surroundings = HistorySurroundings::ofThisUser();
    surroundings.baseFolder = folder.path();
    const QString path = folder.filePath(u"transcription-history.json"_qs);
    writeFileAtomically(path, encodedHistory(entriesOf(script)));
    setWrittenYesterday(path);
    FakeFilePanels panels;
    const double before = heapMegabytes();
    QElapsedTimer timer;
    timer.start();
    TranscriptionHistoryStore store(surroundings);
    const double loaded = static_cast<double>(timer.nsecsElapsed()) / 1e6;
    const double withStore = heapMegabytes();
    timer.start();
    HistoryView view({.history = store, .panels = panels});
    view.appear();
    const double appeared = static_cast<double>(timer.nsecsElapsed()) / 1e6;
    Page page(view);
    const double shown = static_cast<double>(timer.nsecsElapsed()) / 1e6;
    std::printf("  the store loads in %.0f ms; then the screen appears in %.0f ms, with its page and first frame in "
                "%.0f ms\n",
                loaded, appeared, shown);

    Times unprepared;
    unprepared.add([&] { view.setSearchText(u"q"_qs); });
    unprepared.print("a letter typed at once");
    view.setSearchText({});
    timer.start();
    while (!view.rows()->isPrepared())
        QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
    std::printf("  the copies are ready %.0f ms later\n", static_cast<double>(timer.nsecsElapsed()) / 1e6);
    type(view, page, store.entries(), script);
    QThreadPool::globalInstance()->waitForDone();
    QCoreApplication::processEvents();
    std::printf("  the history takes %.0f MB, the copies and the page %.0f MB\n", withStore - before,
                heapMegabytes() - withStore);
    scroll(page);
    select(view, page);
    choose(page);
    addWhileHidden(view, page, store);
}

} // namespace

int main(int argumentCount, char **arguments)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("QT_QUICK_BACKEND", "software");
    const QApplication application(argumentCount, arguments);
    applyLook();
    for (const Script &script : scripts)
        measure(script);
    return 0;
}
