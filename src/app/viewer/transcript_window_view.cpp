#include "app/viewer/transcript_window_view.h"

#include "app/viewer/window_time_text.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace sorvanta {

namespace {

/// The nearest value that a control of this range can give.
double fitted(double value, const OptionRange &range)
{
    const double steps = std::round((value - range.from) / range.step);
    return std::clamp(range.from + steps * range.step, range.from, range.to);
}

} // namespace

TranscriptWindowView::TranscriptWindowView(TranscriptWindowModel &model, Binding isStripDashes, Callbacks callbacks,
                                           QObject *parent)
    : QObject(parent)
    , m_model(model)
    , m_isStripDashes(std::move(isStripDashes))
    , m_callbacks(std::move(callbacks))
    , m_rows(model)
    , m_search(m_rows)
{
    connect(&model, &TranscriptWindowModel::countsChanged, this, &TranscriptWindowView::countsChanged);
    connect(&model, &TranscriptWindowModel::isPlayingChanged, this, &TranscriptWindowView::isPlayingChanged);
    connect(&model, &TranscriptWindowModel::isPlaybackAvailableChanged, this, &TranscriptWindowView::canPlayChanged);
    connect(&model, &TranscriptWindowModel::isPlaybackAvailableChanged, this, &TranscriptWindowView::canSeekChanged);
    connect(&model, &TranscriptWindowModel::playbackDurationChanged, this, &TranscriptWindowView::canSeekChanged);
    connect(&model, &TranscriptWindowModel::playbackDurationChanged, this, &TranscriptWindowView::playbackMoved);
    connect(&model, &TranscriptWindowModel::currentTimeChanged, this, &TranscriptWindowView::playbackMoved);
    connect(&model, &TranscriptWindowModel::activeSegmentIndexChanged, this,
            &TranscriptWindowView::followActiveSegment);
    connect(&m_rows, &TranscriptRows::linesChanged, &m_search, &TranscriptSearchState::recomputeMatchesFrom);
    connect(&m_search, &TranscriptSearchState::searchTextChanged, this, &TranscriptWindowView::searchTextChanged);
    connect(&m_search, &TranscriptSearchState::matchCounterChanged, this, &TranscriptWindowView::positionTextChanged);
    connect(&m_search, &TranscriptSearchState::scrollToCurrentMatch, this, &TranscriptWindowView::scrollToRow);
    connect(&m_search, &TranscriptSearchState::highlightChanged, this, [this] {
        ++m_paintRevision;
        emit paintRevisionChanged();
    });
}

QString TranscriptWindowView::totalText() const
{
    return counts().isEmpty() ? QString() : QStringLiteral("Total: ") + counts();
}

void TranscriptWindowView::setStripDashes(bool isStripDashes)
{
    if (isStripDashes != this->isStripDashes())
        m_isStripDashes.set(isStripDashes);
}

QString TranscriptWindowView::playLabel() const
{
    return m_model.isPlaying() ? QStringLiteral("Pause") : QStringLiteral("Play");
}

double TranscriptWindowView::sliderEnd() const
{
    return std::max({1.0, m_model.playbackDuration(), m_model.currentTime()});
}

QString TranscriptWindowView::currentTimeText() const
{
    return windowTimeText(m_model.currentTime());
}

QString TranscriptWindowView::durationText() const
{
    return windowTimeText(m_model.playbackDuration());
}

void TranscriptWindowView::slideTo(double seconds)
{
    m_model.setCurrentTime(seconds);
    m_callbacks.onSeek(seconds);
}

QList<int> TranscriptWindowView::hitsInRow(int row) const
{
    QList<int> hits;
    if (row < 0 || row >= m_rows.lineCount())
        return hits;
    for (const HighlightedRange &hit : m_search.matchesInLine(m_rows.line(row), row))
        hits << static_cast<int>(hit.start) << static_cast<int>(hit.length) << (hit.isCurrent ? 1 : 0);
    return hits;
}

void TranscriptWindowView::setFontSize(double fontSize)
{
    const double size = fitted(fontSize, fontSizes());
    if (m_fontSize == size)
        return;
    m_fontSize = size;
    emit fontSizeChanged();
}

void TranscriptWindowView::setFontChoice(TranscriptFontChoice choice)
{
    if (m_fontChoice == choice)
        return;
    m_fontChoice = choice;
    emit fontChoiceChanged();
}

QStringList TranscriptWindowView::fontLabels()
{
    QStringList labels;
    for (const TranscriptFontChoice choice : transcriptFontChoices)
        labels << label(choice);
    return labels;
}

int TranscriptWindowView::fontIndex() const
{
    const auto choice = std::find(transcriptFontChoices.begin(), transcriptFontChoices.end(), m_fontChoice);
    return static_cast<int>(choice - transcriptFontChoices.begin());
}

void TranscriptWindowView::setFontIndex(int index)
{
    if (index >= 0 && index < static_cast<int>(transcriptFontChoices.size()))
        setFontChoice(transcriptFontChoices[static_cast<std::size_t>(index)]);
}

void TranscriptWindowView::setLineSpacing(double lineSpacing)
{
    const double spacing = fitted(lineSpacing, lineSpacings());
    if (m_lineSpacing == spacing)
        return;
    m_lineSpacing = spacing;
    emit lineSpacingChanged();
}

void TranscriptWindowView::setHorizontalPadding(double padding)
{
    const double fittedPadding = fitted(padding, horizontalPaddings());
    if (m_horizontalPadding == fittedPadding)
        return;
    m_horizontalPadding = fittedPadding;
    emit horizontalPaddingChanged();
}

void TranscriptWindowView::setShowTimestamps(bool show)
{
    if (m_showTimestamps == show)
        return;
    m_showTimestamps = show;
    emit showTimestampsChanged();
}

void TranscriptWindowView::setAutoScrollToPlayback(bool scroll)
{
    if (m_autoScrollToPlayback == scroll)
        return;
    m_autoScrollToPlayback = scroll;
    emit autoScrollToPlaybackChanged();
}

void TranscriptWindowView::followActiveSegment()
{
    const auto &index = m_model.activeSegmentIndex();
    if (m_autoScrollToPlayback && index)
        emit scrollToRow(*index);
}

} // namespace sorvanta
