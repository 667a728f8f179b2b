#include "export/srt_export.h"

#include "support/printing.h"

#include <gtest/gtest.h>

using namespace sorvanta;

namespace {

TEST(RenderSrt, givesNothingWithoutSegments)
{
    EXPECT_FALSE(renderSrt({}));
}

TEST(RenderSrt, separatesBlocksByOneBlankLineAndEndsWithOneLineFeed)
{
    EXPECT_EQ(renderSrt({{u"00:00:00.000"_qs, u"00:00:02.500"_qs, u"Hello"_qs},
                         {u"00:00:02.500"_qs, u"00:00:04.000"_qs, u"there"_qs}}),
              u"1\n00:00:00,000 --> 00:00:02,500\nHello\n\n2\n00:00:02,500 --> 00:00:04,000\nthere\n"_qs);
}

TEST(RenderSrt, replacesEveryPointOfATimeAndNoneOfAText)
{
    EXPECT_EQ(renderSrt({{u"0.0.0"_qs, u"1.1"_qs, u"a.b"_qs}}), u"1\n0,0,0 --> 1,1\na.b\n"_qs);
}

} // namespace
