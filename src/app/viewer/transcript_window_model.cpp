#include "app/viewer/transcript_window_model.h"

#include <algorithm>

namespace sorvanta {

void TranscriptWindowModel::setTranscript(const QString &transcript)
{
    if (m_transcript == transcript)
        return;
    m_transcript = transcript;
    emit transcriptChanged(0);
}

void TranscriptWindowModel::replaceTranscriptFrom(qsizetype kept, QStringView added)
{
    if (QStringView(m_transcript).sliced(kept) == added)
        return;
    m_transcript.truncate(kept);
    m_transcript += added;
    emit transcriptChanged(kept);
}

void TranscriptWindowModel::setCounts(const QString &counts)
{
    if (m_counts == counts)
        return;
    m_counts = counts;
    emit countsChanged();
}

void TranscriptWindowModel::setSegments(const QList<TranscriptWindowSegment> &segments)
{
    if (m_segments.isSharedWith(segments))
        return;
    const auto [mine, theirs] =
        std::mismatch(m_segments.cbegin(), m_segments.cend(), segments.cbegin(), segments.cend());
    if (mine == m_segments.cend() && theirs == segments.cend())
        return;
    const qsizetype first = mine - m_segments.cbegin();
    const qsizetype removed = m_segments.size() - first;
    m_segments = segments;
    indexFrom(first);
    emit segmentsChanged(first, removed, m_segments.size() - first);
}

void TranscriptWindowModel::replaceSegmentsFrom(qsizetype kept, const QList<TranscriptWindowSegment> &added)
{
    const auto [mine, theirs] =
        std::mismatch(m_segments.cbegin() + kept, m_segments.cend(), added.cbegin(), added.cend());
    if (mine == m_segments.cend() && theirs == added.cend())
        return;
    const qsizetype first = mine - m_segments.cbegin();
    const qsizetype removed = m_segments.size() - first;
    m_segments.resize(first);
    m_segments.append(added.sliced(first - kept));
    indexFrom(first);
    emit segmentsChanged(first, removed, m_segments.size() - first);
}

std::optional<int> TranscriptWindowModel::segmentAt(double seconds) const
{
    // Before this one all segments have ended.
    const auto reaching = std::lower_bound(m_latestEnds.begin(), m_latestEnds.end(), seconds);
    for (qsizetype i = reaching - m_latestEnds.begin(); i < m_segments.size(); ++i) {
        const TranscriptWindowSegment &segment = m_segments[i];
        if (segment.startSeconds <= seconds && segment.endSeconds >= seconds)
            return static_cast<int>(i);
        if (segment.startSeconds > seconds && i < m_ordered)
            i = std::max(i, m_ordered - 1); // the rest of those in order begin later still
    }
    return std::nullopt;
}

void TranscriptWindowModel::setActiveSegmentIndex(std::optional<int> index)
{
    if (m_activeSegmentIndex == index)
        return;
    m_activeSegmentIndex = index;
    emit activeSegmentIndexChanged();
}

void TranscriptWindowModel::setPlaying(bool isPlaying)
{
    if (m_isPlaying == isPlaying)
        return;
    m_isPlaying = isPlaying;
    emit isPlayingChanged();
}

void TranscriptWindowModel::setPlaybackAvailable(bool isAvailable)
{
    if (m_isPlaybackAvailable == isAvailable)
        return;
    m_isPlaybackAvailable = isAvailable;
    emit isPlaybackAvailableChanged();
}

void TranscriptWindowModel::setCurrentTime(double seconds)
{
    if (m_currentTime == seconds)
        return;
    m_currentTime = seconds;
    emit currentTimeChanged();
}

void TranscriptWindowModel::setPlaybackDuration(double seconds)
{
    if (m_playbackDuration == seconds)
        return;
    m_playbackDuration = seconds;
    emit playbackDurationChanged();
}

void TranscriptWindowModel::indexFrom(qsizetype first)
{
    m_latestEnds.resize(static_cast<std::size_t>(first));
    m_ordered = std::min(m_ordered, first);
    for (qsizetype i = first; i < m_segments.size(); ++i) {
        const TranscriptWindowSegment &segment = m_segments[i];
        m_latestEnds.push_back(m_latestEnds.empty() ? segment.endSeconds
                                                    : std::max(m_latestEnds.back(), segment.endSeconds));
        const bool isInOrder = i == 0 || m_segments[i - 1].startSeconds <= segment.startSeconds;
        if (m_ordered == i && isInOrder)
            ++m_ordered;
    }
}

} // namespace sorvanta
