#include "file_screen_test.h"
#include "meeting_screen_test.h"
#include "microphone_screen_test.h"

using namespace sorvanta;

namespace {

using FileScreenConsole = FileScreenTest;
using MicrophoneScreenConsole = MicrophoneScreenTest;
using MeetingScreenConsole = MeetingScreenTest;

/// What goes to standard output during `work`.
template<typename Work>
QByteArray printedBy(Work work)
{
    testing::internal::CaptureStdout();
    work();
    return QByteArray::fromStdString(testing::internal::GetCapturedStdout());
}

/// The two lines that tell of the command.
QByteArray command(const QString &engine, const QString &model, const QString &audio, const QString &language)
{
    const QString line = u"\"%1\" \"-m\" \"%2\" \"-f\" \"%3\" \"-l\" \"%4\"\n"_qs.arg(engine, model, audio, language);
    return "Running command:\n" + line.toUtf8();
}

TEST_F(FileScreenConsole, tellsTheCommandAndWhatTheEngineSays)
{
    const QString model = bench.installModel(u"ggml-base.bin"_qs, "print words\n");
    screen->appear();
    screen->language()->setLanguage(u" DE "_qs);
    choose(u"/music/a talk.wav"_qs);
    const QByteArray printed = printedBy([this] {
        screen->start();
        waitForStatus(u"Done"_qs);
    });
    EXPECT_EQ(printed, command(bench.engine.enginePath(), model, u"/music/a talk.wav"_qs, u"de"_qs) + "words\n");
}

TEST_F(MicrophoneScreenConsole, tellsTheCommandAndWhatTheEngineSays)
{
    const QString model = bench.installModel(u"ggml-base.bin"_qs, "print words\n");
    screen->appear();
    const QString take = recordTake();
    const QByteArray printed = printedBy([this] {
        screen->transcribe();
        waitForStatus(u"Done"_qs);
    });
    EXPECT_EQ(printed, command(bench.engine.enginePath(), model, take, u"auto"_qs) + "words\n");
}

TEST_F(MeetingScreenConsole, tellsWhatTheEngineSaysAndNothingOfTheCommand)
{
    useModel("print words\n");
    recordAndStop();
    const QByteArray printed = printedBy([this] {
        screen->transcribe();
        waitForStatus(u"Done"_qs);
    });
    EXPECT_EQ(printed, "words\n");
}

} // namespace
