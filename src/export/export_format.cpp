#include "export/export_format.h"

#include <QStringView>

namespace sorvanta {

namespace {

struct Description {
    QStringView menuLabel;
    QStringView shortLabel;
    QStringView extension;
    bool isDocument = false;
};

constexpr Description description(ExportFormat format)
{
    switch (format) {
    case ExportFormat::txt:
        return {u"TXT", u"TXT", u"txt"};
    case ExportFormat::srt:
        return {u"SRT", u"SRT", u"srt"};
    case ExportFormat::vtt:
        return {u"VTT", u"VTT", u"vtt"};
    case ExportFormat::csv:
        return {u"CSV", u"CSV", u"csv"};
    case ExportFormat::docx:
        return {u"DOCX", u"DOCX", u"docx", true};
    case ExportFormat::pdf:
        return {u"PDF", u"PDF", u"pdf", true};
    case ExportFormat::markdown:
        return {u"Markdown (.md)", u"Markdown", u"md"};
    case ExportFormat::html:
        return {u"HTML", u"HTML", u"html"};
    case ExportFormat::json:
        return {u"JSON", u"JSON", u"json"};
    }
    return {};
}

} // namespace

QString menuLabel(ExportFormat format)
{
    return description(format).menuLabel.toString();
}

QString shortLabel(ExportFormat format)
{
    return description(format).shortLabel.toString();
}

QString fileExtension(ExportFormat format)
{
    return description(format).extension.toString();
}

bool isDocument(ExportFormat format)
{
    return description(format).isDocument;
}

} // namespace sorvanta
