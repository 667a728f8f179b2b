#include "platform/text_search.h"

#include "support/printing.h"
#include "support/random_script.h"
#include "support/search_reference.h"

#include <gtest/gtest.h>

#include <ostream>

namespace sorvanta {

static void PrintTo(const TextRange &range, std::ostream *out)
{
    *out << range.start << ',' << range.length;
}

} // namespace sorvanta

using namespace sorvanta;

namespace {

using Hit = std::optional<TextRange>;

/// The first hit, or none.
Hit firstHit(const TextSearch &search, QStringView text)
{
    const std::vector<TextRange> hits = search.hits(text);
    return hits.empty() ? Hit() : hits.front();
}

Hit hitIgnoringCase(QStringView needle, QStringView text)
{
    return firstHit(TextSearch(needle, TextSearchOptions::caseInsensitive), text);
}

Hit hitIgnoringMarks(QStringView needle, QStringView text)
{
    return firstHit(TextSearch(needle, TextSearchOptions::caseAndDiacriticInsensitive), text);
}

Hit at(qsizetype start, qsizetype length)
{
    return TextRange{start, length};
}

constexpr Hit none = std::nullopt;

struct Example {
    QStringView needle;
    QStringView text;
    Hit ignoringCase;
    Hit ignoringMarks;
};

void PrintTo(const Example &example, std::ostream *out)
{
    ::PrintTo(example.needle, out);
    *out << " in ";
    ::PrintTo(example.text, out);
}

class TextSearchExample : public testing::TestWithParam<Example> { };

TEST_P(TextSearchExample, isFoundWhereTheTableSays)
{
    EXPECT_EQ(hitIgnoringCase(GetParam().needle, GetParam().text), GetParam().ignoringCase);
    EXPECT_EQ(hitIgnoringMarks(GetParam().needle, GetParam().text), GetParam().ignoringMarks);
}

const Example examples[] = {
    {u"e", u"\u00E9", none, at(0, 1)},
    {u"e", u"e\u0301", none, at(0, 2)},
    {u"\u00E9", u"e\u0301", at(0, 2), at(0, 2)},
    {u"e\u0301", u"\u00C9", at(0, 1), at(0, 1)},
    {u"\u00E9", u"e", none, at(0, 1)},
    {u"\u00E9", u"E\u0301\u0302", none, at(0, 3)},
    {u"caf", u"cafe\u0301", at(0, 3), at(0, 3)},
    {u"cafe", u"caf\u00E9 x", none, at(0, 4)},
    {u"SS", u"Straße", at(4, 1), at(4, 1)},
    {u"straße", u"STRASSE x", at(0, 7), at(0, 7)},
    {u"s", u"ß", none, none},
    {u"as", u"aß", none, none},
    {u"se", u"ße", none, none},
    {u"sse", u"aße", at(1, 2), at(1, 2)},
    {u"fi", u"\uFB01", at(0, 1), at(0, 1)},
    {u"f", u"\uFB01", none, none},
    {u"ae", u"æ", none, none},
    {u"i", u"\u0130", none, at(0, 1)},
    {u"i", u"\u0131", none, none},
    {u"i\u0307", u"\u0130", at(0, 1), at(0, 1)},
    {u"istanbul", u"\u0130stanbul", none, at(0, 8)},
    {u"a", u"\uFF41", none, none},
    {u"\uFF21", u"\uFF41", at(0, 1), at(0, 1)},
    {u"か", u"が", none, none},
    {u"か", u"か\u3099", none, at(0, 1)},
    {u"\uD55C", u"\u1112\u1161\u11AB", at(0, 3), at(0, 3)},
    {u"하", u"한", none, none},
    {u"하", u"\u1112\u1161\u11AB", none, at(0, 2)},
    {u"и", u"й", none, at(0, 1)},
    {u"е", u"Ё", none, at(0, 1)},
    {u"α", u"\u1FB3", none, at(0, 1)},
    {u"o", u"ø", none, none},
    {u"o", u"ơ", none, at(0, 1)},
    {u"\u0643\u062A\u0628", u"\u0643\u064E\u062A\u064E\u0628\u064E", none, at(0, 5)},
    {u"👍", u"👍🏽", none, at(0, 2)},
    {u"❤", u"❤\uFE0F", none, at(0, 1)},
    {u"👩", u"👨\u200D👩\u200D👧", at(3, 2), at(3, 2)},
    {u"🇸", u"🇺🇸", at(2, 2), at(2, 2)},
    {u"1", u"1\uFE0F\u20E3", none, at(0, 3)},
    {u"\n", u"\r\n", at(1, 1), at(1, 1)},
    {u"ab", u"a\u00ADb", none, none},
    {u"ab", u"a\u200Bb", none, none},
    {u"a b", u"a\u00A0b", none, none},
    {u"don't", u"don’t", none, none},
    {u"2", u"²", none, none},
};

INSTANTIATE_TEST_SUITE_P(Table, TextSearchExample, testing::ValuesIn(examples));

TEST(TextSearch, takesCanonicallyEquivalentTextsForEqual)
{
    EXPECT_EQ(hitIgnoringCase(u"\u1EC7", u"xe\u0302\u0323"), at(1, 3)) << "marks are put in order";
    EXPECT_EQ(hitIgnoringCase(u"e\u0323\u0302", u"\u1EC7"), at(0, 1));
    EXPECT_EQ(hitIgnoringCase(u"e\u0302\u0323", u"e\u0323\u0302"), at(0, 3));
    EXPECT_EQ(hitIgnoringCase(u"\u2126", u"ω"), at(0, 1));
    EXPECT_EQ(hitIgnoringMarks(u"が", u"か\u3099"), at(0, 2)) << "also where precomposed letters are not reduced";
    EXPECT_EQ(hitIgnoringMarks(u"か\u3099", u"が"), at(0, 1));
    EXPECT_EQ(hitIgnoringMarks(u"か\u3099", u"か"), none);
    EXPECT_EQ(hitIgnoringMarks(u"\u05E9\u05C1", u"\uFB2A"), at(0, 1));
    EXPECT_EQ(hitIgnoringMarks(u"\uFB2A", u"\u05E9\u05C1"), at(0, 1));
    EXPECT_EQ(hitIgnoringMarks(u"\u0623", u"\u0627\u0650\u0654"), at(0, 3));
}

TEST(TextSearch, foldsCaseInFullAndWithoutTheRulesOfALanguage)
{
    EXPECT_EQ(hitIgnoringCase(u"ß", u"\u1E9E"), at(0, 1));
    EXPECT_EQ(hitIgnoringCase(u"ss", u"\u1E9E"), at(0, 1));
    EXPECT_EQ(hitIgnoringCase(u"\uFB03", u"FFI"), at(0, 3));
    EXPECT_EQ(hitIgnoringCase(u"\u0149", u"\u02BCN"), at(0, 2));
    EXPECT_EQ(hitIgnoringCase(u"ς", u"Σ"), at(0, 1));
    EXPECT_EQ(hitIgnoringCase(u"σ", u"ς"), at(0, 1));
    EXPECT_EQ(hitIgnoringCase(u"k", u"\u212A"), at(0, 1));
    EXPECT_EQ(hitIgnoringCase(u"ſ", u"S"), at(0, 1));
    EXPECT_EQ(hitIgnoringCase(u"µ", u"Μ"), at(0, 1));
    EXPECT_EQ(hitIgnoringCase(u"I", u"i"), at(0, 1)) << "not Turkish";
    EXPECT_EQ(hitIgnoringCase(u"ПРИВЕТ", u"o привет"), at(2, 6));
    EXPECT_EQ(hitIgnoringCase(u"𐐀", u"𐐨"), at(0, 2));
}

TEST(TextSearch, leavesCompatibilityFormsApart)
{
    for (const auto &[needle, text] : {std::pair(u"カ", u"ｶ"),
                                       {u"か", u"カ"},
                                       {u"œ", u"oe"},
                                       {u"ǆ", u"dž"},
                                       {u"№", u"no"},
                                       {u"½", u"1⁄2"},
                                       {u"...", u"…"},
                                       {u"l", u"ł"}}) {
        SCOPED_TRACE(QStringView(needle).toString().toStdString());
        EXPECT_EQ(hitIgnoringCase(needle, text), none);
        EXPECT_EQ(hitIgnoringMarks(needle, text), none);
    }
    EXPECT_EQ(hitIgnoringCase(u"Ǆ", u"ǆ"), at(0, 1));
}

TEST(TextSearch, refusesAHitWhoseEndCutsACharacterOff)
{
    for (const char16_t *text : {u"a\u0301", u"a\uFE0F", u"a\u20E3", u"a\u3099", u"a\uFF9E", u"a🏽"}) {
        SCOPED_TRACE(QStringView(text).toString().toStdString());
        EXPECT_EQ(hitIgnoringCase(u"a", text), none);
    }
    EXPECT_EQ(hitIgnoringCase(u"\u1112\u1161", u"\u1112\u1161\u11AB"), none);
    EXPECT_EQ(hitIgnoringCase(u"하", u"하\u11AB"), none);
    EXPECT_EQ(hitIgnoringCase(u"👩\u200D", u"👩\u200D👧"), none);
    EXPECT_EQ(hitIgnoringCase(u"क\u094D", u"क\u094D\u093E"), none);
    EXPECT_EQ(hitIgnoringCase(u"a\u034F", u"a\u034F\u093E"), none);
    EXPECT_EQ(hitIgnoringCase(u"a", u"a\u0301 a"), at(3, 1)) << "and goes on";
}

TEST(TextSearch, doesNotRefuseAHitForJoinersSpacingMarksOrFlagsBehindOrForItsStart)
{
    EXPECT_EQ(hitIgnoringCase(u"👩", u"👩\u200D👧"), at(0, 2));
    EXPECT_EQ(hitIgnoringCase(u"क", u"क\u093E"), at(0, 1));
    EXPECT_EQ(hitIgnoringCase(u"🇺", u"🇺🇸"), at(0, 2));
    EXPECT_EQ(hitIgnoringCase(u"\r", u"\r\n"), at(0, 1));
    EXPECT_EQ(hitIgnoringCase(u"\u1161\u11AB", u"\u1112\u1161\u11AB"), at(1, 2));
}

TEST(TextSearch, takesNoPartOfALetterThatFoldsToMore)
{
    EXPECT_EQ(hitIgnoringCase(u"i", u"\uFB01"), none);
    EXPECT_EQ(hitIgnoringCase(u"ass", u"aß"), at(0, 2));
    EXPECT_EQ(hitIgnoringCase(u"s", u"ßs"), at(1, 1));
    EXPECT_EQ(hitIgnoringCase(u"sss", u"ßß"), none);
    EXPECT_EQ(hitIgnoringCase(u"ssss", u"ßß"), at(0, 2));
}

TEST(TextSearch, ignoresAllMarksOfLatinGreekAndCyrillicIfAsked)
{
    EXPECT_EQ(hitIgnoringMarks(u"é", u"xè"), at(1, 1)) << "both ways";
    EXPECT_EQ(hitIgnoringMarks(u"e\u0323", u"\u1EC7"), at(0, 1));
    EXPECT_EQ(hitIgnoringMarks(u"ή", u"Η"), at(0, 1));
    EXPECT_EQ(hitIgnoringMarks(u"!", u"!\uFE0F"), at(0, 2));
    EXPECT_EQ(hitIgnoringMarks(u"a b", u"a \u0301b"), at(0, 4));
    for (const auto &[needle, text] : {std::pair(u"d", u"đ"),
                                       {u"l", u"ł"},
                                       {u"h", u"ħ"},
                                       {u"t", u"ŧ"},
                                       {u"d", u"ð"},
                                       {u"th", u"þ"},
                                       {u"i", u"ı"},
                                       {u"a", u"æ"},
                                       {u"o", u"ø"}}) {
        SCOPED_TRACE(QStringView(text).toString().toStdString());
        EXPECT_EQ(hitIgnoringMarks(needle, text), none);
    }
}

TEST(TextSearch, ignoresOnlyMarksOfTheirOwnInOtherScriptsIfAsked)
{
    EXPECT_EQ(hitIgnoringMarks(u"שלום", u"שָׁלוֹם"), at(0, 7));
    EXPECT_EQ(hitIgnoringMarks(u"มา", u"ม\u0E48า"), at(0, 3));
    EXPECT_EQ(hitIgnoringMarks(u"คน", u"คน\u0E49"), at(0, 2)) << "without the mark at its end";
    EXPECT_EQ(hitIgnoringMarks(u"क", u"क\u094D"), at(0, 1));
    EXPECT_EQ(hitIgnoringMarks(u"\u0627", u"\u0623"), none);
    EXPECT_EQ(hitIgnoringMarks(u"하", u"한"), none);
    EXPECT_EQ(hitIgnoringMarks(u"\u0643\u064E\u062A", u"\u0643\u062A"), at(0, 2)) << "both ways";
}

TEST(TextSearch, findsTheEmptyTextNowhere)
{
    EXPECT_EQ(hitIgnoringCase(u"", u"abc"), none);
    EXPECT_EQ(hitIgnoringCase(u"", u""), none);
    EXPECT_EQ(hitIgnoringMarks(u"", u"abc"), none);
    EXPECT_EQ(hitIgnoringMarks(u"\u0301", u"abc"), none) << "nothing is left of it";
    EXPECT_EQ(hitIgnoringCase(u"a", u""), none);
    EXPECT_EQ(hitIgnoringCase(u"\u00AD", u"ab"), none);
    EXPECT_EQ(hitIgnoringCase(u"\u00AD", u"a\u00ADb"), at(1, 1)) << "what is not seen is a character like any other";
}

TEST(TextSearch, goesOnBehindEachHit)
{
    const TextSearch aa(u"aa", TextSearchOptions::caseInsensitive);
    EXPECT_EQ(aa.hits(u"aaaa"), (std::vector<TextRange>{{0, 2}, {2, 2}}));
    EXPECT_EQ(aa.hits(u"aaaaa"), (std::vector<TextRange>{{0, 2}, {2, 2}}));
    EXPECT_EQ(aa.hits(u"ßaaAAe\u0301"), (std::vector<TextRange>{{1, 2}, {3, 2}})) << "also in a text of other letters";
    EXPECT_EQ(aa.hits(u"b"), std::vector<TextRange>());
    const TextSearch e(u"e", TextSearchOptions::caseAndDiacriticInsensitive);
    EXPECT_EQ(e.hits(u"e\u0301é e"), (std::vector<TextRange>{{0, 2}, {2, 1}, {4, 1}}));
}

TEST(TextSearch, equalsTheRulesWrittenOutForAnyTexts)
{
    int found = 0;
    for (unsigned seed = 0; seed < 60000; ++seed) {
        RandomScript random(seed);
        QString text = random.text(0, 10);
        QString needle = random.text(1, 3);
        if (random.number(0, 1) == 0 && !text.isEmpty())
            needle = text.mid(random.number(0, static_cast<int>(text.size()) - 1), random.number(1, 4));
        const TextSearch search(needle, TextSearchOptions::caseInsensitive);
        std::vector<SearchReference::Hit> hits;
        for (const TextRange &hit : search.hits(text))
            hits.emplace_back(hit.start, hit.start + hit.length);
        ASSERT_EQ(hits, SearchReference::hits(needle, text)) << seed << needle.toStdString() << text.toStdString();
        ASSERT_EQ(search.hitCount(text), static_cast<qsizetype>(hits.size()));
        found += hits.empty() ? 0 : 1;
    }
    EXPECT_GT(found, 10000) << "texts that never meet would prove nothing";
}

TEST(TextSearch, findsEveryCodePointBesideMarksWhereTheRulesSay)
{
    QList<char32_t> codePoints = {0xFA6C,  0x1B44, 0x302E,  0x1D15E, 0x1D160,
                                  0x2F800, 0xFFFF, 0x1F3FD, 0x16FF0, 0x10FFFD};
    for (char32_t each = 1; each < 0x20000; each += 37)
        codePoints << each;
    int found = 0;
    for (const char32_t codePoint : codePoints) {
        const QString one = QString::fromUcs4(&codePoint, 1);
        for (const QString &needle : {one, one.toUpper(), one + u"\u0323"_qs}) {
            for (const QString &text : {one + u"\u0323 x\u0323"_qs + one + u'y' + one.toUpper(),
                                        u"\u0334"_qs + one + u"\u0323\u0334 "_qs + one + u"\uFE0F"_qs}) {
                std::vector<TextRange> expected;
                for (const auto &[start, end] : SearchReference::hits(needle, text))
                    expected.push_back({start, end - start});
                ASSERT_EQ(TextSearch(needle, TextSearchOptions::caseInsensitive).hits(text), expected)
                    << needle.toStdString() << " in " << text.toStdString() << ", " << std::hex
                    << static_cast<std::uint32_t>(codePoint);
                found += static_cast<int>(expected.size());
            }
        }
    }
    EXPECT_GT(found, static_cast<int>(codePoints.size()));
}

TEST(TextSearch, findsWithoutMarksWhateverItFindsWithThem)
{
    int found = 0;
    for (unsigned seed = 0; seed < 20000; ++seed) {
        RandomScript random(seed);
        const QString text = random.text(0, 10);
        const QString needle = u"x"_qs + random.text(0, 2);
        const QString whole = text + needle + u'x';
        if (!hitIgnoringCase(needle, whole))
            continue;
        ++found;
        const auto hits = TextSearch(needle, TextSearchOptions::caseAndDiacriticInsensitive).hits(whole);
        ASSERT_FALSE(hits.empty()) << seed;
        qsizetype end = 0;
        for (const TextRange &hit : hits) {
            ASSERT_GE(hit.start, end);
            ASSERT_GT(hit.length, 0);
            end = hit.start + hit.length;
        }
        ASSERT_LE(end, whole.size());
    }
    EXPECT_GT(found, 10000);
}

} // namespace
