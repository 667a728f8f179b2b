#include "platform/lower_case_form.h"

#include "support/printing.h"

#include <gtest/gtest.h>

namespace sorvanta {

namespace {

using Found = LowerCaseSearch::Found;

bool isFound(const QString &needle, const QString &text)
{
    return LowerCaseSearch(needle).find(lowerCaseForm(text)) == Found::Whole;
}

struct Form {
    QString text;
    QString form;
};

class LowerCaseForms : public testing::TestWithParam<Form> { };

TEST_P(LowerCaseForms, areLowerCasedAndComposed)
{
    EXPECT_EQ(QString::fromUtf8(lowerCaseForm(GetParam().text)), GetParam().form);
}

INSTANTIATE_TEST_SUITE_P(, LowerCaseForms,
                         testing::Values(Form{u""_qs, u""_qs},
                                         Form{u"Large V3 TURBO [@`{]"_qs, u"large v3 turbo [@`{]"_qs},
                                         Form{u"ÉTÉ"_qs, u"été"_qs}, Form{u"E\u0301TE\u0301"_qs, u"été"_qs},
                                         Form{u"ΟΔΟΣ"_qs, u"οδοσ"_qs}, Form{u"İ"_qs, u"i\u0307"_qs},
                                         Form{u"STRAẞE"_qs, u"straße"_qs}, Form{u"ДОМ 港口"_qs, u"дом 港口"_qs},
                                         Form{u"𐐀"_qs, u"𐐨"_qs}));

struct Pair {
    QString needle;
    QString text;
    bool isFound;
};

class LowerCaseSearches : public testing::TestWithParam<Pair> { };

TEST_P(LowerCaseSearches, findWhatIsEqualButForItsCase)
{
    EXPECT_EQ(isFound(GetParam().needle, GetParam().text), GetParam().isFound)
        << GetParam().needle.toStdString() << " in " << GetParam().text.toStdString();
}

INSTANTIATE_TEST_SUITE_P(
    , LowerCaseSearches,
    testing::Values(Pair{u""_qs, u""_qs, true}, Pair{u""_qs, u"a"_qs, true}, Pair{u"a"_qs, u""_qs, false},
                    Pair{u"TURBO"_qs, u"Large V3 Turbo"_qs, true}, Pair{u"turbo "_qs, u"Large V3 Turbo"_qs, false},
                    Pair{u"v3 t"_qs, u"Large V3 Turbo"_qs, true}, Pair{u"é"_qs, u"CAFE\u0301"_qs, true},
                    Pair{u"e\u0301"_qs, u"CAFÉ"_qs, true}, Pair{u"e"_qs, u"é"_qs, false},
                    Pair{u"e"_qs, u"e\u0301"_qs, false}, Pair{u"e"_qs, u"e\u0301 e"_qs, true},
                    Pair{u"q"_qs, u"q\u0301"_qs, false}, Pair{u"q"_qs, u"q\u0301q"_qs, true},
                    Pair{u"caf"_qs, u"cafe\u0301"_qs, true}, Pair{u"ss"_qs, u"ß"_qs, false},
                    Pair{u"ß"_qs, u"ẞ"_qs, true}, Pair{u"fi"_qs, u"ﬁ"_qs, false}, Pair{u"k"_qs, u"\u212A"_qs, true},
                    Pair{u"ａ"_qs, u"Ａ"_qs, true}, Pair{u"a"_qs, u"ａ"_qs, false}, Pair{u"ОМ"_qs, u"дом"_qs, true},
                    Pair{u"и"_qs, u"й"_qs, false}, Pair{u"か"_qs, u"か\u3099"_qs, false},
                    Pair{u"が"_qs, u"か\u3099"_qs, true}, Pair{u"한"_qs, u"\u1112\u1161\u11AB"_qs, true},
                    Pair{u"하"_qs, u"\u1112\u1161\u11AB"_qs, false}, Pair{u"👍"_qs, u"👍🏽"_qs, false},
                    Pair{u"👍🏽"_qs, u"ok 👍🏽"_qs, true}, Pair{u"❤"_qs, u"❤\uFE0F"_qs, false},
                    Pair{u"👩"_qs, u"👨‍👩‍👧"_qs, true}, Pair{u"👨\u200D"_qs, u"👨‍👩‍👧"_qs, false},
                    Pair{u"🇸"_qs, u"🇺🇸"_qs, true}, Pair{u"ab"_qs, u"a\u00ADb"_qs, false},
                    Pair{u"don't"_qs, u"don’t"_qs, false}));

TEST(LowerCaseSearch, doesNotGoOverABorderBetweenTexts)
{
    const QByteArray texts = lowerCaseForm(u"One") + '\xff' + lowerCaseForm(u"Two");
    EXPECT_EQ(LowerCaseSearch(u"one").find(texts), Found::Whole);
    EXPECT_EQ(LowerCaseSearch(u"TWO").find(texts), Found::Whole);
    EXPECT_EQ(LowerCaseSearch(u"onetwo").find(texts), Found::Nowhere);
    const QByteArray markBehind = lowerCaseForm(u"\u4E00") + '\xff' + lowerCaseForm(u"\u0301");
    EXPECT_EQ(LowerCaseSearch(u"\u4E00").find(markBehind), Found::Whole);
}

TEST(LowerCaseSearch, tellsWhereOnlyAMarkRefusesIt)
{
    EXPECT_EQ(LowerCaseSearch(u"q").find(lowerCaseForm(u"q\u0301")), Found::CutOff);
    EXPECT_EQ(LowerCaseSearch(u"q").find(lowerCaseForm(u"abc")), Found::Nowhere);
    EXPECT_TRUE(LowerCaseSearch(u"q\u0301").form().contains(LowerCaseSearch(u"q").form()))
        << "so that a search that goes on looks there again";
    EXPECT_TRUE(isFound(u"q\u0301"_qs, u"Q\u0301"_qs));
}

} // namespace

} // namespace sorvanta
