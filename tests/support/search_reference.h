#pragma once

#include <QString>

#include <unicode/brkiter.h>
#include <unicode/normalizer2.h>
#include <unicode/uchar.h>
#include <unicode/unistr.h>

#include <memory>
#include <utility>
#include <vector>

/// A search that ignores case, written straight from its rules without a thought of speed: at each group of the text
/// (a code point with what extends it) the folded groups are put together one by one until they are the folded needle.
class SearchReference {
public:
    using Hit = std::pair<int, int>; ///< start and end, in UTF-16 units

    static std::vector<Hit> hits(const QString &needle, const QString &text)
    {
        const icu::UnicodeString wanted = fold(toIcu(needle));
        const icu::UnicodeString units = toIcu(text);
        const std::vector<int> starts = groupStarts(units);
        std::vector<Hit> all;
        for (std::size_t first = 0; first + 1 < starts.size() && !wanted.isEmpty();) {
            icu::UnicodeString folded;
            std::size_t last = first;
            while (last + 1 < starts.size() && folded.length() < wanted.length()) {
                folded += fold(units.tempSubStringBetween(starts[last], starts[last + 1]));
                ++last;
            }
            if (folded == wanted && !cutsOff(units, starts[last])) {
                all.emplace_back(starts[first], starts[last]);
                first = last;
            } else {
                ++first;
            }
        }
        return all;
    }

    /// The borders of the user-perceived characters of a text, its beginning and end included.
    static std::vector<int> characterBorders(const QString &text)
    {
        UErrorCode status = U_ZERO_ERROR;
        const std::unique_ptr<icu::BreakIterator> iterator(
            icu::BreakIterator::createCharacterInstance(icu::Locale::getRoot(), status));
        const icu::UnicodeString units = toIcu(text);
        iterator->setText(units);
        std::vector<int> borders;
        for (int border = iterator->first(); border != icu::BreakIterator::DONE; border = iterator->next())
            borders.push_back(border);
        return borders;
    }

private:
    static icu::UnicodeString toIcu(const QString &text)
    {
        return {reinterpret_cast<const UChar *>(text.utf16()), static_cast<int32_t>(text.size())};
    }

    static bool extends(UChar32 c)
    {
        return u_hasBinaryProperty(c, UCHAR_GRAPHEME_EXTEND) || u_hasBinaryProperty(c, UCHAR_EMOJI_MODIFIER);
    }

    static std::vector<int> groupStarts(const icu::UnicodeString &text)
    {
        std::vector<int> starts;
        for (int i = 0; i < text.length(); i = text.moveIndex32(i, 1)) {
            if (i == 0 || !extends(text.char32At(i)))
                starts.push_back(i);
        }
        starts.push_back(text.length());
        return starts;
    }

    /// Each group decomposed, and its base folded.
    static icu::UnicodeString fold(const icu::UnicodeString &text)
    {
        UErrorCode status = U_ZERO_ERROR;
        const std::vector<int> starts = groupStarts(text);
        icu::UnicodeString result;
        for (std::size_t i = 0; i + 1 < starts.size(); ++i) {
            const icu::UnicodeString decomposed = icu::Normalizer2::getNFDInstance(status)->normalize(
                text.tempSubStringBetween(starts[i], starts[i + 1]), status);
            icu::UnicodeString base(decomposed.char32At(0));
            result += base.foldCase(U_FOLD_CASE_DEFAULT);
            result += decomposed.tempSubString(decomposed.moveIndex32(0, 1));
        }
        return result;
    }

    static bool isJamo(UChar32 c)
    {
        const int type = u_getIntPropertyValue(c, UCHAR_HANGUL_SYLLABLE_TYPE);
        return type == U_HST_LEADING_JAMO || type == U_HST_VOWEL_JAMO || type == U_HST_TRAILING_JAMO;
    }

    static bool cutsOff(const icu::UnicodeString &text, int end)
    {
        if (end == text.length())
            return false;
        const UChar32 last = text.char32At(end - 1);
        const bool isSyllable = u_getIntPropertyValue(last, UCHAR_HANGUL_SYLLABLE_TYPE) != U_HST_NOT_APPLICABLE;
        const bool holdsOn = last == 0x034F || last == 0x200D || u_getCombiningClass(last) == 9 || isJamo(last)
                             || (isSyllable && isJamo(text.char32At(end)));
        UErrorCode status = U_ZERO_ERROR;
        const std::unique_ptr<icu::BreakIterator> iterator(
            icu::BreakIterator::createCharacterInstance(icu::Locale::getRoot(), status));
        iterator->setText(text);
        return holdsOn && !iterator->isBoundary(end);
    }
};
