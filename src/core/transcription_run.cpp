#include "core/transcription_run.h"

#include "core/languages.h"
#include "core/transcript_text.h"
#include "platform/console.h"
#include "platform/error.h"
#include "platform/main_queue.h"
#include "platform/unicode_text.h"
#include "platform/worker.h"

#include <QPointer>

#include <chrono>
#include <utility>

namespace sorvanta {

TranscriptionRun::TranscriptionRun(WhisperRunner::Settings settings, Hooks hooks, QObject *parent)
    : QObject(parent)
    , m_settings(std::move(settings))
    , m_hooks(std::move(hooks))
{
    m_isStatusShown.setBinding([this] {
        const bool isProgressRowSpeaking = m_isTranscribing.value() && m_isProgressKnown.value();
        return !m_status.value().isEmpty() && !isProgressRowSpeaking;
    });
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
    forgetEndedAttempts();
    for (const Attempt &attempt : m_attempts)
        attempt.process->terminate();
    beginRun();
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
    m_isTranscribing = true;
    m_clearedOutput.clear();
    forgetOutput();
    m_error = std::nullopt;
    m_status = QStringLiteral("Preparing…");
    m_progress.begin(TranscriptionProgress::Clock::now());
    m_stopFlag = std::make_shared<std::atomic<bool>>(false);
    m_isStopping = false;
    m_activeProcess = nullptr;
    announceProgress();
    announceText(0);
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

void TranscriptionRun::stopRun()
{
    if (!m_isTranscribing || m_isStopping)
        return;
    setStopping(true);
    m_status = QStringLiteral("Stopping…");
    if (m_activeProcess)
        m_activeProcess->terminate();
}

QString TranscriptionRun::errorText() const
{
    QString text = error().value_or(QString());
    while (!text.isEmpty() && isNewline(text.back().unicode()))
        text.chop(1);
    return text;
}

QString TranscriptionRun::progressText() const
{
    return hasProgress() ? sorvanta::progressText(*progress()) : QString();
}

QString TranscriptionRun::remainingText() const
{
    return etaText().isEmpty() ? QStringLiteral("Estimating…") : etaText();
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
    if (m_isTranscribing)
        m_clearedOutput += rawOutput();
    forgetOutput();
    m_status = QString();
    setStopping(false);
    m_progress = {};
    m_activeProcess = nullptr;
    announceProgress();
    announceText(0);
    m_hooks.removeTemporaries();
}

QString TranscriptionRun::displayedTranscript() const
{
    const QString text = rawOutput().isEmpty() ? transcript() : m_output.transcript();
    return sorvanta::displayedTranscript({}, text, stripDashes());
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
    m_progress.update(m_scanner.scan(rawOutput(), from, lineStart), TranscriptionProgress::Clock::now());
    announceProgress();
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
    m_status = QStringLiteral("Done");
    m_progress.finish();
    announceProgress();
    endRun(m_hooks.saveToHistory);
}

void TranscriptionRun::failRun(const std::exception_ptr &failure)
{
    std::optional<QString> description;
    try {
        std::rethrow_exception(failure);
    } catch (const CancellationError &) {
        description = std::nullopt;
    } catch (const Error &error) {
        description = error.localizedDescription();
    } catch (const std::exception &error) {
        description = QString::fromUtf8(error.what());
    }
    if (!description || m_isStopping) {
        m_status = QStringLiteral("Cancelled");
    } else {
        m_error = description;
        m_status = QString();
    }
    endRun([] {});
}

/// Tells that the run is over last of all: whoever hears it may start the next one at once.
void TranscriptionRun::endRun(const std::function<void()> &lastStep)
{
    setStopping(false);
    m_activeProcess = nullptr;
    m_clearedOutput.clear();
    m_hooks.removeTemporaries();
    lastStep();
    m_isTranscribing = false;
}

void TranscriptionRun::setStopping(bool isStopping)
{
    m_isStopping = isStopping;
    *m_stopFlag = isStopping;
}

void TranscriptionRun::announceProgress()
{
    m_isProgressKnown = hasProgress();
    emit progressChanged();
    emit etaTextChanged();
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
                        m_activeProcess = process;
                });
            },
        .onOutput =
            [this, isCurrent](const QString &piece) {
                postToMain([this, isCurrent, piece] {
                    if (isCurrent())
                        takeOutput(piece);
                });
            },
        .isStopping = [stopFlag = m_stopFlag] { return stopFlag->load(); },
        .print = printOnConsole,
    };
}

} // namespace sorvanta
