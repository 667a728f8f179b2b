#include "screens/history/history_texts.h"

#include "support/history_entries.h"
#include "support/printing.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace sorvanta {

// GoogleTest finds it by the namespace of the tag.
static void PrintTo(const HistoryTag &tag, std::ostream *out)
{
    *out << tag.text.toStdString() << " (" << tag.systemImage.toStdString() << ')';
}

namespace {

using testing::ElementsAre;

struct Texts {
    QString given;
    QString shown;
};

class EntryTitles : public testing::TestWithParam<Texts> { };

TEST_P(EntryTitles, areTheLastPartOfTheSource)
{
    TranscriptionHistoryEntry entry;
    entry.sourceLabel = GetParam().given;
    EXPECT_EQ(entryTitle(entry), GetParam().shown);
}

INSTANTIATE_TEST_SUITE_P(, EntryTitles,
                         testing::Values(Texts{u"/music/Harbour walk.m4a"_qs, u"Harbour walk.m4a"_qs},
                                         Texts{u"/music/folder/"_qs, u"folder"_qs},
                                         Texts{u"recording"_qs, u"recording"_qs},
                                         Texts{u"Unknown source"_qs, u"Unknown source"_qs}, Texts{u"/"_qs, u"/"_qs},
                                         Texts{u""_qs, u"Unknown source"_qs}, Texts{u"/a/ "_qs, u" "_qs}));

class EntryPreviews : public testing::TestWithParam<Texts> { };

TEST_P(EntryPreviews, areTheFirstLineThatSaysSomething)
{
    TranscriptionHistoryEntry entry;
    entry.text = GetParam().given;
    EXPECT_EQ(entryPreview(entry), GetParam().shown);
}

INSTANTIATE_TEST_SUITE_P(, EntryPreviews,
                         testing::Values(Texts{u""_qs, u"No transcript text saved."_qs},
                                         Texts{u" \n\t\u200B\u2028 "_qs, u"No transcript text saved."_qs},
                                         Texts{u"One"_qs, u"One"_qs}, Texts{u"One\nTwo"_qs, u"One"_qs},
                                         Texts{u"  \n \n  One  \nTwo"_qs, u"One  "_qs},
                                         Texts{u"One\r\nTwo"_qs, u"One"_qs}, Texts{u"One\u2028Two"_qs, u"One"_qs},
                                         Texts{u"- One"_qs, u"- One"_qs},
                                         Texts{u"word "_qs.repeated(100), u"word "_qs.repeated(100).trimmed()}));

TEST(EntryDates, areFormattedByTheFormatter)
{
    TranscriptionHistoryEntry entry;
    entry.createdAt = u"2026-02-02T02:40:00.123Z"_qs;
    EXPECT_EQ(formattedDate(entry, [](qint64 milliseconds) { return QString::number(milliseconds); }),
              u"1770000000123"_qs);
}

class UnreadableDates : public testing::TestWithParam<QString> { };

TEST_P(UnreadableDates, areShownRaw)
{
    TranscriptionHistoryEntry entry;
    entry.createdAt = GetParam();
    EXPECT_EQ(formattedDate(entry, [](qint64) { return u"a date"_qs; }), GetParam());
}

INSTANTIATE_TEST_SUITE_P(, UnreadableDates,
                         testing::Values(u"not a date"_qs, u""_qs, u"2026-02-02T02:40:00Z"_qs, u"2026-02-02"_qs));

TEST(EntryTags, areTheModelAndTheLanguage)
{
    TranscriptionHistoryEntry entry;
    entry.model = u"Large V3 Turbo"_qs;
    entry.language = u"en"_qs;
    EXPECT_THAT(entryTags(entry),
                ElementsAre(HistoryTag{u"Large V3 Turbo"_qs, u"cpu"_qs}, HistoryTag{u"en"_qs, u"globe"_qs}));
}

TEST(EntryTags, sayAutoWithoutALanguage)
{
    EXPECT_THAT(entryTags({}), ElementsAre(HistoryTag{u""_qs, u"cpu"_qs}, HistoryTag{u"auto"_qs, u"globe"_qs}));
}

TEST(EntryTags, tellOfDiarizationLast)
{
    TranscriptionHistoryEntry entry;
    entry.model = u"Base"_qs;
    entry.language = u"de"_qs;
    entry.diarization = true;
    EXPECT_THAT(entryTags(entry), ElementsAre(HistoryTag{u"Base"_qs, u"cpu"_qs}, HistoryTag{u"de"_qs, u"globe"_qs},
                                              HistoryTag{u"Diarization"_qs, u"person.2.wave.2.fill"_qs}));
    const QVariantList tags = tagList(entry);
    ASSERT_EQ(tags.size(), 3);
    EXPECT_EQ(tags[2].toMap()[u"text"_qs], u"Diarization"_qs);
    EXPECT_EQ(tags[2].toMap()[u"systemImage"_qs], u"person.2.wave.2.fill"_qs);
}

TEST(TextPieces, ofAnEmptyTextAreNone)
{
    EXPECT_EQ(textPieces({}), QStringList());
}

TEST(TextPieces, areOneForATextOfAnHour)
{
    const QString text = u"sixty characters a line are about what an hour's talk has.\n"_qs.repeated(1000);
    EXPECT_EQ(textPieces(text), QStringList(text));
}

TEST(TextPieces, endWithLinesWhereATextIsVeryLong)
{
    const QString text = u"A line of a talk that went on for ten hours, no less.\n"_qs.repeated(12000).chopped(1);
    const QStringList pieces = textPieces(text);
    EXPECT_GT(pieces.size(), 50);
    EXPECT_EQ(pieces.join(u'\n'), text);
    for (const QString &piece : pieces)
        EXPECT_LE(piece.size(), 8000);
}

TEST(TextPieces, keepEmptyLines)
{
    const QString text = (u"line\n"_qs.repeated(1000) + u"\n\n\n"_qs).repeated(20) + u"end"_qs;
    EXPECT_EQ(textPieces(text).join(u'\n'), text);
}

TEST(TextPieces, ofOneVeryLongLineEndBehindBlanks)
{
    const QString text = u"word "_qs.repeated(20000);
    const QStringList pieces = textPieces(text);
    EXPECT_GT(pieces.size(), 10);
    EXPECT_EQ(pieces.join(QString()), text);
    for (const QString &piece : pieces)
        EXPECT_TRUE(piece.endsWith(u' '));
}

TEST(TextPieces, ofAVeryLongLineWithoutBlanksCutNoCharacterOfTwoUnits)
{
    const QString text = u"x"_qs + u"🙂"_qs.repeated(40000);
    const QStringList pieces = textPieces(text);
    EXPECT_EQ(pieces.join(QString()), text);
    for (const QString &piece : pieces)
        EXPECT_TRUE(piece.isValidUtf16());
}

} // namespace

} // namespace sorvanta
