#include "core/transcription_run.h"

#include "core/languages.h"
#include "core/transcript_text.h"
#include "platform/console.h"
#include "platform/main_queue.h"
#include "platform/worker.h"

#include <QPointer>

#include <chrono>
#include <utility>

namespace sorvanta {

TranscriptionRun::TranscriptionRun(WhisperRunner::Settings settings, Hooks hooks, QObject *parent)
    : RunState(parent)
    , m_settings(std::move(settings))
    , m_hooks(std::move(hooks))
{
}

TranscriptionRun::~TranscriptionRun()
{
    using namespace std::chrono_literals;
    constexpr auto patience = 2s;
    const auto deadline = std::chrono::steady_clock::now() + patience;
    for (const Attempt &attempt : m_attempts)
        attempt.process->terminate();
    for (const Attempt &attempt : m_attempts) {
        if (attempt.ended.wait_until(deadline) != std::future_status::ready)
            attempt.process->kill();
    }
    for (const Attempt &attempt : m_attempts)
        attempt.ended.wait_for(patience);
}

void TranscriptionRun::start(const QString &audioPath, const QString &modelPath, const QString &language)
{
    beginRun();
    startBegun(audioPath, modelPath, language);
}

void TranscriptionRun::startBegun(const QString &audioPath, const QString &modelPath, const QString &language)
{
    forgetEndedAttempts();
    for (const Attempt &attempt : m_attempts)
        attempt.process->terminate();
    m_runLanguage = effectiveLanguage(language);
    m_process = std::make_shared<ChildProcess>();
    const auto isCurrent = currencyTest();
    WhisperRunner runner(m_settings, workerHooks(), m_process);
    auto work = [this, isCurrent, runner = std::move(runner), audioPath, modelPath, code = m_runLanguage]() mutable {
        try {
            const Utf8Stream output = runner.run(audioPath, modelPath, code);
            postToMain([this, isCurrent, output] {
                if (isCurrent())
                    finishRun(output);
            });
        } catch (...) {
            postToMain([this, isCurrent, failure = std::current_exception()] {
                if (isCurrent())
                    failRun(failure);
            });
        }
    };
    m_attempts.push_back({m_process, runOnWorker(std::move(work))});
}

void TranscriptionRun::forgetEndedAttempts()
{
    std::erase_if(m_attempts, [](const Attempt &attempt) {
        return attempt.ended.wait_for(std::chrono::seconds(0)) == std::future_status::ready;
    });
}

void TranscriptionRun::beginRun()
{
    m_clearedOutput.clear();
    forgetOutput();
    beginState();
    announceText(0);
}

void TranscriptionRun::beginPreparation(const QString &status)
{
    setTranscribing(true);
    setStatus(status);
    changeProgress([](TranscriptionProgress &progress) {
        progress.progress = std::nullopt;
        progress.etaText = QStringLiteral("Estimating…");
    });
}

void TranscriptionRun::endPreparation()
{
    setStopping(false);
    setActiveProcess(nullptr);
    setTranscribing(false);
}

void TranscriptionRun::cancelPreparation()
{
    setStatus(QStringLiteral("Cancelled"));
    m_hooks.removeTemporaries();
    endPreparation();
}

void TranscriptionRun::forgetOutput()
{
    m_isTranscriptCleared = false;
    ++m_outputIdentity;
    m_output.clear();
    m_scanner = {};
    m_segmentWatch = {};
    m_lines.reset();
}

QString TranscriptionRun::transcript() const
{
    return m_isTranscriptCleared ? QString() : m_output.transcript();
}

void TranscriptionRun::clearTranscript()
{
    if (m_isTranscriptCleared || m_output.lineCount() == 0)
        return;
    m_isTranscriptCleared = true;
    emit transcriptChanged(0);
}

void TranscriptionRun::clearOutput()
{
    if (isTranscribing())
        m_clearedOutput += rawOutput();
    forgetOutput();
    setStatus(QString());
    setStopping(false);
    setActiveProcess(nullptr);
    changeProgress([](TranscriptionProgress &progress) { progress = {}; });
    announceText(0);
    m_hooks.removeTemporaries();
}

QString TranscriptionRun::displayedTranscript() const
{
    return sorvanta::displayedTranscript({}, m_output.transcript(), stripDashes());
}

void TranscriptionRun::setStripDashes(bool stripDashes)
{
    if (stripDashes == m_lines.stripDashes())
        return;
    m_lines.setStripDashes(stripDashes);
    m_hasSegments = m_segmentWatch.hasSegments(stripDashes);
    emit stripDashesChanged();
}

void TranscriptionRun::takeOutput(const QString &newPiece)
{
    const QString piece = std::exchange(m_clearedOutput, QString()) + newPiece;
    const qsizetype from = rawOutput().size();
    const qsizetype lineStart = m_output.unfinishedLineStart();
    m_isTranscriptCleared = false;
    const LiveTranscript::Change change = m_output.append(piece);
    m_lines.apply(change);
    m_segmentWatch.take(rawOutput(), from, lineStart);
    const ProgressMarks &marks = m_scanner.scan(rawOutput(), from, lineStart);
    changeProgress(
        [&marks](TranscriptionProgress &progress) { progress.update(marks, TranscriptionProgress::Clock::now()); });
    announceText(change.first);
}

void TranscriptionRun::finishRun(const Utf8Stream &output)
{
    if (const QString rest = output.repairedRest(); !rest.isEmpty() || !m_clearedOutput.isEmpty())
        takeOutput(rest);
    if (m_isTranscriptCleared) {
        m_isTranscriptCleared = false;
        emit transcriptChanged(0);
    }
    setStatus(QStringLiteral("Done"));
    changeProgress([](TranscriptionProgress &progress) { progress.finish(); });
    endRun(m_hooks.saveToHistory);
}

void TranscriptionRun::failRun(const std::exception_ptr &failure)
{
    takeFailure(failure);
    endRun([] {});
}

/// Tells that the run is over last of all: whoever hears it may start the next one at once.
void TranscriptionRun::endRun(const std::function<void()> &lastStep)
{
    setStopping(false);
    setActiveProcess(nullptr);
    m_clearedOutput.clear();
    m_hooks.removeTemporaries();
    lastStep();
    setTranscribing(false);
}

void TranscriptionRun::announceText(qsizetype firstLine)
{
    m_hasShownText = m_lines.count() > 0;
    m_hasSegments = m_segmentWatch.hasSegments(stripDashes());
    emit transcriptChanged(firstLine);
}

std::function<bool()> TranscriptionRun::currencyTest()
{
    return [self = QPointer(this), process = m_process] { return self && self->m_process == process; };
}

WhisperRunner::Hooks TranscriptionRun::workerHooks()
{
    const auto isCurrent = currencyTest();
    return {
        .processCreated =
            [this, isCurrent](const std::shared_ptr<ChildProcess> &process) {
                postToMain([this, isCurrent, process] {
                    if (isCurrent())
                        setActiveProcess(process);
                });
            },
        .onOutput =
            [this, isCurrent](const QString &piece) {
                postToMain([this, isCurrent, piece] {
                    if (isCurrent())
                        takeOutput(piece);
                });
            },
        .isStopping = [stopFlag = stopFlag()] { return stopFlag->load(); },
        .print = printOnConsole,
    };
}

} // namespace sorvanta
