#include "screens/batch/file_result.h"

#include "platform/paths.h"
#include "platform/unicode_text.h"

#include <algorithm>

namespace sorvanta {

FileStatusLook lookOf(FileStatus status)
{
    switch (status) {
    case FileStatus::pending:
        return {u"Pending"_qs, FileTone::Secondary, {}, FileTone::Secondary};
    case FileStatus::running:
        return {u"Transcribing"_qs, FileTone::Blue, {}, FileTone::Secondary};
    case FileStatus::done:
        return {u"Done"_qs, FileTone::Green, u"doc.text"_qs, FileTone::Secondary};
    case FileStatus::failed:
        return {u"Failed"_qs, FileTone::Red, u"exclamationmark.triangle"_qs, FileTone::Orange};
    case FileStatus::cancelled:
        return {u"Cancelled"_qs, FileTone::Orange, {}, FileTone::Secondary};
    }
    return {};
}

QString FileResult::exportText(bool stripDashes) const
{
    return displayedTranscript({}, transcript(), stripDashes);
}

QList<TranscriptSegment> FileResult::segments(bool stripDashes) const
{
    return parseTimedSegments(rawOutput(), stripDashes);
}

QString fileName(const QUrl &url)
{
    return lastPathComponent(url.toLocalFile());
}

QString oneLineFileName(const QUrl &url)
{
    QString name = fileName(url);
    std::replace_if(
        name.begin(), name.end(), [](QChar c) { return isNewline(c.unicode()); }, u' ');
    return name;
}

} // namespace sorvanta
