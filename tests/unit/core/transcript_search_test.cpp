#include "core/live_transcript.h"
#include "core/transcript_lines_model.h"
#include "core/transcript_search.h"
#include "core/transcript_text.h"

#include "support/printing.h"
#include "support/random_output.h"
#include "support/random_script.h"
#include "support/search_reference.h"
#include "support/stored_lines.h"

#include <gtest/gtest.h>

#include <QSignalSpy>

#include <algorithm>
#include <ostream>

namespace sorvanta {

static void PrintTo(const Match &match, std::ostream *out)
{
    *out << "line " << match.line << ": " << match.start << ',' << match.length;
}

static void PrintTo(const HighlightedRange &range, std::ostream *out)
{
    *out << range.start << ',' << range.length << (range.isCurrent ? " current" : "");
}

} // namespace sorvanta

using namespace sorvanta;

namespace {

using Matches = std::vector<Match>;
using Ranges = std::vector<HighlightedRange>;

/// A search over a plain text.
struct Search {
    explicit Search(const QString &text, const QString &searchText = {})
    {
        lines.setText(text);
        state.setSearchText(searchText);
    }

    Ranges painted(qsizetype line) const { return state.highlightedLine(lines.line(line), line); }

    StoredLines lines;
    TranscriptSearchState state{lines};
};

/// recomputeMatches written out: the lines of the text, the hits of each, and their distances in characters.
Matches referenceMatches(const QString &text, const QString &searchText)
{
    Matches matches;
    QString query = searchText;
    const auto isTrimmed = [](QChar c) {
        return u"\u0009\u000A\u000B\u000C\u000D\u0020\u0085\u00A0\u1680\u2000\u2001\u2002\u2003\u2004\u2005\u2006"
               u"\u2007\u2008\u2009\u200A\u200B\u2028\u2029\u202F\u205F\u3000"_qs.contains(c);
    };
    while (!query.isEmpty() && isTrimmed(query.front()))
        query.remove(0, 1);
    while (!query.isEmpty() && isTrimmed(query.back()))
        query.chop(1);
    if (query.isEmpty())
        return matches;
    QStringList lines{QString()};
    for (const QChar c : text) {
        if (u"\u000A\u000B\u000C\u000D\u0085\u2028\u2029"_qs.contains(c))
            lines << QString();
        else
            lines.back() += c;
    }
    for (int line = 0; line < lines.size(); ++line) {
        const std::vector<int> borders = SearchReference::characterBorders(lines[line]);
        const auto charactersBefore = [&borders](int position) {
            return static_cast<int>(std::upper_bound(borders.begin(), borders.end(), position) - borders.begin()) - 1;
        };
        for (const auto &[start, end] : SearchReference::hits(query, lines[line]))
            matches.push_back({line, charactersBefore(start), charactersBefore(end) - charactersBefore(start)});
    }
    return matches;
}

TEST(TranscriptSearchState, isEmptyAtFirst)
{
    Search search(u"One\nTwo"_qs);
    EXPECT_EQ(search.state.searchText(), QString());
    EXPECT_EQ(search.state.matches(), Matches());
    EXPECT_EQ(search.state.currentMatchIndex(), 0);
    EXPECT_EQ(search.state.matchCounter(), u"0 / 0"_qs);
    EXPECT_EQ(search.painted(0), Ranges());
}

TEST(TranscriptSearchState, listsHitsByLineAndThenFromLeftToRight)
{
    Search search(u"One two one\nnone\n\nONE"_qs, u"one"_qs);
    EXPECT_EQ(search.state.matches(), (Matches{{0, 0, 3}, {0, 8, 3}, {1, 1, 3}, {3, 0, 3}}));
    EXPECT_EQ(search.state.matchCount(), 4);
    for (int i = 0; i < 4; ++i)
        EXPECT_EQ(search.state.match(i), search.state.matches()[static_cast<std::size_t>(i)]);
}

TEST(TranscriptSearchState, measuresHitsInWholeCharacters)
{
    Search search(u"👨‍👩‍👧e\u0301 caf\u00E9 cafe\u0301"_qs, u"caf\u00E9"_qs);
    EXPECT_EQ(search.state.matches(), (Matches{{0, 3, 4}, {0, 8, 4}}));
}

TEST(TranscriptSearchState, countsAHitWithinACharacterFromThatCharacterOn)
{
    Search search(u"a👨‍👩‍👧b"_qs, u"👩"_qs);
    EXPECT_EQ(search.state.matches(), (Matches{{0, 1, 0}}));
    EXPECT_EQ(search.state.matchesInLine(search.lines.line(0), 0), Ranges());
}

TEST(TranscriptSearchState, trimsTheQueryOfBlanksAndLineBreaksAtItsEndsOnly)
{
    EXPECT_EQ(Search(u"a b"_qs, u" \t\u00A0\u200B\n\u2028b \r\n"_qs).state.matches(), (Matches{{0, 2, 1}}));
    EXPECT_EQ(Search(u"a b ab"_qs, u" a b"_qs).state.matches(), (Matches{{0, 0, 3}}));
}

TEST(TranscriptSearchState, takesAQueryOfBlanksForEmpty)
{
    for (const QString &blank : {u" "_qs, u"\t \n"_qs, u"\u3000\u200B"_qs}) {
        Search search(u"a b  c"_qs, blank);
        EXPECT_EQ(search.state.matches(), Matches());
        EXPECT_EQ(search.state.matchCounter(), u"0 / 0"_qs);
        EXPECT_EQ(search.painted(0), Ranges());
    }
}

TEST(TranscriptSearchState, findsTwoHitsOfAaInAaaa)
{
    EXPECT_EQ(Search(u"aaaa"_qs, u"aa"_qs).state.matches(), (Matches{{0, 0, 2}, {0, 2, 2}}));
}

TEST(TranscriptSearchState, findsNothingAcrossLines)
{
    EXPECT_EQ(Search(u"one\ntwo"_qs, u"one\ntwo"_qs).state.matchCounter(), u"0 / 0"_qs);
    EXPECT_EQ(Search(u"one\ntwo"_qs, u"onetwo"_qs).state.matchCounter(), u"0 / 0"_qs);
    EXPECT_EQ(Search(u"one\r\ntwo"_qs, u"two"_qs).state.matches(), (Matches{{2, 0, 3}})) << "a line between CR and LF";
}

TEST(TranscriptSearchState, goesRoundAtBothEnds)
{
    Search search(u"x\nx x"_qs, u"x"_qs);
    EXPECT_EQ(search.state.matchCounter(), u"1 / 3"_qs);
    search.state.nextMatch();
    EXPECT_EQ(search.state.matchCounter(), u"2 / 3"_qs);
    search.state.nextMatch();
    EXPECT_EQ(search.state.matchCounter(), u"3 / 3"_qs);
    search.state.nextMatch();
    EXPECT_EQ(search.state.currentMatchIndex(), 0);
    search.state.previousMatch();
    EXPECT_EQ(search.state.currentMatchIndex(), 2);
    search.state.previousMatch();
    EXPECT_EQ(search.state.currentMatchIndex(), 1);
}

TEST(TranscriptSearchState, staysWithoutHits)
{
    Search search(u"x"_qs, u"y"_qs);
    search.state.nextMatch();
    EXPECT_EQ(search.state.currentMatchIndex(), 0);
    search.state.previousMatch();
    EXPECT_EQ(search.state.currentMatchIndex(), 0);
    EXPECT_EQ(search.state.matchCounter(), u"0 / 0"_qs);
}

TEST(TranscriptSearchState, goesBackToTheFirstHitWhenTheQueryOrTheTextChanges)
{
    Search search(u"xy xy"_qs, u"x"_qs);
    search.state.nextMatch();
    search.state.setSearchText(u"xy"_qs);
    EXPECT_EQ(search.state.currentMatchIndex(), 0);
    search.state.nextMatch();
    search.lines.setText(u"xy xy xy"_qs);
    search.state.recomputeMatches();
    EXPECT_EQ(search.state.matchCounter(), u"1 / 3"_qs);
    search.state.nextMatch();
    search.state.setSearchText({});
    EXPECT_EQ(search.state.matches(), Matches());
    EXPECT_EQ(search.state.currentMatchIndex(), 0);
}

TEST(TranscriptSearchState, searchesAListOfLinesAsItStands)
{
    StoredLines lines;
    TranscriptSearchState state(lines);
    lines.setLines({"Hello there", "", "hello hello"});
    state.setSearchText(u"HELLO"_qs);
    EXPECT_EQ(state.matches(), (Matches{{0, 0, 5}, {2, 0, 5}, {2, 6, 5}}));
    lines.setText(u"hello"_qs);
    state.recomputeMatches();
    EXPECT_EQ(state.matches(), (Matches{{0, 0, 5}}));
}

TEST(TranscriptSearchState, paintsEveryHitAndTheCurrentOneApart)
{
    Search search(u"One two one\none"_qs, u"one"_qs);
    EXPECT_EQ(search.painted(0), (Ranges{{0, 3, true}, {8, 3, false}}));
    EXPECT_EQ(search.painted(1), (Ranges{{0, 3, false}}));
    search.state.nextMatch();
    EXPECT_EQ(search.painted(0), (Ranges{{0, 3, false}, {8, 3, true}}));
    search.state.nextMatch();
    EXPECT_EQ(search.painted(0), (Ranges{{0, 3, false}, {8, 3, false}})) << "the same offset in another line";
    EXPECT_EQ(search.painted(1), (Ranges{{0, 3, true}}));
}

TEST(TranscriptSearchState, paintsLettersWithOtherMarksButDoesNotCountThem)
{
    Search search(u"caf\u00E9 cafe"_qs, u"cafe"_qs);
    EXPECT_EQ(search.state.matchCounter(), u"1 / 1"_qs);
    EXPECT_EQ(search.state.matches(), (Matches{{0, 5, 4}}));
    EXPECT_EQ(search.painted(0), (Ranges{{0, 4, false}, {5, 4, true}}));

    Search uncounted(u"caf\u00E9"_qs, u"cafe"_qs);
    EXPECT_EQ(uncounted.state.matchCounter(), u"0 / 0"_qs);
    uncounted.state.nextMatch();
    EXPECT_EQ(uncounted.painted(0), (Ranges{{0, 4, false}}));
}

TEST(TranscriptSearchState, doesNotKnowTheCurrentHitBehindACharacterOfMoreThanOneUnit)
{
    for (const QString &first : {u"🙂"_qs, u"e\u0301"_qs}) {
        Search search(first + u" one"_qs, u"one"_qs);
        EXPECT_EQ(search.state.matches(), (Matches{{0, 2, 3}}));
        EXPECT_EQ(search.painted(0), (Ranges{{3, 3, false}}));
    }
    EXPECT_EQ(Search(u"é one"_qs, u"one"_qs).painted(0), (Ranges{{2, 3, true}}));
}

TEST(TranscriptSearchState, paintsAnotherHitForTheCurrentOneWhereTheOffsetsMeet)
{
    // The second hit is at character 2 and unit 3; the first painted one is at unit 2.
    Search search(u"🙂\u00E9e"_qs, u"e"_qs);
    EXPECT_EQ(search.state.matches(), (Matches{{0, 2, 1}}));
    EXPECT_EQ(search.painted(0), (Ranges{{2, 1, true}, {3, 1, false}}));
}

TEST(TranscriptSearchState, tellsTheViewerItsHitsInWholeCharactersAndAlwaysTheCurrentOne)
{
    Search search(u"🙂 one caf\u00E9 cafe\none"_qs, u"one"_qs);
    EXPECT_EQ(search.state.matchesInLine(search.lines.line(0), 0), (Ranges{{3, 3, true}}));
    EXPECT_EQ(search.state.matchesInLine(search.lines.line(1), 1), (Ranges{{0, 3, false}}));
    search.state.nextMatch();
    EXPECT_EQ(search.state.matchesInLine(search.lines.line(0), 0), (Ranges{{3, 3, false}}));
    EXPECT_EQ(search.state.matchesInLine(search.lines.line(1), 1), (Ranges{{0, 3, true}}));
    search.state.setSearchText(u"cafe"_qs);
    EXPECT_EQ(search.state.matchesInLine(search.lines.line(0), 0), (Ranges{{12, 4, true}}));
    search.state.setSearchText(u" "_qs);
    EXPECT_EQ(search.state.matchesInLine(search.lines.line(0), 0), Ranges());
}

TEST(TranscriptSearchState, scrollsWhenTheIndexOfTheCurrentHitChangesToOneThatThereIs)
{
    Search search(u"x\n\nx"_qs, u"x"_qs);
    QSignalSpy scrolls(&search.state, &TranscriptSearchState::scrollToCurrentMatch);
    search.state.recomputeMatches();
    EXPECT_EQ(scrolls.size(), 0) << "the index is 0 as before";
    search.state.nextMatch();
    ASSERT_EQ(scrolls.size(), 1);
    EXPECT_EQ(scrolls.takeFirst().at(0).toInt(), 2);
    search.state.recomputeMatches();
    ASSERT_EQ(scrolls.size(), 1);
    EXPECT_EQ(scrolls.takeFirst().at(0).toInt(), 0);
    search.state.nextMatch();
    scrolls.clear();
    search.state.setSearchText(u"y"_qs);
    EXPECT_EQ(scrolls.size(), 0) << "there is no hit to scroll to";
}

TEST(TranscriptSearchState, tellsOfAFieldOnceItHasAllItsNewValues)
{
    Search search(u"x x"_qs, u"x"_qs);
    search.state.nextMatch();
    QString counter;
    QObject::connect(&search.state, &TranscriptSearchState::searchTextChanged,
                     [&] { counter = search.state.matchCounter(); });
    QSignalSpy searchTexts(&search.state, &TranscriptSearchState::searchTextChanged);
    QSignalSpy matches(&search.state, &TranscriptSearchState::matchesChanged);
    QSignalSpy indices(&search.state, &TranscriptSearchState::currentMatchIndexChanged);
    QSignalSpy counters(&search.state, &TranscriptSearchState::matchCounterChanged);
    QSignalSpy highlights(&search.state, &TranscriptSearchState::highlightChanged);
    search.state.setSearchText(u"X"_qs);
    EXPECT_EQ(counter, u"1 / 2"_qs);
    EXPECT_EQ(searchTexts.size(), 1);
    EXPECT_EQ(matches.size(), 1);
    EXPECT_EQ(indices.size(), 1);
    EXPECT_EQ(counters.size(), 1);
    EXPECT_EQ(highlights.size(), 1);
    search.state.setSearchText(u"X"_qs);
    EXPECT_EQ(searchTexts.size(), 1) << "it is no change";
    EXPECT_EQ(matches.size(), 1);
}

/// A search over a run's lines, kept up as a screen does it.
struct LiveSearch {
    void append(QStringView piece)
    {
        const LiveTranscript::Change change = transcript.append(piece);
        lines.apply(change);
        state.recomputeMatchesFrom(change.first);
    }

    LiveTranscript transcript;
    TranscriptLinesModel lines{transcript};
    TranscriptSearchState state{lines};
};

TEST(LiveSearch, goesBackToTheFirstHitWithEachChunk)
{
    LiveSearch search;
    search.state.setSearchText(u"x"_qs);
    search.append(u"[a] x x\n[b] x\n");
    search.state.nextMatch();
    search.state.nextMatch();
    EXPECT_EQ(search.state.matchCounter(), u"3 / 3"_qs);
    QSignalSpy highlights(&search.state, &TranscriptSearchState::highlightChanged);
    search.append(u"[c] x");
    EXPECT_EQ(search.state.matchCounter(), u"1 / 4"_qs);
    EXPECT_EQ(highlights.size(), 1);
    search.append(u"x");
    EXPECT_EQ(search.state.matchCounter(), u"1 / 5"_qs);
    EXPECT_EQ(highlights.size(), 1) << "the lines before are painted as they were";
}

TEST(LiveSearch, movesTheHitsWhenDashesAreStripped)
{
    LiveSearch search;
    search.append(u"[a] - one - one\n[b] one\n");
    search.state.setSearchText(u"one"_qs);
    EXPECT_EQ(search.state.matches(), (Matches{{0, 2, 3}, {0, 8, 3}, {1, 0, 3}}));
    search.state.nextMatch();
    search.lines.setStripDashes(true);
    search.state.recomputeMatches();
    EXPECT_EQ(search.state.matches(), (Matches{{0, 0, 3}, {0, 6, 3}, {1, 0, 3}}));
    EXPECT_EQ(search.state.currentMatchIndex(), 0);
}

TEST(LiveSearch, isEmptyAgainWhenTheRunBeginsAnew)
{
    LiveSearch search;
    search.append(u"[a] one\n");
    search.state.setSearchText(u"one"_qs);
    search.transcript.clear();
    search.lines.reset();
    search.state.recomputeMatches();
    EXPECT_EQ(search.state.matchCounter(), u"0 / 0"_qs);
    search.append(u"plain one\n");
    EXPECT_EQ(search.state.matchCounter(), u"1 / 1"_qs);
    search.append(u"[a] one one\n");
    EXPECT_EQ(search.state.matches(), (Matches{{0, 0, 3}, {0, 4, 3}})) << "timed lines take the place of plain ones";
}

/// Lines that count how often they are read.
class CountedLines final : public TextLines {
public:
    qsizetype lineCount() const override { return lines.size(); }
    QStringView line(qsizetype index) const override
    {
        ++reads;
        return lines[index];
    }

    QStringList lines;
    mutable int reads = 0;
};

TEST(LiveSearch, readsTheNewLinesAndTheOneOfTheCurrentHitOnly)
{
    CountedLines lines;
    for (int i = 0; i < 1000; ++i)
        lines.lines << u"one"_qs;
    TranscriptSearchState state(lines);
    state.setSearchText(u"one"_qs);
    lines.lines << u"one"_qs << u"one"_qs;
    lines.reads = 0;
    state.recomputeMatchesFrom(1000);
    EXPECT_EQ(lines.reads, 3);
    EXPECT_EQ(state.matchCounter(), u"1 / 1002"_qs);
}

TEST(LiveSearch, equalsTheRulesWrittenOutAfterEveryChunkOfAnyOutput)
{
    std::size_t found = 0;
    for (unsigned seed = 0; seed < 1500; ++seed) {
        SCOPED_TRACE(seed);
        RandomOutput random(seed);
        RandomScript script(seed);
        QString output = random.text();
        for (int i = random.number(0, 12); i > 0; --i) {
            output.insert(random.number(0, static_cast<int>(output.size())),
                          u"\n[00:00:01.000 --> 00:00:02.000]   - "_qs + script.text(0, 10) + u'\n');
        }
        LiveSearch search;
        for (qsizetype end = 0, from = 0; end < output.size(); from = end) {
            end = std::min(output.size(), from + random.pieceSize());
            search.append(QStringView(output).sliced(from, end - from));
            switch (random.number(0, 9)) {
            case 0:
                search.state.setSearchText(script.text(0, 1));
                break;
            case 1:
                search.state.setSearchText(
                    u" "_qs + output.mid(random.number(0, static_cast<int>(output.size()) - 1), random.number(0, 3)));
                break;
            case 2:
                search.lines.setStripDashes(!search.lines.stripDashes());
                search.state.recomputeMatches();
                break;
            default:
                break;
            }
            const QString shown = displayedTranscript(output.left(end), {}, search.lines.stripDashes());
            const Matches matches = referenceMatches(shown, search.state.searchText());
            ASSERT_EQ(search.state.matches(), matches) << search.state.searchText().toStdString();
            ASSERT_EQ(search.state.currentMatchIndex(), 0);
            ASSERT_EQ(search.state.matchCount(), static_cast<int>(matches.size()));
            found += matches.size();
            if (!matches.empty()) {
                const int index = random.number(0, static_cast<int>(matches.size()) - 1);
                ASSERT_EQ(search.state.match(index), matches[static_cast<std::size_t>(index)]);
                search.state.previousMatch();
            }
        }
    }
    EXPECT_GT(found, 10000U) << "queries that are never found would prove nothing";
}

TEST(TranscriptSearchState, listsHitsOfAnyTextInReadingOrderWithoutOverlapOnTheBordersOfCharacters)
{
    int found = 0;
    for (unsigned seed = 0; seed < 20000; ++seed) {
        SCOPED_TRACE(seed);
        RandomScript random(seed);
        Search search(random.text(0, 12) + u'\n' + random.text(0, 12), random.text(1, 2));
        const Matches matches = search.state.matches();
        ASSERT_EQ(matches, referenceMatches(search.lines.line(0).toString() + u'\n' + search.lines.line(1).toString(),
                                            search.state.searchText()));
        for (std::size_t i = 0; i < matches.size(); ++i) {
            const Match &match = matches[i];
            const auto borders = SearchReference::characterBorders(search.lines.line(match.line).toString());
            ASSERT_GE(match.start, 0);
            ASSERT_GE(match.length, 0);
            ASSERT_LT(match.start + match.length, static_cast<int>(borders.size()));
            if (i > 0) {
                ASSERT_GE(match.line, matches[i - 1].line);
            }
            if (i > 0 && match.line == matches[i - 1].line) {
                ASSERT_GE(match.start, matches[i - 1].start + matches[i - 1].length);
            }
            ++found;
        }
    }
    EXPECT_GT(found, 2000);
}

} // namespace
