#pragma once

#include "export/export_input.h"

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>

// The formats as other people's libraries read them. What is malformed is thrown as std::runtime_error. Times are in
// the form of a transcript's segments.

namespace sorvanta::readers {

/// The events of a subtitle file as libavformat finds them. @param format the name of its reader, "srt" or "webvtt"
QList<TranscriptSegment> subtitles(const QByteArray &file, const char *format);

/// The words of the events as libavcodec shows them.
QStringList shownSubtitles(const QByteArray &file, const char *format);

/// The rows of a CSV file as libcsv reads them, quotes being judged strictly.
QList<QStringList> csvRows(const QByteArray &file);

/// The transcript in a JSON file. Throws also if there are other keys than there should be.
ExportInput jsonTranscript(const QByteArray &file);

/// A web page as an HTML5 parser sees it.
struct Page {
    QString title;
    QString encoding;
    QStringList paragraphs; ///< the paragraphs with nothing in strong type, with a line feed for each break
    QList<TranscriptSegment> segments; ///< the other ones: the times in strong type, and the text behind them
};
Page page(const QByteArray &file);

/// The paragraphs of a Markdown file that begin with times in bold type. Throws if there is anything else beside them.
QList<TranscriptSegment> markdownSegments(const QByteArray &file);

} // namespace sorvanta::readers
