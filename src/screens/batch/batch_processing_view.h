#pragma once

#include "core/language_choice.h"
#include "core/live_transcript.h"
#include "core/temporary_files.h"
#include "core/transcript_lines_model.h"
#include "models/model_choice.h"
#include "screens/batch/batch_exports.h"
#include "screens/batch/batch_run.h"
#include "screens/batch/file_results.h"
#include "screens/batch/selected_files.h"
#include "screens/pane/transcript_pane.h"
#include "screens/screen_surroundings.h"

#include <QObject>
#include <QUrl>
#include <QtQml/qqml.h>

namespace sorvanta {

/// The screen that transcribes many audio or video files, one after the other, and keeps one result for each. Main
/// thread only.
class BatchProcessingView : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the application")
    Q_PROPERTY(sorvanta::SelectedFiles *files READ files CONSTANT)
    Q_PROPERTY(sorvanta::ModelChoice *model READ model CONSTANT)
    Q_PROPERTY(sorvanta::LanguageChoice *language READ language CONSTANT)
    Q_PROPERTY(sorvanta::BatchRun *run READ run CONSTANT)
    Q_PROPERTY(sorvanta::FileResults *results READ results CONSTANT)
    Q_PROPERTY(sorvanta::TranscriptPane *pane READ pane CONSTANT)
    Q_PROPERTY(sorvanta::ExportMenu *exportMenu READ exportMenu CONSTANT)
    Q_PROPERTY(sorvanta::ExportMenu *exportAllMenu READ exportAllMenu CONSTANT)
    Q_PROPERTY(bool canChange READ canChange NOTIFY canChangeChanged)
    Q_PROPERTY(QString startLabel READ startLabel NOTIFY canChangeChanged)
    Q_PROPERTY(bool canStart READ canStart NOTIFY canStartChanged)
    Q_PROPERTY(bool canStop READ canStop NOTIFY canStopChanged)
    Q_PROPERTY(bool areResultsShown READ areResultsShown NOTIFY areResultsShownChanged)
    Q_PROPERTY(bool hasSelected READ hasSelected NOTIFY selectedChanged)
    Q_PROPERTY(QString selectedName READ selectedName NOTIFY selectedChanged)
    Q_PROPERTY(QString selectedStatusWord READ selectedStatusWord NOTIFY selectedChanged)
    Q_PROPERTY(sorvanta::FileTone::Tone selectedStatusTone READ selectedStatusTone NOTIFY selectedChanged)
    Q_PROPERTY(QString selectedError READ selectedError NOTIFY selectedChanged)

public:
    explicit BatchProcessingView(const ScreenSurroundings &surroundings, QObject *parent = nullptr);
    ~BatchProcessingView() override;

    /// The files of the next run.
    SelectedFiles *files() { return &m_files; }
    ModelChoice *model() { return &m_model; }
    LanguageChoice *language() { return &m_language; }
    BatchRun *run() { return &m_run; }
    /// One for each file of the last run.
    FileResults *results() { return &m_results; }
    /// The selected result's text.
    TranscriptPane *pane() { return &m_pane; }
    ExportMenu *exportMenu() const { return m_exports.menu(); }
    ExportMenu *exportAllMenu() const { return m_exports.exportAllMenu(); }

    /// What the screen does when it comes on show.
    void appear();

    /// Whether files can be chosen and cleared, and results be cleared: not while a batch runs.
    bool canChange() const { return !m_run.isTranscribing(); }
    QString startLabel() const;
    bool canStart() const;
    bool canStop() const { return m_run.isTranscribing() && !m_run.isStopping(); }

    /// Shows a panel for audio and movie files.
    Q_INVOKABLE void chooseFiles();

    /// Whether a drop of these files and of data in these formats (media types) holds something for this screen.
    Q_INVOKABLE bool acceptsDrop(const QList<QUrl> &files, const QStringList &formats) const;

    /// Adds the audio and movie files of a drop. @return whether there were any, and could be
    Q_INVOKABLE bool dropFiles(const QList<QUrl> &files);

    /// The first of these formats whose data is audio or a movie; empty if none is.
    Q_INVOKABLE QString mediaFormat(const QStringList &formats) const;

    /// Adds audio or a movie that was dropped as data: it is put into a temporary file, which stays until the files are
    /// cleared. Data that cannot be put there is dropped, as is none at all, which is what a drop that fails gives.
    Q_INVOKABLE void dropData(const QByteArray &data);

    /// Transcribes all files with the chosen model.
    Q_INVOKABLE void start();

    /// Forgets the results; the files stay.
    Q_INVOKABLE void clearAll();
    /// Forgets the results and the files.
    Q_INVOKABLE void clearFiles();

    bool areResultsShown() const { return m_results.count() > 0; }
    bool hasSelected() const { return m_results.selected() != nullptr; }
    /// The name of the selected result's file, in one line.
    QString selectedName() const;
    QString selectedStatusWord() const;
    FileTone::Tone selectedStatusTone() const;
    /// Why the selected result's file failed, without the line ends behind it; empty if it did not.
    QString selectedError() const;

    bool stripDashes() const { return m_lines.stripDashes(); }

Q_SIGNALS:
    void canChangeChanged();
    void canStartChanged();
    void canStopChanged();
    void areResultsShownChanged();
    void selectedChanged();

private:
    TranscriptPane::Content paneContent();
    void addFiles(const QList<QUrl> &urls);
    void resetForNewFiles();
    void resetOutputs();
    void showSelected();
    void takeOutput(qsizetype row, const QString &piece);
    void setStripDashes(bool stripDashes);
    void saveToHistory(const FileResult &result);

    TranscriptionHistoryStore &m_history;
    FilePanels &m_panels;
    TemporaryFiles m_droppedData;
    SelectedFiles m_files;
    ModelChoice m_model;
    LanguageChoice m_language;
    FileResults m_results;
    LiveTranscript m_shownOutput; // of the selected result
    int m_shownIdentity = 0; // of that result, for the viewer
    TranscriptLinesModel m_lines{m_shownOutput};
    BatchRun m_run;
    BatchExports m_exports;
    TranscriptPane m_pane;
};

} // namespace sorvanta
