#include "screens/history/history_detail.h"

#include "export/stored_export.h"
#include "platform/date_text.h"
#include "platform/unicode_text.h"
#include "screens/history/history_texts.h"

namespace sorvanta {

void HistoryDetail::show(const std::optional<TranscriptionHistoryEntry> &entry)
{
    if (entry == m_entry) {
        refresh();
        return;
    }
    m_entry = entry;
    m_textPieces = m_entry && !isTextBlank() ? sorvanta::textPieces(m_entry->text) : QStringList();
    m_hasRecording = findsRecording();
    emit changed();
    emit textChanged();
}

void HistoryDetail::refresh()
{
    const bool hasRecording = findsRecording();
    if (hasRecording == m_hasRecording)
        return;
    m_hasRecording = hasRecording;
    emit changed();
}

QString HistoryDetail::title() const
{
    return m_entry ? entryTitle(*m_entry) : QString();
}

QString HistoryDetail::date() const
{
    return m_entry ? formattedDate(*m_entry, mediumDateText) : QString();
}

QVariantList HistoryDetail::tags() const
{
    return m_entry ? tagList(*m_entry) : QVariantList();
}

QString HistoryDetail::emptyText() const
{
    return m_entry && isTextBlank() ? QStringLiteral("No transcript text stored.") : QString();
}

QList<TranscriptWindowSegment> HistoryDetail::windowSegments() const
{
    QList<TranscriptWindowSegment> segments;
    if (!m_entry)
        return segments;
    for (const TranscriptSegment &segment : historySegments(*m_entry)) {
        const auto start = timecodeSeconds(segment.start);
        const auto end = timecodeSeconds(segment.end);
        if (start && end)
            segments << TranscriptWindowSegment{segment.start, segment.end, segment.text, *start, *end};
    }
    return segments;
}

bool HistoryDetail::findsRecording() const
{
    return m_entry && m_entry->recordingPath && !m_entry->recordingPath->isEmpty()
           && storedFile(m_entry->recordingPath);
}

bool HistoryDetail::isTextBlank() const
{
    return trimmedOfWhitespaceAndNewlines(m_entry->text).isEmpty();
}

} // namespace sorvanta
