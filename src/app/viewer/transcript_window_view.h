#pragma once

#include "app/viewer/transcript_font_choice.h"
#include "app/viewer/transcript_rows.h"
#include "app/viewer/transcript_window_model.h"
#include "core/transcript_search.h"

#include <QObject>
#include <QStringList>
#include <QVariantList>
#include <QtQml/qqml.h>

#include <functional>

namespace sorvanta {

/// One hit of the viewer's own search.
using TranscriptWindowMatch = Match;

/// From, to and step of a view option, in device-independent pixels.
struct OptionRange {
    Q_GADGET
    QML_VALUE_TYPE(optionRange)
    Q_PROPERTY(double from MEMBER from CONSTANT)
    Q_PROPERTY(double to MEMBER to CONSTANT)
    Q_PROPERTY(double step MEMBER step CONSTANT)

public:
    double from = 0.0;
    double to = 0.0;
    double step = 1.0;
};

/// One viewer window: what it shows of the model, and its own options, which end with it. Main thread only.
class TranscriptWindowView : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by a screen")
    Q_PROPERTY(QString counts READ counts NOTIFY countsChanged)
    Q_PROPERTY(QString totalText READ totalText NOTIFY countsChanged)
    Q_PROPERTY(sorvanta::TranscriptRows *rows READ rows CONSTANT)
    Q_PROPERTY(bool isStripDashes READ isStripDashes WRITE setStripDashes NOTIFY isStripDashesChanged)

    Q_PROPERTY(QString playLabel READ playLabel NOTIFY isPlayingChanged)
    Q_PROPERTY(bool canPlay READ canPlay NOTIFY canPlayChanged)
    Q_PROPERTY(bool canSeek READ canSeek NOTIFY canSeekChanged)
    Q_PROPERTY(double currentTime READ currentTime NOTIFY playbackMoved)
    Q_PROPERTY(double sliderEnd READ sliderEnd NOTIFY playbackMoved)
    Q_PROPERTY(QString currentTimeText READ currentTimeText NOTIFY playbackMoved)
    Q_PROPERTY(QString durationText READ durationText NOTIFY playbackMoved)

    Q_PROPERTY(QString searchText READ searchText WRITE setSearchText NOTIFY searchTextChanged)
    Q_PROPERTY(bool isPositionShown READ isPositionShown NOTIFY searchTextChanged)
    Q_PROPERTY(QString positionText READ positionText NOTIFY positionTextChanged)
    Q_PROPERTY(int paintRevision READ paintRevision NOTIFY paintRevisionChanged)

    Q_PROPERTY(double fontSize READ fontSize WRITE setFontSize NOTIFY fontSizeChanged)
    Q_PROPERTY(sorvanta::OptionRange fontSizes READ fontSizes CONSTANT)
    Q_PROPERTY(sorvanta::OptionRange lineSpacings READ lineSpacings CONSTANT)
    Q_PROPERTY(sorvanta::OptionRange horizontalPaddings READ horizontalPaddings CONSTANT)
    Q_PROPERTY(QStringList fontLabels READ fontLabels CONSTANT)
    Q_PROPERTY(int fontIndex READ fontIndex WRITE setFontIndex NOTIFY fontChoiceChanged)
    Q_PROPERTY(QString fontDesign READ fontDesign NOTIFY fontChoiceChanged)
    Q_PROPERTY(double lineSpacing READ lineSpacing WRITE setLineSpacing NOTIFY lineSpacingChanged)
    Q_PROPERTY(
        double horizontalPadding READ horizontalPadding WRITE setHorizontalPadding NOTIFY horizontalPaddingChanged)
    Q_PROPERTY(bool showTimestamps READ showTimestamps WRITE setShowTimestamps NOTIFY showTimestampsChanged)
    Q_PROPERTY(bool autoScrollToPlayback READ autoScrollToPlayback WRITE setAutoScrollToPlayback NOTIFY
                   autoScrollToPlaybackChanged)

public:
    /// The option of the screen to strip dashes, which the window shows and changes.
    struct Binding {
        std::function<bool()> get;
        std::function<void(bool)> set;
    };

    struct Callbacks {
        std::function<void()> onCopy;
        std::function<void()> onClose;
        std::function<void()> onTogglePlay;
        std::function<void(double seconds)> onSeek;
    };

    static OptionRange fontSizes() { return {12.0, 96.0, 1.0}; }
    static OptionRange lineSpacings() { return {0.0, 16.0, 1.0}; }
    static OptionRange horizontalPaddings() { return {8.0, 48.0, 2.0}; }

    /// @param model must outlive the view
    TranscriptWindowView(TranscriptWindowModel &model, Binding isStripDashes, Callbacks callbacks,
                         QObject *parent = nullptr);

    QString counts() const { return m_model.counts(); }
    /// "Total: " and the counts; empty without counts.
    QString totalText() const;
    TranscriptRows *rows() { return &m_rows; }

    bool isStripDashes() const { return m_isStripDashes.get(); }
    void setStripDashes(bool isStripDashes);

    QString playLabel() const;
    bool canPlay() const { return m_model.isPlaybackAvailable(); }
    bool canSeek() const { return m_model.isPlaybackAvailable() && m_model.playbackDuration() > 0.0; }
    double currentTime() const { return m_model.currentTime(); }
    /// Where the slider ends; it begins at 0.
    double sliderEnd() const;
    QString currentTimeText() const;
    QString durationText() const;

    const QString &searchText() const { return m_search.searchText(); }
    void setSearchText(const QString &searchText) { m_search.setSearchText(searchText); }
    std::vector<TranscriptWindowMatch> matches() const { return m_search.matches(); }
    int currentMatchIndex() const { return m_search.currentMatchIndex(); }
    bool isPositionShown() const { return !searchText().isEmpty(); }
    QString positionText() const { return m_search.matchCounter(); }
    Q_INVOKABLE void nextMatch() { m_search.nextMatch(); }
    Q_INVOKABLE void previousMatch() { m_search.previousMatch(); }
    /// A number that is another whenever hits of lines that stayed the same are painted anew.
    int paintRevision() const { return m_paintRevision; }
    /// The hits in a row from left to right: for each its start and its length in UTF-16 units and 1 if it is the
    /// current one, else 0.
    Q_INVOKABLE QList<int> hitsInRow(int row) const;

    double fontSize() const { return m_fontSize; }
    void setFontSize(double fontSize);
    TranscriptFontChoice fontChoice() const { return m_fontChoice; }
    void setFontChoice(TranscriptFontChoice choice);
    static QStringList fontLabels();
    int fontIndex() const;
    void setFontIndex(int index);
    QString fontDesign() const { return rawValue(m_fontChoice); }
    double lineSpacing() const { return m_lineSpacing; }
    void setLineSpacing(double lineSpacing);
    double horizontalPadding() const { return m_horizontalPadding; }
    void setHorizontalPadding(double padding);
    bool showTimestamps() const { return m_showTimestamps; }
    void setShowTimestamps(bool show);
    bool autoScrollToPlayback() const { return m_autoScrollToPlayback; }
    void setAutoScrollToPlayback(bool scroll);

    Q_INVOKABLE void copy() const { m_callbacks.onCopy(); }
    /// Ends the window; the view lives on until control returns to the event loop.
    Q_INVOKABLE void close() const { m_callbacks.onClose(); }
    Q_INVOKABLE void togglePlay() const { m_callbacks.onTogglePlay(); }
    /// What moving the slider does.
    Q_INVOKABLE void slideTo(double seconds);

Q_SIGNALS:
    void countsChanged();
    void isStripDashesChanged();
    void isPlayingChanged();
    void canPlayChanged();
    void canSeekChanged();
    void playbackMoved();
    void searchTextChanged();
    void positionTextChanged();
    void paintRevisionChanged();
    void fontSizeChanged();
    void fontChoiceChanged();
    void lineSpacingChanged();
    void horizontalPaddingChanged();
    void showTimestampsChanged();
    void autoScrollToPlaybackChanged();
    /// The row is to be scrolled to the vertical centre, animated.
    void scrollToRow(int row);

private:
    void followActiveSegment();

    TranscriptWindowModel &m_model;
    Binding m_isStripDashes;
    Callbacks m_callbacks;
    TranscriptRows m_rows;
    TranscriptSearchState m_search;
    int m_paintRevision = 0;
    double m_fontSize = 16.0;
    TranscriptFontChoice m_fontChoice = TranscriptFontChoice::monospaced;
    double m_lineSpacing = 6.0;
    double m_horizontalPadding = 16.0;
    bool m_showTimestamps = true;
    bool m_autoScrollToPlayback = true;
};

/// Gives QML the rows of a view.
struct TranscriptRowsForQml {
    Q_GADGET
    QML_FOREIGN(sorvanta::TranscriptRows)
    QML_NAMED_ELEMENT(TranscriptRows)
    QML_UNCREATABLE("held by a view")
};

} // namespace sorvanta
