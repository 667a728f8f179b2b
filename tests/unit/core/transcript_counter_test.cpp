#include "core/transcript_counter.h"

#include "support/printing.h"

#include <gtest/gtest.h>

#include <QRandomGenerator>

using namespace sorvanta;

namespace {

/// Lines that a test changes.
class ChangingLines final : public TextLines {
public:
    qsizetype lineCount() const override { return lines.size(); }
    QStringView line(qsizetype index) const override { return lines[index]; }

    QStringList lines;
};

QString countsOf(const QStringList &lines)
{
    return TranscriptCounts(lines.join(u'\n'));
}

TEST(TranscriptCounter, countsTheEmptyText)
{
    const ChangingLines text;
    TranscriptCounter counter(text);
    EXPECT_EQ(countsText(counter.counts()), u"0 words · 0 chars"_qs);
    counter.recountFrom(0);
    EXPECT_EQ(countsText(counter.counts()), u"0 words · 0 chars"_qs);
}

TEST(TranscriptCounter, countsLineFeedsAsCharactersThatPartWords)
{
    ChangingLines text;
    text.lines = QStringList{u"One"_qs, u"two three"_qs, u"e\u0301"_qs};
    TranscriptCounter counter(text);
    counter.recountFrom(0);
    EXPECT_EQ(countsText(counter.counts()), u"4 words · 15 chars"_qs);
}

TEST(TranscriptCounter, looksAtNoLineBeforeTheFirstThatChanged)
{
    ChangingLines text;
    text.lines = QStringList{u"One"_qs, u"two"_qs};
    TranscriptCounter counter(text);
    counter.recountFrom(0);
    text.lines = QStringList{u"not looked at"_qs, u"two more"_qs, u"and more"_qs};
    counter.recountFrom(1);
    EXPECT_EQ(countsText(counter.counts()), countsOf({u"One"_qs, u"two more"_qs, u"and more"_qs}));
}

TEST(TranscriptCounter, givesWhatThePureFunctionGivesHoweverTheTextChanges)
{
    const QStringList pieces = {u"a"_qs,          u" "_qs,      u"\u0301"_qs,     u"\u200D"_qs,
                                u"\U0001F469"_qs, u"-"_qs,      u"\u00A0"_qs,     u"\u1100"_qs,
                                u"\u1161"_qs,     u"\u3000"_qs, u"\U0001F1E9"_qs, u"\u200B"_qs,
                                u"word "_qs,      u"\t"_qs,     u"\U0001F3FD"_qs, QString(QChar(0xD800))};
    QRandomGenerator random(20260202);
    for (int round = 0; round < 200; ++round) {
        ChangingLines text;
        TranscriptCounter counter(text);
        for (int step = 0; step < 30; ++step) {
            const qsizetype first = random.bounded(static_cast<int>(text.lines.size()) + 1);
            text.lines = text.lines.mid(0, first);
            for (int line = random.bounded(4); line > 0; --line) {
                QString letters;
                for (int letter = random.bounded(8); letter > 0; --letter)
                    letters += pieces[random.bounded(static_cast<int>(pieces.size()))];
                text.lines << letters;
            }
            counter.recountFrom(first);
            ASSERT_EQ(countsText(counter.counts()), countsOf(text.lines)) << "round " << round << ", step " << step;
        }
    }
}

} // namespace
