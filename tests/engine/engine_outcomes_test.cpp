#include "engine/engine_fixture.h"

using namespace sorvanta;

namespace {

/// How the engine ends with what it is given, in the fields of a run.
class EngineOutcomesTest : public EngineTest {
protected:
    /// The engine ended with a status other than 0: its whole log is the message.
    void expectFailure(const QString &words)
    {
        EXPECT_TRUE(run.errorText().startsWith(u"Whisper failed: "_qs)) << run.errorText().toStdString();
        EXPECT_TRUE(run.errorText().contains(words)) << run.errorText().toStdString();
        EXPECT_EQ(run.status(), QString());
        EXPECT_EQ(events, QStringList{u"remove"_qs});
    }

    /// The engine ended with 0 although it read nothing: what it says is all that there is.
    void expectDoneWithoutTimedLines(const QString &words)
    {
        EXPECT_FALSE(run.error()) << run.errorText().toStdString();
        EXPECT_EQ(run.status(), u"Done"_qs);
        EXPECT_TRUE(run.rawOutput().contains(words)) << run.rawOutput().toStdString();
        EXPECT_FALSE(run.rawOutput().contains(u" --> "_qs)) << run.rawOutput().toStdString();
        EXPECT_FALSE(lastTimedEnd(run.rawOutput()));
        EXPECT_EQ(events, (QStringList{u"remove"_qs, u"save"_qs}));
    }

    /// @param words the end of what is left of the engine's log, which the user is shown
    void expectUnreadable(const QString &audio, const QString &words = u"read_audio_data: failed to ffmpeg decode"_qs)
    {
        transcribe(audio, quickModel());
        expectDoneWithoutTimedLines(u"error: failed to read audio file '"_qs + audio + u'\'');
        EXPECT_TRUE(run.transcript().endsWith(words)) << run.transcript().toStdString();
    }
};

TEST_F(EngineOutcomesTest, aMissingModelFails)
{
    transcribe(tone(u"tone.wav"_qs, 3), path(u"none.bin"_qs));
    expectFailure(u"failed to open '"_qs + path(u"none.bin"_qs));
    EXPECT_TRUE(run.errorText().contains(u"error: failed to initialize whisper context"_qs));
}

TEST_F(EngineOutcomesTest, anEmptyModelFails)
{
    transcribe(tone(u"tone.wav"_qs, 3), writeFile(u"empty.bin"_qs, {}));
    expectFailure(u"invalid model data (bad magic)"_qs);
}

TEST_F(EngineOutcomesTest, aForeignFileAsModelFails)
{
    transcribe(tone(u"tone.wav"_qs, 3), writeFile(u"foreign.bin"_qs, "<!DOCTYPE html><p>Not found</p>\n"));
    expectFailure(u"invalid model data (bad magic)"_qs);
}

TEST_F(EngineOutcomesTest, aModelCutInItsTensorsFails)
{
    const QByteArray whole = bytesOf(quickModel());
    transcribe(tone(u"tone.wav"_qs, 3), writeFile(u"cut.bin"_qs, whole.left(whole.size() / 2)));
    expectFailure(u"ERROR not all tensors loaded"_qs);
}

TEST_F(EngineOutcomesTest, anEngineThatAbortsOnACutModelFails)
{
    transcribe(tone(u"tone.wav"_qs, 3), writeFile(u"stub.bin"_qs, bytesOf(quickModel()).left(20)));
    expectFailure(u"GGML_ASSERT"_qs);
}

TEST_F(EngineOutcomesTest, missingAudioFails)
{
    transcribe(path(u"none.wav"_qs), quickModel());
    expectFailure(u"error: input file not found '"_qs + path(u"none.wav"_qs));
    EXPECT_TRUE(run.errorText().contains(u"usage: "_qs));
}

TEST_F(EngineOutcomesTest, garbageAsAudioGivesTheEnginesWords)
{
    QByteArray garbage;
    for (int i = 0; i < 60000; ++i)
        garbage += static_cast<char>((i * 7919 + i / 13) % 251);
    expectUnreadable(writeFile(u"garbage.wav"_qs, garbage));
}

TEST_F(EngineOutcomesTest, aTextAsAudioGivesTheEnginesWords)
{
    expectUnreadable(writeFile(u"text.wav"_qs, "This is no audio.\n"));
}

TEST_F(EngineOutcomesTest, aFolderAsAudioGivesTheEnginesWords)
{
    ASSERT_TRUE(QDir().mkpath(path(u"folder.wav"_qs)));
    expectUnreadable(path(u"folder.wav"_qs));
}

TEST_F(EngineOutcomesTest, aCutM4aGivesTheEnginesWords)
{
    const QByteArray whole = bytesOf(tone(u"whole.m4a"_qs, 3));
    expectUnreadable(writeFile(u"cut.m4a"_qs, whole.left(whole.size() / 2)), u"moov atom not found"_qs);
}

TEST_F(EngineOutcomesTest, aCutWavGivesWhatIsThere)
{
    const QByteArray whole = bytesOf(tone(u"whole.wav"_qs, 20));
    transcribe(writeFile(u"cut.wav"_qs, whole.left(whole.size() / 2)), quickModel());
    EXPECT_FALSE(run.error());
    EXPECT_EQ(run.status(), u"Done"_qs);
    ASSERT_TRUE(run.totalDuration());
    EXPECT_NEAR(*run.totalDuration(), 10, 0.1);
    EXPECT_TRUE(run.transcript().startsWith(recitedLines().first()));
}

TEST_F(EngineOutcomesTest, aMomentOfAudioIsTooShort)
{
    transcribe(tone(u"moment.wav"_qs, 0.05), quickModel());
    expectDoneWithoutTimedLines(u"input is too short"_qs);
}

TEST_F(EngineOutcomesTest, anUnknownLanguageGivesTheEnginesWords)
{
    transcribe(tone(u"tone.wav"_qs, 3), quickModel(), u"qq"_qs);
    expectDoneWithoutTimedLines(u"error: unknown language 'qq'"_qs);
    EXPECT_TRUE(run.rawOutput().contains(u"usage: "_qs));
}

} // namespace
