#include "history/history_json.h"

#include "platform/error.h"
#include "support/history_entries.h"
#include "support/printing.h"

#include <gtest/gtest.h>

using namespace sorvanta;

namespace {

using Entry = TranscriptionHistoryEntry;

const QByteArray plainEntry = R"({"id":"1-a","text":"t","sourceLabel":"s","model":"m","language":"l",)"
                              R"("diarization":false,"txtPath":"p","createdAt":"c"})";

/// The code of the refusal, or "ok".
QString outcome(const QByteArray &document)
{
    try {
        decodedHistory(document);
        return "ok";
    } catch (const Error &error) {
        return QString::number(error.code());
    }
}

QByteArray with(QByteArray before, QByteArray after)
{
    QByteArray document = '[' + plainEntry + ']';
    EXPECT_TRUE(document.contains(before)) << before.toStdString();
    return document.replace(before, after);
}

TEST(HistoryJson, isWrittenExactlyLikeThis)
{
    Entry full = historyEntry("1770000000123-a1b2c3");
    full.text = "Line \"one\"\nline two \\ tab\t/ é 🎙 \u2028 \x01";
    full.diarization = true;
    full.srtPath = "/home/me/transcripts/whisper-1.srt";
    full.recordingPath = "/home/me/recordings/whisper-1.wav";
    Entry plain = historyEntry("2");
    plain.text = "";
    EXPECT_EQ(encodedHistory({full, plain}), R"([
  {
    "createdAt" : "2026-02-02T02:40:00.123Z",
    "diarization" : true,
    "id" : "1770000000123-a1b2c3",
    "language" : "auto",
    "model" : "Base",
    "recordingPath" : "/home/me/recordings/whisper-1.wav",
    "sourceLabel" : "/music/1770000000123-a1b2c3.wav",
    "srtPath" : "/home/me/transcripts/whisper-1.srt",
    "text" : "Line \"one\"\nline two \\ tab\t/ é 🎙 )"
                                             "\u2028"
                                             R"( \u0001",
    "txtPath" : "/nowhere/1770000000123-a1b2c3.txt"
  },
  {
    "createdAt" : "2026-02-02T02:40:00.123Z",
    "diarization" : false,
    "id" : "2",
    "language" : "auto",
    "model" : "Base",
    "sourceLabel" : "/music/2.wav",
    "text" : "",
    "txtPath" : "/nowhere/2.txt"
  }
])");
}

TEST(HistoryJson, ofNoEntriesIsAnEmptyArray)
{
    EXPECT_EQ(encodedHistory({}), "[\n\n]");
    EXPECT_EQ(decodedHistory("[\n\n]"), QList<Entry>());
    EXPECT_EQ(decodedHistory("[]"), QList<Entry>());
}

TEST(HistoryJson, givesEveryFieldBack)
{
    Entry full = historyEntry("1");
    full.text = "\"\\/\b\f\n\r\t\x01\x7Fé🎙\u2028\uFEFF";
    full.diarization = true;
    full.srtPath = "";
    full.recordingPath = "/r";
    const QList<Entry> entries = {full, historyEntry("2")};
    EXPECT_EQ(decodedHistory(encodedHistory(entries)), entries);
}

TEST(HistoryJson, takesEachFieldFromItsKey)
{
    Entry expected;
    expected.id = "1-a";
    expected.text = "t";
    expected.sourceLabel = "s";
    expected.model = "m";
    expected.language = "l";
    expected.txtPath = "p";
    expected.createdAt = "c";
    EXPECT_EQ(decodedHistory('[' + plainEntry + ']'), QList{expected});
}

class RequiredKey : public testing::TestWithParam<QByteArray> { };

TEST_P(RequiredKey, mustBeThereWithAValueOfItsType)
{
    const QByteArray key = '"' + GetParam() + "\":";
    const QByteArray goodValue = GetParam() == "diarization" ? "false" : "\"";
    ASSERT_TRUE(plainEntry.contains(key + goodValue));
    EXPECT_EQ(outcome(with(key, "\"other\":")), "4865");
    EXPECT_EQ(outcome(with(key, key + "null,\"other\":")), "4865");
    for (const QByteArray wrong : {"1", "[]", "{}", "0"})
        EXPECT_EQ(outcome(with(key, key + wrong + ",\"other\":")), "4864") << wrong.toStdString();
    const QByteArray otherType = GetParam() == "diarization" ? "\"false\"" : "true";
    EXPECT_EQ(outcome(with(key, key + otherType + ",\"other\":")), "4864");
}

INSTANTIATE_TEST_SUITE_P(Keys, RequiredKey,
                         testing::Values("id", "text", "sourceLabel", "model", "language", "diarization", "txtPath",
                                         "createdAt"));

class OptionalKey : public testing::TestWithParam<QByteArray> { };

TEST_P(OptionalKey, mayBeAbsentOrNullButNotOfAnotherType)
{
    const auto value = [](const Entry &entry) { return GetParam() == "srtPath" ? entry.srtPath : entry.recordingPath; };
    const QByteArray key = "{\"" + GetParam() + "\":";
    EXPECT_EQ(value(decodedHistory('[' + plainEntry + ']').first()), std::nullopt);
    EXPECT_EQ(value(decodedHistory(with("{", key + "null,")).first()), std::nullopt);
    EXPECT_EQ(value(decodedHistory(with("{", key + "\"/x\",")).first()), "/x");
    for (const QByteArray wrong : {"1", "true", "[]", "{}"})
        EXPECT_EQ(outcome(with("{", key + wrong + ",")), "4864") << wrong.toStdString();
}

INSTANTIATE_TEST_SUITE_P(Keys, OptionalKey, testing::Values("srtPath", "recordingPath"));

TEST(HistoryJson, ofAbsentAndNullPathsIsTheSameWhenWrittenAgain)
{
    const QByteArray absent = encodedHistory(decodedHistory('[' + plainEntry + ']'));
    const QByteArray null = encodedHistory(decodedHistory(with("{", R"({"srtPath":null,"recordingPath":null,)")));
    EXPECT_EQ(absent, null);
    EXPECT_FALSE(null.contains("srtPath"));
    EXPECT_FALSE(null.contains("recordingPath"));
    EXPECT_FALSE(null.contains("null"));
}

TEST(HistoryJson, maySayMoreThanIsKnown)
{
    const QByteArray document = with("{", "{\"rating\":[1,{\"x\":\"\\ud800 \xFF\"}],\"note\":\"\xE9\",\"\xFF\":null,");
    EXPECT_EQ(decodedHistory(document), decodedHistory('[' + plainEntry + ']'));
    EXPECT_FALSE(encodedHistory(decodedHistory(document)).contains("rating"));
}

TEST(HistoryJson, takesTheFirstOfTwoLikeKeys)
{
    EXPECT_EQ(decodedHistory(with("{", R"({"id":"first",)")).first().id, "first");
    EXPECT_EQ(outcome(with("{", R"({"id":1,)")), "4864");
    EXPECT_EQ(outcome(with("{", R"({"id":null,)")), "4865");
    EXPECT_EQ(outcome(with("}", R"(,"id":1})")), "ok");
}

TEST(HistoryJson, isRefusedAsAWholeForOneBadElement)
{
    EXPECT_EQ(outcome('[' + plainEntry + "," + plainEntry + ",]"), "ok");
    EXPECT_EQ(outcome('[' + plainEntry + ",null]"), "4865");
    EXPECT_EQ(outcome('[' + plainEntry + ",{}]"), "4865");
    for (const QByteArray wrong : {"1", "\"x\"", "true", "[]"})
        EXPECT_EQ(outcome('[' + plainEntry + ',' + wrong + ']'), "4864") << wrong.toStdString();
}

TEST(HistoryJson, isRefusedIfItIsNoArray)
{
    EXPECT_EQ(outcome("null"), "4865");
    for (const QByteArray wrong : {"{}", "1", "\"x\"", "true", "", "[", "nul"})
        EXPECT_EQ(outcome(wrong), "4864") << wrong.toStdString();
    EXPECT_EQ(outcome(plainEntry), "4864");
}

TEST(HistoryJson, isNoJsonBeforeItLacksAnything)
{
    EXPECT_EQ(outcome("[{},null"), "4864");
    EXPECT_EQ(outcome("[{}] x"), "4864");
    EXPECT_EQ(outcome("null x"), "4864");
}

TEST(HistoryJson, judgesTheFieldsInTheirOwnOrder)
{
    EXPECT_EQ(outcome(R"([{"text":1}])"), "4865");
    EXPECT_EQ(outcome(R"([{"text":null,"id":1}])"), "4864");
    EXPECT_EQ(outcome(with(R"("p","createdAt":"c")", R"("p","srtPath":1)")), "4864");
}

TEST(HistoryJson, isRefusedForTextThatCannotBeDecoded)
{
    for (const QByteArray bad : {"\\ud800", "\xFF", "\xED\xA0\x80"})
        EXPECT_EQ(outcome(with("\"t\"", '"' + bad + '"')), "4864") << bad.toStdString();
}

TEST(HistoryJson, isReadInWhateverOrderAndLayoutTheKeysStand)
{
    EXPECT_EQ(
        decodedHistory("\n[ {\"createdAt\" :\t\"c\",\"txtPath\":\"p\" , \"diarization\":false,\"language\":\"l\",\r\n"
                       "\"model\":\"m\",\"sourceLabel\":\"s\",\"text\":\"t\",\"\\u0069d\":\"1-a\"} ]\n"),
        decodedHistory('[' + plainEntry + ']'));
}

TEST(HistoryOrder, isByDateTheNewestFirstAndStable)
{
    QList<Entry> entries = {
        historyEntry("bad-1", "not a date"),
        historyEntry("old", "2026-02-02T02:40:00.123Z"),
        historyEntry("same-1", "2026-02-02T02:40:00.500Z"),
        historyEntry("bad-2", "2027-02-02T02:40:00Z"),
        historyEntry("same-2", "2026-02-02T03:40:00.500+01:00"),
        historyEntry("new", "2026-02-02T02:40:00.501Z"),
        historyEntry("ancient", "0001-01-01T00:00:00.000Z"),
    };
    sortNewestFirst(entries);
    EXPECT_EQ(historyIds(entries), (QStringList{"new", "same-1", "same-2", "old", "ancient", "bad-1", "bad-2"}));
    EXPECT_EQ(entries.last().text, "Text of bad-2");
}

TEST(HistoryOrder, staysWhenItIsRightAlready)
{
    QList<Entry> entries = {historyEntry("b", "2026-02-02T02:40:00.500Z"), historyEntry("a"), historyEntry("c"),
                            historyEntry("bad", "")};
    sortNewestFirst(entries);
    EXPECT_EQ(historyIds(entries), (QStringList{"b", "a", "c", "bad"}));
    QList<Entry> none;
    sortNewestFirst(none);
    EXPECT_TRUE(none.isEmpty());
}

TEST(HistoryJson, aLongHistoryHasTheLayoutOfAShortOne)
{
    QList<TranscriptionHistoryEntry> entries;
    QByteArray expected = "[";
    for (int i = 0; i < 1001; ++i) {
        entries.append(historyEntry(QString::number(i)));
        QByteArray alone = encodedHistory({entries.last()});
        alone.remove(0, 1); // the brackets
        alone.chop(2);
        expected += (i > 0 ? "," : "") + alone;
    }
    expected += "\n]";
    EXPECT_EQ(encodedHistory(entries), expected);
    EXPECT_EQ(decodedHistory(expected), entries);
}

} // namespace
