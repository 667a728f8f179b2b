#pragma once

#include "core/transcription_progress.h"

#include <QObject>
#include <QObjectBindableProperty>
#include <QString>

#include <atomic>
#include <exception>
#include <memory>
#include <optional>
#include <utility>

namespace sorvanta {

class ChildProcess;

/// What a screen shows of the run that goes on or ended last, be it over one file or over many, and its Stop. The
/// screens' runs derive from this. Main thread only.
class RunState : public QObject {
    Q_OBJECT
    Q_PROPERTY(bool isTranscribing READ isTranscribing NOTIFY isTranscribingChanged)
    Q_PROPERTY(bool isStopping READ isStopping NOTIFY isStoppingChanged)
    Q_PROPERTY(QString status READ status NOTIFY statusChanged)
    Q_PROPERTY(QString errorText READ errorText NOTIFY errorChanged)
    Q_PROPERTY(bool hasError READ hasError NOTIFY errorChanged)
    Q_PROPERTY(double progress READ progressOrZero NOTIFY progressChanged)
    Q_PROPERTY(bool hasProgress READ hasProgress NOTIFY progressChanged)
    Q_PROPERTY(QString progressText READ progressText NOTIFY progressChanged)
    Q_PROPERTY(QString remainingText READ remainingText NOTIFY etaTextChanged)
    Q_PROPERTY(bool isStatusShown READ isStatusShown NOTIFY isStatusShownChanged)

public:
    explicit RunState(QObject *parent = nullptr);

    /// Asks the run to end. The words of the end come when the child has ended.
    Q_INVOKABLE void stopRun();

    bool isTranscribing() const { return m_isTranscribing; }
    bool isStopping() const { return m_isStopping; }
    bool hasActiveProcess() const { return m_activeProcess != nullptr; }

    /// One line under the controls; may be empty.
    const QString &status() const { return m_status.value(); }
    void setStatus(const QString &status) { m_status = status; }

    /// The message of the last failure, or none.
    const std::optional<QString> &error() const { return m_error.value(); }
    void setError(const std::optional<QString> &error) { m_error = error; }
    /// The same as it is shown: without the line ends behind it; empty if there is none.
    QString errorText() const;
    bool hasError() const { return error().has_value(); }

    /// 0.0 to 1.0, or none as long as the length of the audio is not known.
    const std::optional<double> &progress() const { return m_progress.progress; }
    double progressOrZero() const { return progress().value_or(0.0); }
    bool hasProgress() const { return progress().has_value(); }
    /// "Progress: 42%"; empty without progress.
    QString progressText() const;
    /// "Estimating…", "ETA: 1m 5s", "Done"; empty before the first run.
    const QString &etaText() const { return m_progress.etaText; }
    /// `etaText` as the row of a running transcription shows it.
    QString remainingText() const;
    std::optional<double> totalDuration() const { return m_progress.totalDuration; }
    std::optional<TranscriptionProgress::Clock::time_point> transcriptionStart() const
    {
        return m_progress.transcriptionStart;
    }

    /// Whether the status row is there: not when it is empty, nor while the progress row speaks for it.
    bool isStatusShown() const { return m_isStatusShown; }

Q_SIGNALS:
    void isTranscribingChanged();
    void isStoppingChanged();
    void statusChanged();
    void errorChanged();
    void progressChanged();
    void etaTextChanged();
    void isStatusShownChanged();

protected:
    using StopFlag = std::shared_ptr<std::atomic<bool>>;

    /// Sets all of this for a run that begins now. The stop flag is another one from here on.
    void beginState();

    /// Takes the words of a failure: "Cancelled" for a cancellation or a run that is stopping, else an error.
    /// @return the failure's own description
    QString takeFailure(const std::exception_ptr &failure);

    void setTranscribing(bool isTranscribing) { m_isTranscribing = isTranscribing; }
    void setStopping(bool isStopping);
    void setActiveProcess(std::shared_ptr<ChildProcess> process) { m_activeProcess = std::move(process); }

    /// What a worker reads of `isStopping`.
    const StopFlag &stopFlag() const { return m_stopFlag; }

    /// Changes the progress by `change`, which is given it, and tells of it.
    template<typename Change>
    void changeProgress(Change change)
    {
        change(m_progress);
        announceProgress();
    }

private:
    void announceProgress();

    TranscriptionProgress m_progress;
    std::shared_ptr<ChildProcess> m_activeProcess;
    StopFlag m_stopFlag = std::make_shared<std::atomic<bool>>(false);

    Q_OBJECT_BINDABLE_PROPERTY(RunState, bool, m_isTranscribing, &RunState::isTranscribingChanged)
    Q_OBJECT_BINDABLE_PROPERTY(RunState, bool, m_isStopping, &RunState::isStoppingChanged)
    Q_OBJECT_BINDABLE_PROPERTY(RunState, QString, m_status, &RunState::statusChanged)
    Q_OBJECT_BINDABLE_PROPERTY(RunState, std::optional<QString>, m_error, &RunState::errorChanged)
    Q_OBJECT_BINDABLE_PROPERTY(RunState, bool, m_isProgressKnown)
    Q_OBJECT_BINDABLE_PROPERTY(RunState, bool, m_isStatusShown, &RunState::isStatusShownChanged)
};

/// The message of a failure as it is shown: without the line ends behind it.
QString shownErrorText(QString error);

} // namespace sorvanta
