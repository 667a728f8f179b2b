#pragma once

#include "core/text_lines.h"
#include "platform/text_search.h"

#include <QObject>
#include <QString>

#include <optional>
#include <vector>

namespace sorvanta {

/// One hit. A hit within a user-perceived character counts from that character on and has a length of 0.
struct Match {
    int line = 0; ///< index of the line in the shown text
    int start = 0; ///< offset in the line, in whole characters (grapheme clusters)
    int length = 0; ///< in whole characters

    bool operator==(const Match &) const = default;
};

/// A piece of a line that is painted over.
struct HighlightedRange {
    qsizetype start = 0; ///< in UTF-16 units, as `length`
    qsizetype length = 0;
    bool isCurrent = false; ///< of the hit that the arrows stand at

    bool operator==(const HighlightedRange &) const = default;
};

/// What is searched for in a shown text, its hits, and which of them is current. Main thread only.
///
/// Only the number of hits in each line is kept; a hit is worked out when it is asked for. So whoever changes the shown
/// text calls recomputeMatches() or recomputeMatchesFrom() before anything else is asked.
class TranscriptSearchState : public QObject {
    Q_OBJECT
    Q_PROPERTY(QString searchText READ searchText WRITE setSearchText NOTIFY searchTextChanged)
    Q_PROPERTY(int matchCount READ matchCount NOTIFY matchesChanged)
    Q_PROPERTY(int currentMatchIndex READ currentMatchIndex NOTIFY currentMatchIndexChanged)
    Q_PROPERTY(QString matchCounter READ matchCounter NOTIFY matchCounterChanged)

public:
    /// @param lines of the shown text; must outlive this
    explicit TranscriptSearchState(const TextLines &lines, QObject *parent = nullptr);

    const QString &searchText() const { return m_searchText; }
    void setSearchText(const QString &searchText);

    int matchCount() const { return m_hitsUpTo.empty() ? 0 : m_hitsUpTo.back(); }

    /// The hit of an index, 0 to matchCount() - 1, in reading order.
    Match match(int index) const;

    /// All hits in reading order. They are worked out at each call, at the cost of a search through the whole text.
    std::vector<Match> matches() const;

    int currentMatchIndex() const { return m_currentMatchIndex; }

    /// Searches the whole shown text again and goes back to the first hit.
    void recomputeMatches() { recomputeMatchesFrom(0); }

    /// The same where the lines before `firstLine` are as they were: only those from there on are searched.
    void recomputeMatchesFrom(qsizetype firstLine);

    /// Go round at the ends.
    Q_INVOKABLE void nextMatch();
    Q_INVOKABLE void previousMatch();

    /// "2 / 17"; "0 / 0" without hits.
    QString matchCounter() const;

    /// What is painted over in a line of the shown text, from left to right. Marks of letters are ignored here, so more
    /// may be painted than is counted; and the current hit is known by its offset, so behind a character of more than
    /// one UTF-16 unit it is painted like any other.
    std::vector<HighlightedRange> highlightedLine(QStringView text, qsizetype lineIndex) const;

    /// The hits that are counted in a line of the shown text, from left to right, as the viewer paints them: whole
    /// user-perceived characters, the current hit always told apart.
    std::vector<HighlightedRange> matchesInLine(QStringView text, qsizetype lineIndex) const;

Q_SIGNALS:
    void searchTextChanged();
    /// The hits were searched anew.
    void matchesChanged();
    void currentMatchIndexChanged();
    void matchCounterChanged();
    /// Lines whose text stayed as it was are painted differently now.
    void highlightChanged();
    /// The current hit is another: the row of its line is to be scrolled to the centre of the view.
    void scrollToCurrentMatch(int line);

private:
    /// The current hit as it was when it was last searched.
    struct CurrentMatch {
        Match match;
        int indexInLine = 0;

        bool operator==(const CurrentMatch &) const = default;
    };

    /// What is told of when it changes.
    struct Shown {
        QString searchText;
        int currentMatchIndex = 0;
        QString counter;
        std::optional<CurrentMatch> current;
    };

    void countHits(qsizetype firstLine);
    void goTo(int index);
    Shown shown() const;
    void tellChangesSince(const Shown &before);

    /// Which of the hits of which line.
    struct Place {
        int line;
        int indexInLine;
    };
    Place placeOfMatch(int index) const;

    const TextLines &m_lines;
    QString m_searchText;
    // Of a query that is not blank: the search that counts, and the one that paints.
    std::optional<TextSearch> m_counting;
    std::optional<TextSearch> m_painting;
    std::vector<int> m_hitsUpTo; // for each line the number of hits in it and in those before it
    int m_currentMatchIndex = 0;
    std::optional<CurrentMatch> m_current;
};

} // namespace sorvanta
