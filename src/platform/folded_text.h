#pragma once

#include <QString>
#include <QStringView>
#include <QVarLengthArray>

#include <unicode/utypes.h>

#include <vector>

namespace sorvanta {

/// What counts as equal when texts are compared. Canonically equivalent texts always do; compatibility forms (full
/// width, superscripts) never do. No language has rules of its own.
enum class TextSearchOptions {
    caseInsensitive, ///< letters that differ in case, by the full default case folding: "ß" equals "SS"
    caseAndDiacriticInsensitive, ///< and letters that differ in their marks: "é" equals "e"
};

/// A text in the form in which it is compared.
///
/// It is made group by group: a code point with the combining marks and emoji modifiers behind it. Nothing shorter than
/// a group is ever equal to anything, so "e" is not in "é" where marks count. Groups are folded when they are asked
/// for, from the beginning of the text or from where beginAt() says.
class FoldedText {
public:
    enum class Role {
        needle, ///< what is searched for
        text, ///< what is searched in
    };

    struct Group {
        qsizetype start; ///< in UTF-16 units of the text, as the other two
        qsizetype coreEnd; ///< behind what must be there; `end` but for marks that may be passed over
        qsizetype end;
        std::size_t firstElement;
    };

    struct Element {
        UChar32 codePoint;
        bool isOptional; ///< a mark that may be passed over
        std::size_t group;
    };

    /// @param text must outlive this
    FoldedText(QStringView text, TextSearchOptions options, Role role);

    /// Forgets what was folded and goes on at `position`, where a group begins.
    void beginAt(qsizetype position);

    /// Folds the next group. Returns false behind the last one.
    bool foldNext();
    void foldAll();

    /// What was folded so far. Those with elements; marks at the very beginning may have none.
    const std::vector<Group> &groups() const { return m_groups; }
    const std::vector<Element> &elements() const { return m_elements; }

private:
    bool addPlainGroup(QStringView group, qsizetype start, UChar32 first);
    void addGroup(QStringView group, qsizetype start, UChar32 first);

    QStringView m_text;
    TextSearchOptions m_options;
    Role m_role;
    qsizetype m_next = 0;
    std::vector<Group> m_groups;
    std::vector<Element> m_elements;
};

constexpr UChar32 zeroWidthJoiner = 0x200D;

/// Whether a code point belongs to the group of the one before it.
bool extendsGroup(UChar32 codePoint);

/// Whether a code point is a part of a Hangul syllable that is written in parts.
bool isConjoiningHangul(UChar32 codePoint);

/// The beginning of the first group of `text` at or behind `from` that may have `element` as its first one when it is
/// folded for TextSearchOptions::caseInsensitive; the size of the text if there is none.
/// @param from where a group begins, or the end
qsizetype nextGroupThatMayBeginWith(UChar32 element, QStringView text, qsizetype from);

using Utf16Units = QVarLengthArray<char16_t, 1024>;

/// Folds a text for TextSearchOptions::caseInsensitive without its length changing: each code point gives place to one
/// of the same length, the composed form of its folded text. Two texts for which this goes well are equal if their
/// units are, and a place in the one is the same place in the other.
/// @return false if it does not go well: the text has marks, joiners, unpaired surrogates, conjoining Hangul letters or
///   letters that fold to more than one
bool foldUnitByUnit(QStringView text, Utf16Units &units);

} // namespace sorvanta
