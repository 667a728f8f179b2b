#pragma once

#include "platform/folded_text.h"

#include <QStringView>

#include <optional>
#include <vector>

namespace sorvanta {

/// A piece of a text, in UTF-16 units.
struct TextRange {
    qsizetype start = 0;
    qsizetype length = 0;

    bool operator==(const TextRange &) const = default;
};

/// A text to search for, made ready once for searching in many. Any thread.
///
/// A hit begins where a code point with its marks begins and ends where one ends, so it may still lie within a
/// user-perceived character: the woman in a family of emoji is found. It is refused where it ends within one for a
/// mark, a joiner or a Hangul letter that would be cut off; where marks do not count, they are left out at its end or
/// taken in, according to the script. The empty text is found nowhere. Nothing else is ignored, no soft hyphen and no
/// zero-width space.
class TextSearch {
public:
    TextSearch(QStringView needle, TextSearchOptions options);

    /// All hits from left to right; each search goes on behind the last hit, so they do not overlap.
    std::vector<TextRange> hits(QStringView text) const;

    /// The number of hits() without their places.
    qsizetype hitCount(QStringView text) const;

private:
    struct MatchEnd {
        std::size_t group;
        qsizetype position;
    };

    template<typename Visitor>
    void forEachHit(QStringView text, Visitor visit) const;
    template<typename Visitor>
    void forEachFoldedHit(QStringView text, Visitor visit) const;
    template<typename Visitor>
    void forEachHitByGroups(QStringView text, Visitor visit) const;
    template<typename Visitor>
    void forEachHitOfAllGroups(QStringView text, Visitor visit) const;
    std::optional<MatchEnd> endOfMatch(FoldedText &text, std::size_t first) const;
    static bool isRefused(QStringView text, TextRange hit);

    TextSearchOptions m_options;
    std::vector<UChar32> m_elements; // the folded needle
    Utf16Units m_units; // the same by foldUnitByUnit(); empty if it cannot be in a text folded like this
};

/// Whether a joiner or a part of a Hangul syllable holds together what stands on both sides of `place`, so that no hit
/// may end there.
/// @param place in UTF-16 units, neither at the beginning nor at the end of the text
bool isHeldTogetherAt(QStringView text, qsizetype place);

} // namespace sorvanta
