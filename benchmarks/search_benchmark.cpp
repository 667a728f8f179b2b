// What a search costs the main thread in a transcript of ten hours, 12,000 lines and 900 kB: a query typed letter by
// letter, the chunks of a run while it is searched, and the painting of the lines in sight; beside a straightforward
// search that folds and compares at each place.

#include "core/live_transcript.h"
#include "core/transcript_lines_model.h"
#include "core/transcript_search.h"
#include "support/search_reference.h"

#include <QCoreApplication>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <vector>

using namespace sorvanta;
using Clock = std::chrono::steady_clock;

namespace {

constexpr int lineCount = 12000;
constexpr qsizetype textBytes = 900'000;
constexpr int linesInSight = 40;

struct Script {
    const char *name;
    QStringList words;
    QStringList queries;
};

const Script scripts[] = {
    {"Latin",
     {"the", "harbour", "and", "boats", "of", "a", "long", "talk", "about", "engines"},
     {"e", "a", "harbour and boats", "talk about"}},
    {"French", {"café", "été", "élève", "le", "port", "où", "ça", "naïve", "et"}, {"é", "e", "élève où", "le port"}},
    {"Cyrillic",
     {"мой", "разговор", "о", "лодках", "и", "гавани", "ещё", "который"},
     {"о", "й", "который мой", "лодках"}},
    {"CJK and Hangul",
     {"港口", "と", "船", "について", "한국어", "이야기", "長い", "話"},
     {"船", "と", "について", "한국어 이야기"}},
    {"emoji among scripts",
     {"boats🙂", "лодки", "港口", "👍🏽", "❤️", "👩‍👩‍👧", "été", "мой", "한국어"},
     {"o", "🙂", "👍🏽", "лодки 港口", "boats🙂"}},
    {"Hindi and Thai", {"नमस्ते", "कहानी", "बंदरगाह", "ท่าเรือ", "เรื่อง", "และ"}, {"न", "नमस्ते", "เรื่อง"}},
};

/// 12,000 timed lines of about 900 kB of text.
QStringList linesOf(const Script &script)
{
    QStringList lines;
    qsizetype word = 0;
    qsizetype bytes = 0;
    for (int i = 0; i < lineCount; ++i) {
        QString line;
        while (bytes + line.toUtf8().size() < textBytes / lineCount * (i + 1)) {
            line += script.words[word % script.words.size()] + u' ';
            word += 1 + word / script.words.size() % 3;
        }
        bytes += line.toUtf8().size();
        lines << line;
    }
    return lines;
}

class Times {
public:
    template<typename Work>
    void add(Work work)
    {
        const auto begin = Clock::now();
        work();
        m_milliseconds.push_back(std::chrono::duration<double, std::milli>(Clock::now() - begin).count());
    }

    void print(const char *what)
    {
        std::sort(m_milliseconds.begin(), m_milliseconds.end());
        std::printf("  %-34s median %8.3f ms   worst %8.3f ms   (%zu times)\n", what,
                    m_milliseconds[m_milliseconds.size() / 2], m_milliseconds.back(), m_milliseconds.size());
    }

private:
    std::vector<double> m_milliseconds;
};

void measure(const Script &script)
{
    const QStringList lines = linesOf(script);
    LiveTranscript transcript;
    TranscriptLinesModel model(transcript);
    TranscriptSearchState search(model);
    search.setSearchText(script.queries.front());
    Times chunks;
    for (const QString &line : lines) {
        const QString chunk = u"[00:00:00.000 --> 00:00:01.000]   "_qs + line + u'\n';
        const LiveTranscript::Change change = transcript.append(chunk);
        chunks.add([&] { search.recomputeMatchesFrom(change.first); });
    }
    search.setSearchText({});

    Times keystrokes;
    Times painting;
    Times plain;
    int mostHits = 0;
    for (const QString &query : script.queries) {
        for (qsizetype typed = 1; typed <= query.size(); ++typed) {
            const QString text = query.left(typed);
            keystrokes.add([&] { search.setSearchText(text); });
            mostHits = std::max(mostHits, search.matchCount());
            painting.add([&] {
                for (int line = 0; line < linesInSight; ++line)
                    search.highlightedLine(model.line(line), line);
            });
        }
        search.setSearchText({});
        int hits = 0;
        plain.add([&] {
            for (const QString &line : lines)
                hits += static_cast<int>(SearchReference::hits(query, line.trimmed()).size());
        });
        search.setSearchText(query);
        if (hits != search.matchCount())
            std::printf("WRONG RESULT: %d hits, %d expected\n", search.matchCount(), hits);
        search.setSearchText({});
    }
    std::printf("%s, up to %d hits\n", script.name, mostHits);
    keystrokes.print("a letter typed");
    painting.print("40 lines painted");
    chunks.print("a chunk of a searched run");
    plain.print("straightforward search");
}

} // namespace

int main(int argumentCount, char **arguments)
{
    const QCoreApplication application(argumentCount, arguments);
    for (const Script &script : scripts)
        measure(script);
    return 0;
}
