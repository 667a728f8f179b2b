#include "core/whisper_runner.h"

#include "platform/error.h"
#include "platform/worker.h"
#include "support/fake_engine_bundle.h"
#include "support/printing.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QElapsedTimer>

#include <atomic>
#include <chrono>
#include <future>
#include <optional>
#include <random>
#include <thread>

using namespace sorvanta;
using namespace std::chrono_literals;

namespace {

/// What a run gave, and what it told on the way.
struct Outcome {
    QString output;
    std::optional<Error> error;
    bool isCancelled = false;
    QStringList pieces;
    QByteArray console;
    qint64 milliseconds = 0;
};

class WhisperRunnerTest : public testing::Test {
protected:
    /// Runs a script on a worker, as the application does, and waits for the end.
    Outcome run(const QByteArray &script, const QString &scriptName = QStringLiteral("script.bin"))
    {
        return runModel(m_bundle.script(script, scriptName));
    }

    Outcome runModel(const QString &modelPath)
    {
        Outcome outcome;
        WhisperRunner::Hooks hooks{
            .processCreated =
                [this](std::shared_ptr<ChildProcess> process) {
                    if (processCreated)
                        processCreated(process);
                },
            .onOutput =
                [this, &outcome](const QString &piece) {
                    outcome.pieces << piece;
                    if (pieceCame)
                        pieceCame(piece);
                },
            .isStopping = [this] { return isStopping.load(); },
            .print = [&outcome](const QByteArray &line) { outcome.console += line; },
        };
        QElapsedTimer timer;
        timer.start();
        runOnWorker([&] {
            try {
                WhisperRunner runner({m_bundle.resourceFolder(), printsCommand}, hooks,
                                     std::make_shared<ChildProcess>());
                outcome.output =
                    runner.run(QStringLiteral("/audio/a b.wav"), modelPath, QStringLiteral("auto")).repairedText();
            } catch (const CancellationError &) {
                outcome.isCancelled = true;
            } catch (const Error &error) {
                outcome.error = error;
            }
        }).wait();
        outcome.milliseconds = timer.elapsed();
        return outcome;
    }

    FakeEngineBundle m_bundle;
    bool printsCommand = false;
    std::atomic<bool> isStopping = false;
    std::function<void(std::shared_ptr<ChildProcess>)> processCreated;
    std::function<void(const QString &)> pieceCame;
};

TEST_F(WhisperRunnerTest, handsTheEngineSixArgumentsInOrder)
{
    const auto outcome = run("arguments\n", u"my model.bin"_qs);
    EXPECT_EQ(outcome.output,
              u"-m\n"_qs + m_bundle.script("arguments\n", u"my model.bin"_qs) + u"\n-f\n/audio/a b.wav\n-l\nauto\n"_qs);
}

TEST_F(WhisperRunnerTest, printsTheCommandAndEachChunk)
{
    printsCommand = true;
    const auto outcome = run("print hello%0A\n");
    const QByteArray model = m_bundle.script("print hello%0A\n").toUtf8();
    EXPECT_EQ(outcome.console, "Running command:\n\"" + m_bundle.enginePath().toUtf8() + "\" \"-m\" \"" + model
                                   + "\" \"-f\" \"/audio/a b.wav\" \"-l\" \"auto\"\nhello\n\n");
}

TEST_F(WhisperRunnerTest, passesAModelPathWithBlanksAsOneArgumentAndMerelyQuotesItWhereItIsPrinted)
{
    printsCommand = true;
    const QString model = m_bundle.script("arguments\n", u"my \"own\" $model\\.bin"_qs);
    const auto outcome = runModel(model);
    EXPECT_EQ(outcome.output.section(u'\n', 1, 1), model);
    EXPECT_TRUE(outcome.console.contains(" \"-m\" \"" + model.toUtf8() + "\" \"-f\" ")) << "nothing is escaped";
}

TEST_F(WhisperRunnerTest, leavesFolderAndEnvironmentAsTheyAre)
{
    qputenv("SORVANTA_TEST_VARIABLE", "as it was");
    const auto outcome = run("environment SORVANTA_TEST_VARIABLE\nprint %0A\nfolder\n");
    qunsetenv("SORVANTA_TEST_VARIABLE");
    EXPECT_EQ(outcome.output, u"as it was\n"_qs + QDir::currentPath());
}

TEST_F(WhisperRunnerTest, printsNoCommandWhereTheScreenPrintsNone)
{
    EXPECT_EQ(run("print hello\n").console, "hello\n");
}

TEST_F(WhisperRunnerTest, failsWithCode1WithoutAnEngine)
{
    QFile::remove(m_bundle.enginePath());
    printsCommand = true;
    bool isCreated = false;
    processCreated = [&isCreated](const std::shared_ptr<ChildProcess> &) { isCreated = true; };
    const auto outcome = run("");
    EXPECT_FALSE(isCreated) << "it is looked for first of all";
    EXPECT_EQ(outcome.console, QByteArray());
    ASSERT_TRUE(outcome.error);
    EXPECT_EQ(outcome.error->domain(), u"Whisper"_qs);
    EXPECT_EQ(outcome.error->code(), 1);
    EXPECT_EQ(outcome.error->localizedDescription(),
              u"whisper-cli not found in bundle at sorvanta_extra_data/whisper.cpp/build/bin"_qs);
}

TEST_F(WhisperRunnerTest, failsWithCode3AndTheWholeLogWhenTheEngineFails)
{
    const auto outcome = run("print one%0A\ncomplain two%FF%0A\nexit 7\n");
    ASSERT_TRUE(outcome.error);
    EXPECT_EQ(outcome.error->domain(), u"Whisper"_qs);
    EXPECT_EQ(outcome.error->code(), 3);
    EXPECT_EQ(outcome.error->localizedDescription(), u"Whisper failed: one\ntwo\uFFFD\n"_qs);
}

TEST_F(WhisperRunnerTest, countsACrashAsAFailure)
{
    const auto outcome = run("print last words\ncrash\n");
    ASSERT_TRUE(outcome.error);
    EXPECT_EQ(outcome.error->localizedDescription(), u"Whisper failed: last words"_qs);
}

TEST_F(WhisperRunnerTest, passesALaunchFailureOn)
{
    QFile::remove(m_bundle.enginePath());
    QFile engine(m_bundle.enginePath());
    ASSERT_TRUE(engine.open(QIODevice::WriteOnly));
    engine.write("no program");
    engine.close();
    const auto outcome = run("");
    ASSERT_TRUE(outcome.error);
    EXPECT_NE(outcome.error->domain(), u"Whisper"_qs);
    EXPECT_TRUE(outcome.error->localizedDescription().startsWith(u"The program “whisper-cli” couldn’t be started: "_qs))
        << outcome.error->what();
    EXPECT_TRUE(outcome.error->localizedDescription().endsWith(u": Permission denied."_qs)) << outcome.error->what();
}

TEST_F(WhisperRunnerTest, keepsBothStreamsInTheOrderWritten)
{
    QByteArray script;
    QString expected;
    for (int i = 0; i < 50; ++i) {
        script += (i % 2 ? "print o" : "complain e") + QByteArray::number(i) + "%0A\n";
        expected += QStringLiteral("%1%2\n").arg(i % 2 ? u"o"_qs : u"e"_qs).arg(i);
    }
    EXPECT_EQ(run(script).output, expected);
}

TEST_F(WhisperRunnerTest, tellsTheOutputWhileTheEngineRuns)
{
    pieceCame = [this](const QString &) { m_bundle.openGate(); };
    const auto outcome = run("print one%0A\n" + m_bundle.awaitGate() + "print two%0A\n");
    EXPECT_EQ(outcome.pieces, (QStringList{u"one\n"_qs, u"two\n"_qs}));
}

TEST_F(WhisperRunnerTest, delaysACharacterThatIsSplitAcrossChunks)
{
    const auto outcome = run("print a%F0%9F\nawait-reader\nprint %99%82b\nawait-reader\nprint c\n");
    EXPECT_EQ(outcome.pieces, QStringList{u"a🙂bc"_qs}) << "neither of the first two chunks is text";
    EXPECT_EQ(outcome.output, u"a🙂bc"_qs);
    EXPECT_EQ(outcome.console, "c\n");
}

TEST_F(WhisperRunnerTest, repairsAtTheEndWhatIsNoUtf8)
{
    const auto outcome = run("print a\nawait-reader\nprint %FF\nawait-reader\nprint b\n");
    EXPECT_EQ(outcome.pieces, QStringList{u"a"_qs}) << "nothing is valid any more";
    EXPECT_EQ(outcome.output, u"a\uFFFDb"_qs);
}

TEST_F(WhisperRunnerTest, returnsNothingWhenTheEngineSaysNothing)
{
    const auto outcome = run("exit 0\n");
    EXPECT_FALSE(outcome.error);
    EXPECT_EQ(outcome.output, QString());
    EXPECT_TRUE(outcome.pieces.isEmpty());
}

TEST_F(WhisperRunnerTest, losesNoByteOfABurst)
{
    constexpr int bytes = 50'000'000;
    const auto outcome = run("burst " + QByteArray::number(bytes) + "\n");
    EXPECT_EQ(outcome.output.size(), bytes);
    EXPECT_EQ(outcome.pieces.join(QString()), outcome.output);
}

TEST_F(WhisperRunnerTest, losesNoByteOfAThousandShortEngines)
{
    std::mt19937 random(7);
    for (int i = 0; i < 1000; ++i) {
        const int size = static_cast<int>(random() % 5000);
        const QByteArray end = "end " + QByteArray::number(i);
        const QByteArray pause = random() % 4 == 0 ? "sleep 1\n" : "";
        const auto outcome = run("burst " + QByteArray::number(size) + "\n" + pause + "print " + end + "\nexit 0\n");
        ASSERT_EQ(outcome.output.size(), size + end.size()) << "run " << i;
        ASSERT_TRUE(outcome.output.endsWith(QString::fromLatin1(end)));
        ASSERT_EQ(outcome.pieces.join(QString()), outcome.output);
    }
}

TEST_F(WhisperRunnerTest, waitsForAnEngineThatClosedItsOutput)
{
    const auto outcome = run("print x\nclose-output\nsleep 300\nexit 5\n");
    ASSERT_TRUE(outcome.error);
    EXPECT_EQ(outcome.error->localizedDescription(), u"Whisper failed: x"_qs);
    EXPECT_GE(outcome.milliseconds, 300);
}

TEST_F(WhisperRunnerTest, doesNotWaitForAProcessThatTheEngineLeftBehind)
{
    const auto outcome = run("grandchild 20000\nprint x\nexit 0\n");
    EXPECT_EQ(outcome.output, u"x"_qs);
    EXPECT_LT(outcome.milliseconds, 20000);
}

TEST_F(WhisperRunnerTest, turnsAStopIntoACancellation)
{
    std::shared_ptr<ChildProcess> handle;
    processCreated = [&handle](std::shared_ptr<ChildProcess> process) { handle = std::move(process); };
    pieceCame = [this, &handle](const QString &) {
        isStopping = true;
        handle->terminate();
        handle->terminate();
    };
    const auto outcome = run("print x\nsleep 60000\n");
    EXPECT_TRUE(outcome.isCancelled);
    EXPECT_LT(outcome.milliseconds, 60000);
    handle->terminate();
    handle->kill();
}

TEST_F(WhisperRunnerTest, stopsAnEngineThatWasToldToEndBeforeItsLaunch)
{
    processCreated = [this](const std::shared_ptr<ChildProcess> &process) {
        isStopping = true;
        process->terminate();
    };
    const auto outcome = run("sleep 60000\n");
    EXPECT_TRUE(outcome.isCancelled);
    EXPECT_LT(outcome.milliseconds, 60000);
}

TEST_F(WhisperRunnerTest, isCancelledWhateverTheStatusWas)
{
    isStopping = true;
    EXPECT_TRUE(run("print x\nexit 0\n").isCancelled);
    EXPECT_TRUE(run("print x\nexit 3\n").isCancelled);
}

TEST_F(WhisperRunnerTest, waitsForAnEngineThatIgnoresTheStop)
{
    std::shared_ptr<ChildProcess> handle;
    processCreated = [&handle](std::shared_ptr<ChildProcess> process) { handle = std::move(process); };
    pieceCame = [this, &handle](const QString &) {
        isStopping = true;
        handle->terminate();
    };
    const auto outcome = run("ignore-stop\nprint x\nawait-reader\nsleep 500\nprint y\n");
    EXPECT_TRUE(outcome.isCancelled);
    EXPECT_GE(outcome.milliseconds, 500);
    EXPECT_EQ(outcome.pieces, (QStringList{u"x"_qs, u"y"_qs}));
}

TEST_F(WhisperRunnerTest, aStopAgainstAnEngineThatJustEndedHarmsNothing)
{
    for (int i = 0; i < 200; ++i) {
        std::future<void> stopper;
        processCreated = [&stopper, i](const std::shared_ptr<ChildProcess> &process) {
            stopper = std::async(std::launch::async, [process, i] {
                std::this_thread::sleep_for(std::chrono::microseconds(30 * i));
                process->terminate();
            });
        };
        const auto outcome = run("print x\n");
        stopper.wait();
        const bool wasStopped = outcome.error.has_value();
        ASSERT_TRUE(wasStopped || outcome.output == u"x"_qs);
    }
}

TEST_F(WhisperRunnerTest, killsAnEngineThatIgnoresTheStop)
{
    std::shared_ptr<ChildProcess> handle;
    processCreated = [&handle](std::shared_ptr<ChildProcess> process) { handle = std::move(process); };
    pieceCame = [&handle](const QString &) { handle->kill(); };
    const auto outcome = run("ignore-stop\nprint x\nsleep 60000\n");
    ASSERT_TRUE(outcome.error);
    EXPECT_LT(outcome.milliseconds, 60000);
}

TEST_F(WhisperRunnerTest, givesTheEngineNothingToRead)
{
    EXPECT_EQ(run("print-input\n").output, u"no input"_qs);
}

} // namespace
