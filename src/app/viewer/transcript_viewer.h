#pragma once

#include "app/viewer/transcript_window_model.h"
#include "app/viewer/transcript_window_view.h"
#include "core/text_lines.h"

#include <QObject>
#include <QtQml/qqml.h>

#include <functional>
#include <vector>

namespace sorvanta {

/// A screen's viewer window: its model, and the window while it is open. Main thread only.
///
/// A screen holds one as a member, gives it to its page, which contains a `TranscriptViewerLoader { viewer: … }` that
/// makes the window, and calls
/// - syncTranscriptWindow() when it comes on show and whenever what it shows changes, or textChanged(),
/// - openTranscriptWindow() for "Open Full View",
/// - model().setCurrentTime(), setPlaying() and so on as its playback goes on, and on the screen that marks what is
///   heard updateActiveSegment() behind that,
/// - stripDashesChanged() when its option changed.
class TranscriptViewer : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("held by a screen")
    Q_PROPERTY(sorvanta::TranscriptWindowView *transcriptWindow READ transcriptWindow NOTIFY transcriptWindowChanged)

public:
    /// How the window gets at its screen. All functions must be set, but the segments are either given or parsed; they
    /// are called on the main thread.
    struct Screen {
        std::function<QString()> text; ///< as shown
        std::function<QString()> counts; ///< of that text
        std::function<QString()> rawOutput = {}; ///< what the segments are parsed from
        std::function<bool()> stripsSegments = {}; ///< whether dashes are stripped from the segments
        std::function<QList<TranscriptWindowSegment>()> segments = {}; ///< the segments where none are parsed
        std::function<bool()> isPlaybackAvailable;
        std::function<bool()> isPlaying;
        std::function<double()> currentTime; ///< in seconds
        std::function<double()> playbackDuration; ///< in seconds
        TranscriptWindowView::Binding stripDashes;
        std::function<void()> togglePlay;
        std::function<void(double seconds)> seek;
        // What only spares work where a long text grows.
        /// The lines that make up `text`, with line feeds between them. They outlive the viewer.
        const TextLines *lines = nullptr;
        /// Gives another number whenever `rawOutput` changed otherwise than by growing.
        std::function<int()> outputIdentity = {};
    };

    explicit TranscriptViewer(Screen screen, QObject *parent = nullptr);
    ~TranscriptViewer() override;

    TranscriptWindowModel &model() { return m_model; }

    /// The open window, or null.
    TranscriptWindowView *transcriptWindow() const { return m_transcriptWindow; }

    /// Opens the window, or raises the one that is open, with its options kept.
    void openTranscriptWindow();

    /// Copies what the screen shows into the model. Segments are parsed only as far as the output is new.
    void syncTranscriptWindow();

    /// Does the same for a window that is open, where the lines of the shown text before `firstLine` are as they were:
    /// the work is that of the lines from there on and of the output that is new. A closed window is brought up to date
    /// when it opens.
    void textChanged(qsizetype firstLine);

    /// Marks the segment that is heard at `seconds`, if there is one. Costs next to nothing while the output stays.
    void updateActiveSegment(double seconds);

    /// Tells an open window that the screen's option changed.
    void stripDashesChanged();

    /// The window is closing, by its close box or by closeTranscriptWindow().
    /// @param window does nothing if it is not the one that is open
    Q_INVOKABLE void windowWillClose(sorvanta::TranscriptWindowView *window);

    /// Closes the window, whose options are forgotten.
    void closeTranscriptWindow();

Q_SIGNALS:
    void transcriptWindowChanged();
    /// The window is to be brought to the front, and the application with it.
    void raiseRequested();

private:
    void takeTranscriptFrom(qsizetype firstLine);
    void syncBehindTranscript();
    void syncSegments();
    void parseSegments();
    bool hasGrown(QStringView output) const;

    Screen m_screen;
    TranscriptWindowModel m_model;
    TranscriptWindowView *m_transcriptWindow = nullptr;

    std::vector<qsizetype> m_lineEnds; // in the model's transcript; of some lines at its beginning

    // What the model's segments were parsed from.
    QString m_parsed; // where the screen tells no identity of it
    int m_parsedIdentity = 0;
    qsizetype m_parsedEnd = 0;
    bool m_parsedStripping = false;
    qsizetype m_finishedEnd = 0; // behind the last line break
    qsizetype m_finishedSegments = 0; // in the lines up to there
};

} // namespace sorvanta
