#include "core/text_lines.h"

#include "support/printing.h"

#include <gtest/gtest.h>

using namespace sorvanta;

namespace {

QStringList linesOf(const TextLines &lines)
{
    QStringList result;
    for (qsizetype i = 0; i < lines.lineCount(); ++i)
        result << lines.line(i).toString();
    return result;
}

TEST(StoredLines, areThoseBetweenTheLineBreaksOfAText)
{
    StoredLines lines;
    EXPECT_EQ(lines.lineCount(), 0);
    lines.setText(u"one\r\ntwo\u2028three\n"_qs);
    EXPECT_EQ(linesOf(lines), (QStringList{"one", "", "two", "three", ""}));
    lines.setText(u"other"_qs);
    EXPECT_EQ(linesOf(lines), QStringList{"other"});
}

TEST(StoredLines, areAsTheyWereGivenInAList)
{
    StoredLines lines;
    lines.setText(u"one\ntwo\nthree"_qs);
    lines.setLines({"first\nstill first", "", "second"});
    EXPECT_EQ(linesOf(lines), (QStringList{"first\nstill first", "", "second"}));
    lines.setLines({});
    EXPECT_EQ(lines.lineCount(), 0);
}

TEST(StoredLines, outliveTheTextTheyWereGiven)
{
    StoredLines lines;
    {
        QString text = u"one\ntwo"_qs;
        lines.setText(text);
        text[0] = u'X';
        EXPECT_EQ(linesOf(lines), (QStringList{"one", "two"}));
    }
    EXPECT_EQ(linesOf(lines), (QStringList{"one", "two"}));
}

} // namespace
