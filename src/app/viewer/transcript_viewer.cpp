#include "app/viewer/transcript_viewer.h"

#include "platform/desktop/desktop.h"
#include "platform/unicode_text.h"

#include <algorithm>
#include <utility>

namespace sorvanta {

TranscriptViewer::TranscriptViewer(Screen screen, QObject *parent)
    : QObject(parent)
    , m_screen(std::move(screen))
{
}

TranscriptViewer::~TranscriptViewer() = default;

void TranscriptViewer::openTranscriptWindow()
{
    syncTranscriptWindow();
    if (m_transcriptWindow) {
        emit raiseRequested();
        return;
    }
    m_transcriptWindow = new TranscriptWindowView(m_model, m_screen.stripDashes,
                                                  {.onCopy = [this] { copyToPasteboard(m_screen.text()); },
                                                   .onClose = [this] { closeTranscriptWindow(); },
                                                   .onTogglePlay = m_screen.togglePlay,
                                                   .onSeek = m_screen.seek},
                                                  this);
    emit transcriptWindowChanged();
    emit raiseRequested();
}

void TranscriptViewer::syncTranscriptWindow()
{
    m_lineEnds.clear();
    m_model.setTranscript(m_screen.text());
    syncBehindTranscript();
}

void TranscriptViewer::textChanged(qsizetype firstLine)
{
    if (!m_transcriptWindow)
        return;
    if (!m_screen.lines || firstLine == 0) {
        syncTranscriptWindow();
        return;
    }
    takeTranscriptFrom(firstLine);
    syncBehindTranscript();
}

void TranscriptViewer::takeTranscriptFrom(qsizetype firstLine)
{
    const TextLines &lines = *m_screen.lines;
    m_lineEnds.resize(std::min(m_lineEnds.size(), static_cast<std::size_t>(firstLine)));
    for (auto line = static_cast<qsizetype>(m_lineEnds.size()); line < firstLine; ++line)
        m_lineEnds.push_back((line == 0 ? 0 : m_lineEnds.back() + 1) + lines.line(line).size());
    QString changed;
    for (qsizetype line = firstLine; line < lines.lineCount(); ++line) {
        changed += u'\n';
        changed += lines.line(line);
    }
    m_model.replaceTranscriptFrom(m_lineEnds.back(), changed);
}

void TranscriptViewer::syncBehindTranscript()
{
    m_model.setCounts(m_screen.counts());
    syncSegments();
    m_model.setPlaybackAvailable(m_screen.isPlaybackAvailable());
    m_model.setPlaying(m_screen.isPlaying());
    m_model.setCurrentTime(m_screen.currentTime());
    m_model.setPlaybackDuration(m_screen.playbackDuration());
}

void TranscriptViewer::updateActiveSegment(double seconds)
{
    syncSegments();
    m_model.setActiveSegmentIndex(m_model.segmentAt(seconds));
}

void TranscriptViewer::stripDashesChanged()
{
    if (m_transcriptWindow)
        emit m_transcriptWindow->isStripDashesChanged();
}

void TranscriptViewer::windowWillClose(TranscriptWindowView *window)
{
    if (m_transcriptWindow && window == m_transcriptWindow)
        closeTranscriptWindow();
}

void TranscriptViewer::closeTranscriptWindow()
{
    if (!m_transcriptWindow)
        return;
    // The window goes first, and only once control is back at the event loop: this may be its own doing.
    TranscriptWindowView *closed = std::exchange(m_transcriptWindow, nullptr);
    emit transcriptWindowChanged();
    closed->deleteLater();
}

void TranscriptViewer::syncSegments()
{
    if (m_screen.segments)
        m_model.setSegments(m_screen.segments());
    else
        parseSegments();
}

/// Whether `output` begins with the finished lines that were parsed.
bool TranscriptViewer::hasGrown(QStringView output) const
{
    if (m_screen.outputIdentity)
        return m_parsedIdentity == m_screen.outputIdentity() && output.size() >= m_parsedEnd;
    return output.startsWith(QStringView(m_parsed).first(m_finishedEnd));
}

void TranscriptViewer::parseSegments()
{
    const QString output = m_screen.rawOutput();
    const bool strips = m_screen.stripsSegments();
    const bool hasGrown = strips == m_parsedStripping && this->hasGrown(output);
    // A string that is shared is not compared.
    if (hasGrown && (m_screen.outputIdentity ? output.size() == m_parsedEnd : output == m_parsed))
        return;
    if (!hasGrown) {
        m_finishedEnd = 0;
        m_finishedSegments = 0;
    }
    const QStringView fresh = QStringView(output).sliced(m_finishedEnd);
    m_model.replaceSegmentsFrom(m_finishedSegments, parseTimedWindowSegments(fresh, strips));

    qsizetype lastLine = fresh.size();
    while (lastLine > 0 && !isNewline(fresh[lastLine - 1].unicode()))
        --lastLine;
    const qsizetype unfinished = parseTimedWindowSegments(fresh.sliced(lastLine), strips).size();
    m_finishedSegments = m_model.segments().size() - unfinished;
    m_finishedEnd += lastLine;
    m_parsedEnd = output.size();
    m_parsedStripping = strips;
    if (m_screen.outputIdentity)
        m_parsedIdentity = m_screen.outputIdentity();
    else
        m_parsed = output;
}

} // namespace sorvanta
