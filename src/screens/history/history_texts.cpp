#include "screens/history/history_texts.h"

#include "platform/iso8601.h"
#include "platform/paths.h"
#include "platform/unicode_text.h"

#include <QVariantMap>

namespace sorvanta {

namespace {

// In UTF-16 units. A text of the first length is an hour of quick speech, and laid out in some 20 ms.
constexpr qsizetype longestWholeText = 60'000;
constexpr qsizetype pieceLength = 8'000;

/// Where a piece of `text` ends and where the next one begins.
struct Cut {
    qsizetype end;
    qsizetype next;
};

Cut cutOf(QStringView text)
{
    if (text.size() <= pieceLength)
        return {text.size(), text.size()};
    const QStringView piece = text.first(pieceLength + 1);
    const qsizetype lineEnd = piece.lastIndexOf(u'\n');
    if (lineEnd > 0)
        return {lineEnd, lineEnd + 1};
    const qsizetype blank = piece.first(pieceLength).lastIndexOf(u' ');
    if (blank > 0)
        return {blank + 1, blank + 1};
    const qsizetype end = text[pieceLength].isLowSurrogate() ? pieceLength + 1 : pieceLength;
    return {end, end};
}

} // namespace

QString entryTitle(const TranscriptionHistoryEntry &entry)
{
    const QString name = lastPathComponent(entry.sourceLabel); // empty for an empty label only
    return name.isEmpty() ? QStringLiteral("Unknown source") : name;
}

QString entryPreview(const TranscriptionHistoryEntry &entry)
{
    // Trimmed, a text begins with the first line that holds more than spaces.
    const QStringView text = trimmedOfWhitespaceAndNewlines(entry.text);
    if (text.isEmpty())
        return QStringLiteral("No transcript text saved.");
    qsizetype end = 0;
    while (end < text.size() && !isNewline(text[end].unicode()))
        ++end;
    return text.first(end).toString();
}

QString formattedDate(const TranscriptionHistoryEntry &entry, DateFormatter formatter)
{
    const auto moment = iso8601Milliseconds(entry.createdAt);
    return moment ? formatter(*moment) : entry.createdAt;
}

QList<HistoryTag> entryTags(const TranscriptionHistoryEntry &entry)
{
    const QString language = entry.language.isEmpty() ? QStringLiteral("auto") : entry.language;
    QList<HistoryTag> tags{{entry.model, QStringLiteral("cpu")}, {language, QStringLiteral("globe")}};
    if (entry.diarization)
        tags << HistoryTag{QStringLiteral("Diarization"), QStringLiteral("person.2.wave.2.fill")};
    return tags;
}

QVariantList tagList(const TranscriptionHistoryEntry &entry)
{
    QVariantList list;
    for (const HistoryTag &tag : entryTags(entry))
        list << QVariantMap{{QStringLiteral("text"), tag.text}, {QStringLiteral("systemImage"), tag.systemImage}};
    return list;
}

QStringList textPieces(const QString &text)
{
    if (text.size() <= longestWholeText)
        return text.isEmpty() ? QStringList() : QStringList(text);
    QStringList pieces;
    for (QStringView rest = text; !rest.isEmpty();) {
        const Cut cut = cutOf(rest);
        pieces << rest.first(cut.end).toString();
        rest = rest.sliced(cut.next);
    }
    return pieces;
}

} // namespace sorvanta
