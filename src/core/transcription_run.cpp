#include "core/transcription_run.h"

#include "core/languages.h"
#include "core/transcript_text.h"
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
    if (!m_worker.valid())
        return;
    *m_stopFlag = true;
    if (m_activeProcess)
        m_activeProcess->terminate();
    if (m_worker.wait_for(patience) == std::future_status::ready)
        return;
    if (m_activeProcess)
        m_activeProcess->kill();
    m_worker.wait_for(patience);
}

void TranscriptionRun::start(const QString &audioPath, const QString &modelPath, const QString &language)
{
    if (m_activeProcess)
        m_activeProcess->terminate();
    beginRun();
    m_runLanguage = effectiveLanguage(language);
    m_worker = runOnWorker([this, isCurrent = currencyTest(), runner = WhisperRunner(m_settings, workerHooks()),
                            audioPath, modelPath, code = m_runLanguage]() mutable {
        try {
            const QString output = runner.run(audioPath, modelPath, code);
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
    });
}

void TranscriptionRun::beginRun()
{
    m_isTranscribing = true;
    m_isTranscriptCleared = false;
    m_output.clear();
    m_scanner = {};
    m_lines.reset();
    m_error = std::nullopt;
    m_status = QStringLiteral("Preparing…");
    m_progress.begin(TranscriptionProgress::Clock::now());
    m_stopFlag = std::make_shared<std::atomic<bool>>(false);
    m_isStopping = false;
    m_activeProcess = nullptr;
    announceProgress();
    updateHasShownText();
    emit transcriptChanged();
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
    if (transcript().isEmpty())
        return;
    m_isTranscriptCleared = true;
    emit transcriptChanged();
}

QString TranscriptionRun::displayedTranscript() const
{
    return sorvanta::displayedTranscript(rawOutput(), transcript(), stripDashes());
}

void TranscriptionRun::setStripDashes(bool stripDashes)
{
    if (stripDashes == m_lines.stripDashes())
        return;
    m_lines.setStripDashes(stripDashes);
    updateHasShownText();
    emit stripDashesChanged();
}

void TranscriptionRun::takeOutput(const QString &piece)
{
    const qsizetype from = rawOutput().size();
    const qsizetype lineStart = m_output.unfinishedLineStart();
    m_isTranscriptCleared = false;
    m_lines.apply(m_output.append(piece));
    m_progress.update(m_scanner.scan(rawOutput(), from, lineStart), TranscriptionProgress::Clock::now());
    announceProgress();
    updateHasShownText();
    emit transcriptChanged();
}

void TranscriptionRun::finishRun(const QString &output)
{
    // What was not reported piece by piece, as a rule nothing, comes now.
    if (output.size() > rawOutput().size())
        takeOutput(output.sliced(rawOutput().size()));
    if (m_isTranscriptCleared) {
        m_isTranscriptCleared = false;
        emit transcriptChanged();
    }
    m_status = QStringLiteral("Done");
    m_progress.finish();
    announceProgress();
    endRun();
    m_hooks.saveToHistory();
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
    endRun();
}

void TranscriptionRun::endRun()
{
    m_isTranscribing = false;
    setStopping(false);
    m_activeProcess = nullptr;
    m_hooks.removeTemporaries();
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

void TranscriptionRun::updateHasShownText()
{
    // Stripping may leave nothing of a single line; more lines leave their breaks.
    const int count = m_lines.count();
    m_hasShownText =
        count > 1 || (count == 1 && !m_lines.index(0).data(TranscriptLinesModel::TextRole).toString().isEmpty());
}

std::function<bool()> TranscriptionRun::currencyTest()
{
    return [self = QPointer(this), stopFlag = m_stopFlag] { return self && self->m_stopFlag == stopFlag; };
}

WhisperRunner::Hooks TranscriptionRun::workerHooks()
{
    const auto isCurrent = currencyTest();
    return {
        .taskCreated =
            [this, isCurrent](std::shared_ptr<EngineTask> task) {
                postToMain([this, isCurrent, task = std::move(task)] {
                    if (isCurrent())
                        m_activeProcess = task;
                    else
                        task->terminate();
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
        .print = WhisperRunner::printOnStandardOutput,
    };
}

} // namespace sorvanta
