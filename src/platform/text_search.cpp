#include "platform/text_search.h"

#include "platform/unicode_text.h"

#include <unicode/normalizer2.h>
#include <unicode/uchar.h>
#include <unicode/unistr.h>
#include <unicode/utf16.h>

namespace sorvanta {

namespace {

constexpr UChar32 combiningGraphemeJoiner = 0x034F;
constexpr uint8_t viramaClass = 9;

bool isHangul(UChar32 codePoint)
{
    return u_getIntPropertyValue(codePoint, UCHAR_HANGUL_SYLLABLE_TYPE) != U_HST_NOT_APPLICABLE;
}

/// Whether what stands in front holds on to what follows if both are in one user-perceived character.
bool holdsOn(UChar32 last, UChar32 next)
{
    if (last == combiningGraphemeJoiner || last == zeroWidthJoiner || u_getCombiningClass(last) == viramaClass)
        return true;
    return isConjoiningHangul(last) || (isHangul(last) && isConjoiningHangul(next));
}

QStringView viewOf(const Utf16Units &units)
{
    return {units.data(), units.size()};
}

} // namespace

TextSearch::TextSearch(QStringView needle, TextSearchOptions options)
    : m_options(options)
{
    icu::UnicodeString decomposed;
    FoldedText folded(needle, options, FoldedText::Role::needle);
    folded.foldAll();
    for (const FoldedText::Element &element : folded.elements()) {
        m_elements.push_back(element.codePoint);
        decomposed += element.codePoint;
    }
    UErrorCode status = U_ZERO_ERROR;
    const icu::UnicodeString composed = icu::Normalizer2::getNFCInstance(status)->normalize(decomposed, status);
    if (!foldUnitByUnit(QStringView(composed.getBuffer(), composed.length()), m_units))
        m_units.clear();
}

std::vector<TextRange> TextSearch::hits(QStringView text) const
{
    std::vector<TextRange> all;
    forEachHit(text, [&all](TextRange hit) { all.push_back(hit); });
    return all;
}

qsizetype TextSearch::hitCount(QStringView text) const
{
    qsizetype count = 0;
    forEachHit(text, [&count](TextRange) { ++count; });
    return count;
}

/// @param visit is called with each hit
template<typename Visitor>
void TextSearch::forEachHit(QStringView text, Visitor visit) const
{
    if (m_elements.empty())
        return;
    Utf16Units units;
    if (m_options != TextSearchOptions::caseInsensitive || !foldUnitByUnit(text, units)) {
        forEachFoldedHit(text, visit);
        return;
    }
    const QStringView needle = viewOf(m_units);
    if (needle.isEmpty())
        return;
    for (qsizetype at = viewOf(units).indexOf(needle); at >= 0; at = viewOf(units).indexOf(needle, at + needle.size()))
        visit(TextRange{at, needle.size()});
}

/// The same where the text cannot be folded unit by unit.
template<typename Visitor>
void TextSearch::forEachFoldedHit(QStringView text, Visitor visit) const
{
    if (m_options == TextSearchOptions::caseInsensitive)
        forEachHitByGroups(text, visit);
    else
        forEachHitOfAllGroups(text, visit);
}

/// Folds only where a hit may begin, and as far as it goes.
template<typename Visitor>
void TextSearch::forEachHitByGroups(QStringView text, Visitor visit) const
{
    FoldedText folded(text, m_options, FoldedText::Role::text);
    const auto next = [this, text](qsizetype from) {
        return nextGroupThatMayBeginWith(m_elements.front(), text, from);
    };
    for (qsizetype at = next(0); at < text.size();) {
        folded.beginAt(at);
        folded.foldNext();
        const auto end = endOfMatch(folded, 0);
        const TextRange hit{at, end ? end->position - at : 0};
        if (!end || isRefused(text, hit)) {
            at = next(folded.groups().front().end);
            continue;
        }
        visit(hit);
        at = next(end->position);
    }
}

template<typename Visitor>
void TextSearch::forEachHitOfAllGroups(QStringView text, Visitor visit) const
{
    FoldedText folded(text, m_options, FoldedText::Role::text);
    folded.foldAll();
    const auto &groups = folded.groups();
    for (std::size_t group = 0; group < groups.size();) {
        const auto end = endOfMatch(folded, group);
        if (!end) {
            ++group;
            continue;
        }
        visit(TextRange{groups[group].start, end->position - groups[group].start});
        group = end->group + 1;
    }
}

/// The end of a match that begins with the group `first`, or none if there is no match. Folds on as far as it must.
std::optional<TextSearch::MatchEnd> TextSearch::endOfMatch(FoldedText &text, std::size_t first) const
{
    const auto &elements = text.elements();
    std::size_t next = text.groups()[first].firstElement;
    for (const UChar32 codePoint : m_elements) {
        while (next < elements.size() && elements[next].codePoint != codePoint && elements[next].isOptional)
            ++next;
        if (next == elements.size() && !text.foldNext())
            return std::nullopt;
        if (elements[next].codePoint != codePoint)
            return std::nullopt;
        ++next;
    }
    const FoldedText::Element &last = elements[next - 1];
    const bool isGroupCut = next < elements.size() && elements[next].group == last.group && !elements[next].isOptional;
    if (isGroupCut)
        return std::nullopt;
    const FoldedText::Group &group = text.groups()[last.group];
    return MatchEnd{last.group, last.isOptional ? group.end : group.coreEnd};
}

/// Whether a hit where marks count ends within a user-perceived character for what would be cut off.
bool TextSearch::isRefused(QStringView text, TextRange hit)
{
    const qsizetype end = hit.start + hit.length;
    return end < text.size() && isHeldTogetherAt(text, end);
}

bool isHeldTogetherAt(QStringView text, qsizetype place)
{
    UChar32 last = 0;
    UChar32 next = 0;
    U16_GET(text.utf16(), 0, place - 1, text.size(), last);
    U16_GET(text.utf16(), 0, place, text.size(), next);
    return holdsOn(last, next) && !GraphemeClusters(text).isBorder(place);
}

} // namespace sorvanta
