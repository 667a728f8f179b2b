#include "platform/regular_expression.h"

#include "support/printing.h"

#include <gtest/gtest.h>

#include <utility>
#include <vector>

using namespace sorvanta;

namespace {

using Spans = std::vector<std::pair<qsizetype, qsizetype>>;

/// All matches as (start, length), found one behind the other.
Spans spans(QStringView pattern, QStringView text)
{
    RegularExpression expression(pattern);
    Spans result;
    qsizetype from = 0;
    while (const auto match = expression.firstMatch(text, from)) {
        result.emplace_back(match->start(), match->group(0).size());
        from = match->end() > match->start() ? match->end() : match->end() + 1;
    }
    return result;
}

TEST(RegularExpression, dollarMatchesBeforeAnyLastLineBreak)
{
    EXPECT_EQ(spans(u"a$", u"a\n"), (Spans{{0, 1}}));
    EXPECT_EQ(spans(u"a$", u"a\r\n"), (Spans{{0, 1}}));
    EXPECT_EQ(spans(u"a$", u"a\u2028"), (Spans{{0, 1}}));
    EXPECT_EQ(spans(u"a$", u"a\n\n"), Spans{});
    EXPECT_EQ(spans(u"^b", u"a\nb"), Spans{});
}

TEST(RegularExpression, pointStopsAtEachLineBreak)
{
    EXPECT_EQ(spans(u".+", u"a\r\nb\u2028c\u000Bd\u000Ce"), (Spans{{0, 1}, {3, 1}, {5, 1}, {7, 1}, {9, 1}}));
    EXPECT_EQ(spans(u"a.b", u"a\r\nb"), Spans{});
    EXPECT_EQ(spans(u".", u"🙂"), (Spans{{0, 2}}));
}

TEST(RegularExpression, classesAreUnicodeClasses)
{
    EXPECT_EQ(spans(u"\\[\\d+\\]", u"[١٢][12]"), (Spans{{0, 4}, {4, 4}}));
    EXPECT_EQ(spans(u"\\s+", u"a \u00A0\u200B\u3000b"), (Spans{{1, 2}, {4, 1}}));
    EXPECT_EQ(spans(u"\\w+", u"e\u0301a_1-\u0663\u2177\u00BD"), (Spans{{0, 5}, {6, 2}}));
    EXPECT_EQ(spans(u"\\bfoo\\b", u"foo\u0301 foo"), (Spans{{5, 3}}));
    EXPECT_EQ(spans(u"\u00E9", u"e\u0301"), Spans{});
}

TEST(RegularExpression, lettersMatchInTheirOwnCaseAlone)
{
    EXPECT_EQ(spans(u"sec", u"SEC Sec sec"), (Spans{{8, 3}}));
}

TEST(RegularExpression, emptyMatchesAndEmptyTexts)
{
    EXPECT_EQ(spans(u"a?", u"b"), (Spans{{0, 0}, {1, 0}}));
    EXPECT_EQ(spans(u"x*", u"axxb"), (Spans{{0, 0}, {1, 2}, {3, 0}, {4, 0}}));
    EXPECT_EQ(spans(u"a", QStringView()), Spans{});
}

TEST(RegularExpression, groupsAreViewsIntoTheText)
{
    RegularExpression expression(u"(\\d+)(x)?-(\\d+)");
    const QString text = u"ab 12-345"_qs;
    const auto match = expression.firstMatch(text);
    ASSERT_TRUE(match);
    EXPECT_EQ(match->group(0), u"12-345");
    EXPECT_EQ(match->group(1), u"12");
    EXPECT_TRUE(match->group(2).isNull());
    EXPECT_EQ(match->group(3), u"345");
    EXPECT_EQ(match->start(), 3);
    EXPECT_EQ(match->end(), 9);
}

TEST(RegularExpression, oneThatDoesNotCompileNeverMatches)
{
    EXPECT_EQ(spans(u"(", u"("), Spans{});
}

} // namespace
