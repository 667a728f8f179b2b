#include "platform/folded_text.h"

#include <unicode/normalizer2.h>
#include <unicode/uchar.h>
#include <unicode/unistr.h>
#include <unicode/unorm2.h>
#include <unicode/utf16.h>

#include <array>
#include <atomic>
#include <mutex>

namespace sorvanta {

namespace {

/// From here on a letter that has its mark built in stays apart from the letter without.
constexpr UChar32 firstUnreducedBase = 0x0510;

const icu::Normalizer2 &decomposition()
{
    static UErrorCode status = U_ZERO_ERROR;
    static const icu::Normalizer2 *const normalizer = icu::Normalizer2::getNFDInstance(status);
    return *normalizer;
}

const icu::Normalizer2 &composition()
{
    static UErrorCode status = U_ZERO_ERROR;
    static const icu::Normalizer2 *const normalizer = icu::Normalizer2::getNFCInstance(status);
    return *normalizer;
}

icu::UnicodeString normalized(const icu::Normalizer2 &normalizer, const icu::UnicodeString &text)
{
    UErrorCode status = U_ZERO_ERROR;
    return normalizer.normalize(text, status);
}

icu::UnicodeString foldedCase(UChar32 codePoint)
{
    return icu::UnicodeString(codePoint).foldCase(U_FOLD_CASE_DEFAULT);
}

/// Folds the base, which stands first. The marks have no case of their own.
icu::UnicodeString withFoldedBase(const icu::UnicodeString &decomposed)
{
    return foldedCase(decomposed.char32At(0)) + decomposed.tempSubString(decomposed.moveIndex32(0, 1));
}

icu::UnicodeString withoutMarks(const icu::UnicodeString &text)
{
    icu::UnicodeString result;
    for (int32_t i = 0; i < text.length(); i = text.moveIndex32(i, 1)) {
        if (!u_hasBinaryProperty(text.char32At(i), UCHAR_GRAPHEME_EXTEND))
            result += text.char32At(i);
    }
    return result;
}

/// Whether a code point has no decomposition.
bool isDecomposed(UChar32 codePoint)
{
    return u_getIntPropertyValue(codePoint, UCHAR_NFD_QUICK_CHECK) == UNORM_YES;
}

/// The unit that a unit folds to on its own, or 0 if there is no such thing.
char16_t computeFoldedUnit(char16_t unit)
{
    if (U16_IS_SURROGATE(unit) || unit == zeroWidthJoiner || extendsGroup(unit) || isConjoiningHangul(unit))
        return 0;
    const icu::UnicodeString decomposed = normalized(decomposition(), icu::UnicodeString(unit));
    if (foldedCase(decomposed.char32At(0)).countChar32() != 1)
        return 0;
    const icu::UnicodeString folded = normalized(composition(), withFoldedBase(decomposed));
    return folded.length() == 1 ? folded.charAt(0) : 0;
}

/// Whether a code point of two units stands for itself alone.
bool computeIsPlainPair(UChar32 codePoint)
{
    return !extendsGroup(codePoint) && decomposition().isInert(codePoint)
           && u_foldCase(codePoint, U_FOLD_CASE_DEFAULT) == codePoint;
}

/// How a code point begins a group, if no simple unit tells: no group begins with it, or one must look closer.
constexpr char16_t beginsNoGroup = 0xFFFF;
constexpr char16_t beginsAnyhow = 0;

/// The first element of all groups that begin with this unit, or one of the two above.
char16_t computeFirstElement(char16_t unit)
{
    if (U16_IS_SURROGATE(unit))
        return beginsAnyhow;
    if (extendsGroup(unit))
        return beginsNoGroup;
    const UChar32 base = normalized(decomposition(), icu::UnicodeString(unit)).char32At(0);
    if (u_getCombiningClass(base) != 0)
        return beginsAnyhow; // a mark behind it may be put before it
    const UChar32 first = foldedCase(base).char32At(0);
    return first < beginsNoGroup ? static_cast<char16_t>(first) : beginsAnyhow;
}

/// What is worked out for 256 code points at a time when the first of these is asked for. Any thread.
template<std::size_t size>
class FilledByPages {
public:
    template<typename Fill>
    void provide(std::size_t index, Fill fill)
    {
        const std::size_t page = index / pageSize;
        if (m_isFilled[page].load(std::memory_order_acquire))
            return;
        const std::scoped_lock lock(m_filling);
        if (m_isFilled[page].load(std::memory_order_relaxed))
            return;
        for (std::size_t each = page * pageSize; each < (page + 1) * pageSize; ++each)
            fill(each);
        m_isFilled[page].store(true, std::memory_order_release);
    }

private:
    static constexpr std::size_t pageSize = 256;

    std::array<std::atomic<bool>, size / pageSize> m_isFilled = {};
    std::mutex m_filling;
};

/// What is known of each unit.
class FoldedUnits {
public:
    /// computeFoldedUnit()
    char16_t operator[](char16_t unit)
    {
        provide(unit);
        return m_units[unit];
    }

    /// Whether the folded unit of `unit`, which was asked for before, does not decompose.
    bool isWhole(char16_t unit) const { return m_isWhole[unit]; }

    /// computeFirstElement()
    char16_t firstElement(char16_t unit)
    {
        provide(unit);
        return m_firstElements[unit];
    }

private:
    static constexpr std::size_t unitCount = 0x10000;

    void provide(char16_t wanted)
    {
        m_pages.provide(wanted, [this](std::size_t unit) {
            m_units[unit] = computeFoldedUnit(static_cast<char16_t>(unit));
            m_isWhole[unit] = isDecomposed(m_units[unit]);
            m_firstElements[unit] = computeFirstElement(static_cast<char16_t>(unit));
        });
    }

    std::array<char16_t, unitCount> m_units = {};
    std::array<char16_t, unitCount> m_firstElements = {};
    std::array<bool, unitCount> m_isWhole = {};
    FilledByPages<unitCount> m_pages;
};

// Both without a constructor to run, and their pages cost nothing until they are asked for.
FoldedUnits foldedUnits;

/// What is known of each code point of two units: computeIsPlainPair(), kept for the plane that emoji are in.
class PlainPairs {
public:
    bool operator[](UChar32 codePoint)
    {
        const auto index = static_cast<std::size_t>(codePoint) - firstPair;
        if (index >= planeSize)
            return computeIsPlainPair(codePoint);
        m_pages.provide(index, [this](std::size_t each) {
            m_isPlain[each] = computeIsPlainPair(static_cast<UChar32>(firstPair + each));
        });
        return m_isPlain[index];
    }

private:
    static constexpr std::size_t firstPair = 0x10000;
    static constexpr std::size_t planeSize = 0x10000;

    std::array<bool, planeSize> m_isPlain = {};
    FilledByPages<planeSize> m_pages;
};

PlainPairs plainPairs;

} // namespace

bool extendsGroup(UChar32 codePoint)
{
    return u_hasBinaryProperty(codePoint, UCHAR_GRAPHEME_EXTEND)
           || u_hasBinaryProperty(codePoint, UCHAR_EMOJI_MODIFIER);
}

bool isConjoiningHangul(UChar32 codePoint)
{
    switch (u_getIntPropertyValue(codePoint, UCHAR_HANGUL_SYLLABLE_TYPE)) {
    case U_HST_LEADING_JAMO:
    case U_HST_VOWEL_JAMO:
    case U_HST_TRAILING_JAMO:
        return true;
    default:
        return false;
    }
}

FoldedText::FoldedText(QStringView text, TextSearchOptions options, Role role)
    : m_text(text)
    , m_options(options)
    , m_role(role)
{
}

void FoldedText::beginAt(qsizetype position)
{
    m_next = position;
    m_groups.clear();
    m_elements.clear();
}

bool FoldedText::foldNext()
{
    const char16_t *units = m_text.utf16();
    const qsizetype size = m_text.size();
    const qsizetype start = m_next;
    if (start == size)
        return false;
    UChar32 first = 0;
    U16_NEXT(units, m_next, size, first);
    for (qsizetype next = m_next; next < size; m_next = next) {
        UChar32 codePoint = 0;
        if (foldedUnits[units[next]])
            break; // it stands for itself
        U16_NEXT(units, next, size, codePoint);
        if (!extendsGroup(codePoint))
            break;
    }
    const QStringView group = m_text.sliced(start, m_next - start);
    if (m_options != TextSearchOptions::caseInsensitive || !addPlainGroup(group, start, first))
        addGroup(group, start, first);
    return true;
}

void FoldedText::foldAll()
{
    m_elements.reserve(static_cast<std::size_t>(m_text.size()));
    m_groups.reserve(static_cast<std::size_t>(m_text.size()));
    while (foldNext()) { }
}

/// What addGroup() does where marks count, for the groups of which most texts are made: a base alone, or one that does
/// not decompose with one mark. Returns false for another group.
bool FoldedText::addPlainGroup(QStringView group, qsizetype start, UChar32 first)
{
    const bool isPair = U16_LENGTH(first) == 2;
    const UChar32 base = isPair ? (plainPairs[first] ? first : 0) : foldedUnits[static_cast<char16_t>(first)];
    const QStringView rest = group.sliced(U16_LENGTH(first));
    const bool isWhole = isPair || foldedUnits.isWhole(static_cast<char16_t>(first));
    if (base == 0 || (!rest.isEmpty() && !isWhole))
        return false;
    UChar32 mark = 0;
    if (!rest.isEmpty()) {
        U16_GET(rest.utf16(), 0, 0, rest.size(), mark);
        if (U16_LENGTH(mark) != rest.size() || !isDecomposed(mark))
            return false;
    }
    const qsizetype end = start + group.size();
    m_groups.push_back({start, end, end, m_elements.size()});
    if (isWhole) {
        m_elements.push_back({base, false, m_groups.size() - 1});
    } else {
        const icu::UnicodeString decomposed = normalized(decomposition(), icu::UnicodeString(base));
        for (int32_t i = 0; i < decomposed.length(); i = decomposed.moveIndex32(i, 1))
            m_elements.push_back({decomposed.char32At(i), false, m_groups.size() - 1});
    }
    if (!rest.isEmpty())
        m_elements.push_back({mark, false, m_groups.size() - 1});
    return true;
}

void FoldedText::addGroup(QStringView group, qsizetype start, UChar32 first)
{
    const auto firstElement = m_elements.size();
    const auto add = [this](const icu::UnicodeString &folded, bool areOptional) {
        for (int32_t i = 0; i < folded.length(); i = folded.moveIndex32(i, 1))
            m_elements.push_back({folded.char32At(i), areOptional, m_groups.size()});
    };
    const qsizetype end = start + group.size();
    qsizetype coreEnd = end;
    const icu::UnicodeString whole(false, group.utf16(), static_cast<int32_t>(group.size()));
    const UChar32 base = normalized(decomposition(), icu::UnicodeString(first)).char32At(0);

    if (m_options == TextSearchOptions::caseInsensitive) {
        add(withFoldedBase(normalized(decomposition(), whole)), false);
    } else if (base < firstUnreducedBase) {
        add(withoutMarks(foldedCase(base)), false);
    } else {
        // A mark that makes another letter of its base counts if the needle has it, however it is written.
        const auto counted = m_role == Role::needle ? whole : icu::UnicodeString(first);
        const icu::UnicodeString composed = normalized(composition(), counted);
        const UChar32 letter = composed.char32At(0);
        add(withFoldedBase(normalized(decomposition(), icu::UnicodeString(letter))), false);
        if (m_role == Role::text) {
            const icu::UnicodeString marks = composed.tempSubString(U16_LENGTH(letter));
            add(normalized(decomposition(), marks + whole.tempSubString(U16_LENGTH(first))), true);
            coreEnd = start + U16_LENGTH(first);
        }
    }
    if (m_elements.size() > firstElement)
        m_groups.push_back({start, coreEnd, end, firstElement});
}

qsizetype nextGroupThatMayBeginWith(UChar32 element, QStringView text, qsizetype from)
{
    const qsizetype size = text.size();
    for (qsizetype i = from; i < size; ++i) {
        const char16_t unit = text[i].unicode();
        if (U16_IS_LEAD(unit) && i + 1 < size && U16_IS_TRAIL(text[i + 1].unicode())) {
            const UChar32 codePoint = U16_GET_SUPPLEMENTARY(unit, text[i + 1].unicode());
            const bool mayBegin = plainPairs[codePoint] ? codePoint == element : !extendsGroup(codePoint);
            if (mayBegin || i == 0)
                return i;
            ++i;
            continue;
        }
        const char16_t first = foldedUnits.firstElement(unit);
        if (i == 0 || first == beginsAnyhow || (first == element && first != beginsNoGroup))
            return i;
    }
    return size;
}

bool foldUnitByUnit(QStringView text, Utf16Units &units)
{
    const qsizetype size = text.size();
    units.resize(size);
    for (qsizetype i = 0; i < size; ++i) {
        const char16_t unit = text[i].unicode();
        if (const char16_t folded = foldedUnits[unit]) {
            units[i] = folded;
            continue;
        }
        const bool isPair = U16_IS_LEAD(unit) && i + 1 < size && U16_IS_TRAIL(text[i + 1].unicode());
        if (!isPair || !plainPairs[U16_GET_SUPPLEMENTARY(unit, text[i + 1].unicode())])
            return false;
        units[i] = unit;
        ++i;
        units[i] = text[i].unicode();
    }
    return true;
}

} // namespace sorvanta
