#include "core/transcript_search.h"

#include "platform/unicode_text.h"

#include <algorithm>

namespace sorvanta {

namespace {

/// Walks to ever later places of a line and tells how many whole characters lie before each.
class CharacterRuler {
public:
    explicit CharacterRuler(QStringView line)
        : m_line(line)
        , m_clusters(line)
    {
    }

    void advanceTo(qsizetype position)
    {
        while (m_border < m_line.size()) {
            if (m_nextBorder == m_border)
                m_nextBorder = m_clusters.end(m_border);
            if (m_nextBorder > position)
                return;
            m_border = m_nextBorder;
            ++m_characters;
        }
    }

    /// Where the last of them ends.
    qsizetype border() const { return m_border; }
    int characters() const { return m_characters; }

private:
    QStringView m_line;
    GraphemeClusters m_clusters;
    qsizetype m_border = 0;
    qsizetype m_nextBorder = 0; // not looked for yet while it is the same
    int m_characters = 0;
};

/// The matches of a line from its hits.
std::vector<Match> matchesOf(const std::vector<TextRange> &hits, QStringView text, int line)
{
    std::vector<Match> matches;
    matches.reserve(hits.size());
    CharacterRuler ruler(text);
    for (const TextRange &hit : hits) {
        ruler.advanceTo(hit.start);
        const int start = ruler.characters();
        ruler.advanceTo(hit.start + hit.length);
        matches.push_back({line, start, ruler.characters() - start});
    }
    return matches;
}

} // namespace

TranscriptSearchState::TranscriptSearchState(const TextLines &lines, QObject *parent)
    : QObject(parent)
    , m_lines(lines)
{
}

void TranscriptSearchState::setSearchText(const QString &searchText)
{
    if (m_searchText == searchText)
        return;
    const Shown before = shown();
    m_searchText = searchText;
    const QStringView query = trimmedOfWhitespaceAndNewlines(m_searchText);
    m_counting.reset();
    m_painting.reset();
    if (!query.isEmpty()) {
        m_counting.emplace(query, TextSearchOptions::caseInsensitive);
        m_painting.emplace(query, TextSearchOptions::caseAndDiacriticInsensitive);
    }
    countHits(0);
    goTo(0);
    emit searchTextChanged();
    emit matchesChanged();
    tellChangesSince(before);
}

Match TranscriptSearchState::match(int index) const
{
    const Place place = placeOfMatch(index);
    const QStringView text = m_lines.line(place.line);
    return matchesOf(m_counting->hits(text), text, place.line).at(static_cast<std::size_t>(place.indexInLine));
}

std::vector<Match> TranscriptSearchState::matches() const
{
    std::vector<Match> all;
    all.reserve(static_cast<std::size_t>(matchCount()));
    for (std::size_t line = 0; line < m_hitsUpTo.size(); ++line) {
        const QStringView text = m_lines.line(static_cast<qsizetype>(line));
        const auto matches = matchesOf(m_counting->hits(text), text, static_cast<int>(line));
        all.insert(all.end(), matches.begin(), matches.end());
    }
    return all;
}

void TranscriptSearchState::recomputeMatchesFrom(qsizetype firstLine)
{
    const Shown before = shown();
    countHits(firstLine);
    goTo(0);
    emit matchesChanged();
    tellChangesSince(before);
}

void TranscriptSearchState::nextMatch()
{
    const int count = matchCount();
    if (count == 0)
        return;
    const Shown before = shown();
    goTo((m_currentMatchIndex + 1) % count);
    tellChangesSince(before);
}

void TranscriptSearchState::previousMatch()
{
    const int count = matchCount();
    if (count == 0)
        return;
    const Shown before = shown();
    goTo((m_currentMatchIndex - 1 + count) % count);
    tellChangesSince(before);
}

QString TranscriptSearchState::matchCounter() const
{
    if (matchCount() == 0)
        return QStringLiteral("0 / 0");
    return QStringLiteral("%1 / %2").arg(m_currentMatchIndex + 1).arg(matchCount());
}

std::vector<HighlightedRange> TranscriptSearchState::highlightedLine(QStringView text, qsizetype lineIndex) const
{
    std::vector<HighlightedRange> ranges;
    if (!m_painting)
        return ranges;
    for (const TextRange &hit : m_painting->hits(text)) {
        const bool isCurrent = m_current && m_current->match.line == lineIndex && m_current->match.start == hit.start;
        ranges.push_back({hit.start, hit.length, isCurrent});
    }
    return ranges;
}

std::vector<HighlightedRange> TranscriptSearchState::matchesInLine(QStringView text, qsizetype lineIndex) const
{
    std::vector<HighlightedRange> ranges;
    if (!m_counting)
        return ranges;
    CharacterRuler ruler(text);
    int index = 0;
    for (const TextRange &hit : m_counting->hits(text)) {
        ruler.advanceTo(hit.start);
        const qsizetype start = ruler.border();
        ruler.advanceTo(hit.start + hit.length);
        const bool isCurrent = m_current && m_current->match.line == lineIndex && m_current->indexInLine == index;
        ++index;
        if (ruler.border() > start)
            ranges.push_back({start, ruler.border() - start, isCurrent});
    }
    return ranges;
}

void TranscriptSearchState::countHits(qsizetype firstLine)
{
    if (!m_counting) {
        m_hitsUpTo.clear();
        return;
    }
    const auto kept = std::min(static_cast<std::size_t>(firstLine), m_hitsUpTo.size());
    m_hitsUpTo.resize(kept);
    int hits = matchCount();
    const qsizetype lineCount = m_lines.lineCount();
    for (auto line = static_cast<qsizetype>(kept); line < lineCount; ++line) {
        hits += static_cast<int>(m_counting->hitCount(m_lines.line(line)));
        m_hitsUpTo.push_back(hits);
    }
}

void TranscriptSearchState::goTo(int index)
{
    m_currentMatchIndex = index;
    m_current.reset();
    if (index < matchCount())
        m_current = CurrentMatch{match(index), placeOfMatch(index).indexInLine};
}

TranscriptSearchState::Place TranscriptSearchState::placeOfMatch(int index) const
{
    const auto line = std::upper_bound(m_hitsUpTo.begin(), m_hitsUpTo.end(), index);
    const int hitsBefore = line == m_hitsUpTo.begin() ? 0 : *(line - 1);
    return {static_cast<int>(line - m_hitsUpTo.begin()), index - hitsBefore};
}

TranscriptSearchState::Shown TranscriptSearchState::shown() const
{
    return {m_searchText, m_currentMatchIndex, matchCounter(), m_current};
}

void TranscriptSearchState::tellChangesSince(const Shown &before)
{
    const Shown now = shown();
    if (now.currentMatchIndex != before.currentMatchIndex) {
        emit currentMatchIndexChanged();
        if (now.current)
            emit scrollToCurrentMatch(now.current->match.line);
    }
    if (now.counter != before.counter)
        emit matchCounterChanged();
    if (now.current != before.current || now.searchText != before.searchText)
        emit highlightChanged();
}

} // namespace sorvanta
