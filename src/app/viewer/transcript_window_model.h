#pragma once

#include "core/transcript_text.h"

#include <QList>
#include <QObject>
#include <QString>

#include <optional>
#include <vector>

namespace sorvanta {

/// What a screen feeds to its viewer window; made with the screen and kept as long as it lives. Every field tells of
/// its changes. Main thread only.
class TranscriptWindowModel : public QObject {
    Q_OBJECT

public:
    explicit TranscriptWindowModel(QObject *parent = nullptr)
        : QObject(parent)
    {
    }

    const QString &transcript() const { return m_transcript; }
    void setTranscript(const QString &transcript);

    /// Keeps the first `kept` UTF-16 units of the transcript, and `added` comes behind them.
    void replaceTranscriptFrom(qsizetype kept, QStringView added);

    const QString &counts() const { return m_counts; }
    void setCounts(const QString &counts);

    const QList<TranscriptWindowSegment> &segments() const { return m_segments; }

    /// Takes other segments, and tells of those only that are behind the ones that stayed the same at the beginning.
    void setSegments(const QList<TranscriptWindowSegment> &segments);

    /// Keeps the first `kept` segments, and `added` comes behind them.
    void replaceSegmentsFrom(qsizetype kept, const QList<TranscriptWindowSegment> &added);

    /// The index of the first segment with that time between its ends, both included; none in a gap. Segments may
    /// overlap and be out of order; where their beginnings are in order, no search through all of them is needed.
    std::optional<int> segmentAt(double seconds) const;

    /// The index of the segment being heard, or none.
    const std::optional<int> &activeSegmentIndex() const { return m_activeSegmentIndex; }
    void setActiveSegmentIndex(std::optional<int> index);

    bool isPlaying() const { return m_isPlaying; }
    void setPlaying(bool isPlaying);

    bool isPlaybackAvailable() const { return m_isPlaybackAvailable; }
    void setPlaybackAvailable(bool isAvailable);

    /// In seconds.
    double currentTime() const { return m_currentTime; }
    void setCurrentTime(double seconds);

    /// In seconds.
    double playbackDuration() const { return m_playbackDuration; }
    void setPlaybackDuration(double seconds);

Q_SIGNALS:
    /// @param kept how many UTF-16 units at the beginning are as they were
    void transcriptChanged(qsizetype kept);
    void countsChanged();
    /// All segments from `first` on gave place to `added` ones.
    /// @param removed how many there were
    void segmentsChanged(qsizetype first, qsizetype removed, qsizetype added);
    void activeSegmentIndexChanged();
    void isPlayingChanged();
    void isPlaybackAvailableChanged();
    void currentTimeChanged();
    void playbackDurationChanged();

private:
    void indexFrom(qsizetype first);

    QString m_transcript;
    QString m_counts;
    QList<TranscriptWindowSegment> m_segments;
    std::vector<double> m_latestEnds; // for each segment the latest end of it and of those before it
    qsizetype m_ordered = 0; // how many at the beginning have their starts in order
    std::optional<int> m_activeSegmentIndex;
    bool m_isPlaying = false;
    bool m_isPlaybackAvailable = false;
    double m_currentTime = 0.0;
    double m_playbackDuration = 0.0;
};

} // namespace sorvanta
