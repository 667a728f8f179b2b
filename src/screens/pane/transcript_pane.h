#pragma once

#include "app/viewer/transcript_viewer.h"
#include "core/log_lines_model.h"
#include "core/transcript_counter.h"
#include "core/transcript_search.h"

#include <QAbstractItemModel>
#include <QList>
#include <QObject>
#include <QObjectBindableProperty>
#include <QString>
#include <QtQml/qqml.h>

#include <functional>

namespace sorvanta {

class PlaybackController;
class TranscriptionRun;

/// What a screen's pane does differently from the others'.
struct TranscriptPaneSettings {
    bool clearsError = true; ///< when the output is cleared
    bool offersClear = true; ///< whether there is "Clear Output"
    bool staysWithoutText = false; ///< the pane is there also while there is no text
    QString showLogsLabel = QStringLiteral("Show Logs");
    QString logsTitle = QStringLiteral("Logs");
};

/// The block of a screen that shows a transcript: search, text, actions, the sheet with the tool's log and the viewer
/// window. A screen holds one as a member and gives it to a `TranscriptPane` of its page. Main thread only.
class TranscriptPane : public QObject {
    Q_OBJECT
    QML_NAMED_ELEMENT(TranscriptPaneContent)
    QML_UNCREATABLE("held by a screen")
    Q_PROPERTY(bool isShown READ isShown NOTIFY hasTextChanged)
    Q_PROPERTY(bool hasText READ hasText NOTIFY hasTextChanged)
    Q_PROPERTY(sorvanta::TranscriptSearchState *search READ search CONSTANT)
    Q_PROPERTY(int paintRevision READ paintRevision NOTIFY paintRevisionChanged)
    Q_PROPERTY(QString counts READ counts NOTIFY countsChanged)
    Q_PROPERTY(QAbstractItemModel *rows READ rows CONSTANT)
    Q_PROPERTY(bool canOpenFullView READ hasText NOTIFY hasTextChanged)
    Q_PROPERTY(bool stripDashes READ stripDashes WRITE setStripDashes NOTIFY stripDashesChanged)
    Q_PROPERTY(QString stripDashesHint READ stripDashesHint CONSTANT)
    Q_PROPERTY(bool isShowLogsOffered READ isShowLogsOffered NOTIFY isShowLogsOfferedChanged)
    Q_PROPERTY(QString showLogsLabel READ showLogsLabel CONSTANT)
    Q_PROPERTY(bool canCopyOutput READ hasText NOTIFY hasTextChanged)
    Q_PROPERTY(bool isClearOutputOffered READ isClearOutputOffered CONSTANT)
    Q_PROPERTY(bool showLogsSheet READ showLogsSheet WRITE setShowLogsSheet NOTIFY showLogsSheetChanged)
    Q_PROPERTY(QString logsTitle READ logsTitle CONSTANT)
    Q_PROPERTY(QString emptyLogText READ emptyLogText NOTIFY emptyLogTextChanged)
    Q_PROPERTY(sorvanta::LogLinesModel *log READ log CONSTANT)
    Q_PROPERTY(sorvanta::TranscriptViewer *viewer READ viewer CONSTANT)

public:
    /// What the pane shows and how it reaches its screen. The objects outlive the pane; all functions must be set.
    struct Content {
        const TextLines &lines; ///< of the shown text
        QAbstractItemModel &rows; ///< the same as rows with the role "text"
        std::function<QString()> text; ///< the shown text
        std::function<const QString &()> rawOutput; ///< what the tool printed
        std::function<bool()> stripDashes;
        std::function<void(bool)> setStripDashes;
        std::function<void()> clearOutput; ///< empties all of the screen's fields that it clears, but for `error`
        std::function<void()> clearError;
        /// Gives another number whenever `rawOutput` changed otherwise than by growing; spares the viewer work.
        std::function<int()> outputIdentity = {};
    };

    /// What plays the screen's audio, for the viewer window.
    struct Playback {
        PlaybackController *controller = nullptr; ///< outlives the pane; none where nothing is played
        std::function<bool()> isAvailable = [] { return false; }; ///< whether there is a file to play
    };

    /// The screen tells of changes by textChanged() and stripDashesChanged().
    TranscriptPane(const Content &content, TranscriptPaneSettings settings, const Playback &playback,
                   QObject *parent = nullptr);

    /// The pane of a run, which it follows.
    /// @param run outlives the pane
    TranscriptPane(TranscriptionRun &run, TranscriptPaneSettings settings, const Playback &playback,
                   QObject *parent = nullptr);
    ~TranscriptPane() override;

    /// What the pane does when its screen comes on show, and when there is another file to play: the viewer follows.
    void syncTranscriptWindow() { m_viewer.syncTranscriptWindow(); }

    /// The output or the shown text changed, from `firstLine` of the text on.
    void textChanged(qsizetype firstLine);

    /// Whether the block is there.
    bool isShown() const { return m_settings.staysWithoutText || hasText(); }
    /// Whether there is a shown text.
    bool hasText() const { return m_hasText; }

    TranscriptSearchState *search() { return &m_search; }

    /// What is painted over in a row, as three numbers a hit: start and length in UTF-16 units, and 1 for the current
    /// hit or 0. To be asked again whenever paintRevision() or the row's text changed.
    Q_INVOKABLE QList<int> hitsInRow(int row) const;
    int paintRevision() const { return m_paintRevision; }

    /// TranscriptCounts() of the shown text.
    QString counts() const { return m_counts; }

    QAbstractItemModel *rows() { return &m_content.rows; }

    Q_INVOKABLE void openFullView() { m_viewer.openTranscriptWindow(); }

    bool stripDashes() const { return m_content.stripDashes(); }
    void setStripDashes(bool stripDashes) { m_content.setStripDashes(stripDashes); }
    static QString stripDashesHint();
    /// The screen's option changed, and with it the shown text.
    void takeStripDashes();

    bool isShowLogsOffered() const { return m_isShowLogsOffered; }
    QString showLogsLabel() const { return m_settings.showLogsLabel; }

    /// Puts the shown text on the pasteboard.
    Q_INVOKABLE void copyOutput() const;

    bool isClearOutputOffered() const { return m_settings.offersClear; }
    /// Empties what is shown and what is known of the run. A run that goes on is not ended, but can be stopped no more.
    Q_INVOKABLE void clearOutput();

    bool showLogsSheet() const { return m_showLogsSheet; }
    void setShowLogsSheet(bool isShown);
    QString logsTitle() const { return m_settings.logsTitle; }
    /// What the sheet says in place of a log; empty if there is one.
    QString emptyLogText() const;
    /// The lines of the log; none while the sheet is not shown.
    LogLinesModel *log() { return &m_log; }
    /// Puts the whole log on the pasteboard.
    Q_INVOKABLE void copyLog() const;

    TranscriptViewer *viewer() { return &m_viewer; }

Q_SIGNALS:
    void hasTextChanged();
    void paintRevisionChanged();
    void countsChanged();
    void stripDashesChanged();
    void isShowLogsOfferedChanged();
    void showLogsSheetChanged();
    void emptyLogTextChanged();

private:
    TranscriptViewer::Screen viewerScreen();
    void followPlayback();
    void count(qsizetype firstLine);

    const Content m_content;
    const TranscriptPaneSettings m_settings;
    const Playback m_playback;
    TranscriptSearchState m_search;
    TranscriptCounter m_counter;
    LogLinesModel m_log;
    TranscriptViewer m_viewer;
    int m_paintRevision = 0;

    Q_OBJECT_BINDABLE_PROPERTY(TranscriptPane, bool, m_hasText, &TranscriptPane::hasTextChanged)
    Q_OBJECT_BINDABLE_PROPERTY(TranscriptPane, QString, m_counts, &TranscriptPane::countsChanged)
    Q_OBJECT_BINDABLE_PROPERTY(TranscriptPane, bool, m_isShowLogsOffered, &TranscriptPane::isShowLogsOfferedChanged)
    Q_OBJECT_BINDABLE_PROPERTY(TranscriptPane, bool, m_showLogsSheet, &TranscriptPane::showLogsSheetChanged)
};

} // namespace sorvanta
