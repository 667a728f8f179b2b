#include "core/run_state.h"

#include "platform/child_process.h"
#include "platform/error.h"
#include "platform/unicode_text.h"

namespace sorvanta {

RunState::RunState(QObject *parent)
    : QObject(parent)
{
    m_isStatusShown.setBinding([this] {
        const bool isProgressRowSpeaking = m_isTranscribing.value() && m_isProgressKnown.value();
        return !m_status.value().isEmpty() && !isProgressRowSpeaking;
    });
}

void RunState::beginState()
{
    m_isTranscribing = true;
    m_error = std::nullopt;
    m_status = QStringLiteral("Preparing…");
    m_stopFlag = std::make_shared<std::atomic<bool>>(false);
    m_isStopping = false;
    m_activeProcess = nullptr;
    changeProgress([](TranscriptionProgress &progress) { progress.begin(TranscriptionProgress::Clock::now()); });
}

void RunState::stopRun()
{
    if (!m_isTranscribing || m_isStopping)
        return;
    setStopping(true);
    m_status = QStringLiteral("Stopping…");
    if (m_activeProcess)
        m_activeProcess->terminate();
}

QString RunState::takeFailure(const std::exception_ptr &failure)
{
    QString description;
    bool isCancelled = m_isStopping;
    try {
        std::rethrow_exception(failure);
    } catch (const CancellationError &error) {
        description = error.localizedDescription();
        isCancelled = true;
    } catch (const Error &error) {
        description = error.localizedDescription();
    } catch (const std::exception &error) {
        description = QString::fromUtf8(error.what());
    }
    if (isCancelled) {
        m_status = QStringLiteral("Cancelled");
    } else {
        m_error = description;
        m_status = QString();
    }
    return description;
}

QString RunState::errorText() const
{
    return shownErrorText(error().value_or(QString()));
}

QString RunState::progressText() const
{
    return hasProgress() ? sorvanta::progressText(*progress()) : QString();
}

QString RunState::remainingText() const
{
    return etaText().isEmpty() ? QStringLiteral("Estimating…") : etaText();
}

void RunState::setStopping(bool isStopping)
{
    m_isStopping = isStopping;
    *m_stopFlag = isStopping;
}

void RunState::announceProgress()
{
    m_isProgressKnown = hasProgress();
    emit progressChanged();
    emit etaTextChanged();
}

QString shownErrorText(QString error)
{
    while (!error.isEmpty() && isNewline(error.back().unicode()))
        error.chop(1);
    return error;
}

} // namespace sorvanta
