#include "export/docx_document.h"

#include "export/document_text.h"
#include "export/zip_package.h"

#include <QXmlStreamWriter>

namespace sorvanta {

namespace {

constexpr char contentTypes[] =
    R"(<?xml version="1.0" encoding="UTF-8" standalone="yes"?>
<Types xmlns="http://schemas.openxmlformats.org/package/2006/content-types"><Default Extension="rels" ContentType="application/vnd.openxmlformats-package.relationships+xml"/><Default Extension="xml" ContentType="application/xml"/><Override PartName="/word/document.xml" ContentType="application/vnd.openxmlformats-officedocument.wordprocessingml.document.main+xml"/><Override PartName="/word/styles.xml" ContentType="application/vnd.openxmlformats-officedocument.wordprocessingml.styles+xml"/></Types>
)";

constexpr char packageRelationships[] =
    R"(<?xml version="1.0" encoding="UTF-8" standalone="yes"?>
<Relationships xmlns="http://schemas.openxmlformats.org/package/2006/relationships"><Relationship Id="rId1" Type="http://schemas.openxmlformats.org/officeDocument/2006/relationships/officeDocument" Target="word/document.xml"/></Relationships>
)";

constexpr char documentRelationships[] =
    R"(<?xml version="1.0" encoding="UTF-8" standalone="yes"?>
<Relationships xmlns="http://schemas.openxmlformats.org/package/2006/relationships"><Relationship Id="rId1" Type="http://schemas.openxmlformats.org/officeDocument/2006/relationships/styles" Target="styles.xml"/></Relationships>
)";

// 12 points; sizes are in halves of a point.
constexpr char styles[] =
    R"(<?xml version="1.0" encoding="UTF-8" standalone="yes"?>
<w:styles xmlns:w="http://schemas.openxmlformats.org/wordprocessingml/2006/main"><w:docDefaults><w:rPrDefault><w:rPr><w:rFonts w:ascii="Helvetica" w:eastAsia="Helvetica" w:hAnsi="Helvetica" w:cs="Helvetica"/><w:sz w:val="24"/><w:szCs w:val="24"/></w:rPr></w:rPrDefault><w:pPrDefault/></w:docDefaults><w:style w:type="paragraph" w:default="1" w:styleId="Normal"><w:name w:val="Normal"/></w:style></w:styles>
)";

constexpr auto wordNamespace = "http://schemas.openxmlformats.org/wordprocessingml/2006/main";

/// Writes the characters of a run; tabs and line breaks are elements of their own.
void writeRun(QXmlStreamWriter &writer, QStringView text, bool isRightToLeft)
{
    writer.writeStartElement(wordNamespace, "r");
    if (isRightToLeft) {
        writer.writeStartElement(wordNamespace, "rPr");
        writer.writeEmptyElement(wordNamespace, "rtl");
        writer.writeEndElement();
    }
    while (!text.isEmpty()) {
        if (text.front() == u'\t' || text.front() == QChar::LineSeparator) {
            writer.writeEmptyElement(wordNamespace, text.front() == u'\t' ? "tab" : "br");
            text = text.sliced(1);
            continue;
        }
        qsizetype length = 1;
        while (length < text.size() && text[length] != u'\t' && text[length] != QChar::LineSeparator)
            ++length;
        writer.writeStartElement(wordNamespace, "t");
        writer.writeAttribute("xml:space", "preserve");
        writer.writeCharacters(text.first(length).toString());
        writer.writeEndElement();
        text = text.sliced(length);
    }
    writer.writeEndElement();
}

void writeParagraph(QXmlStreamWriter &writer, const QString &paragraph)
{
    const bool isRightToLeft = paragraph.isRightToLeft();
    writer.writeStartElement(wordNamespace, "p");
    if (isRightToLeft) {
        writer.writeStartElement(wordNamespace, "pPr");
        writer.writeEmptyElement(wordNamespace, "bidi");
        writer.writeEndElement();
    }
    if (!paragraph.isEmpty())
        writeRun(writer, paragraph, isRightToLeft);
    writer.writeEndElement();
}

/// US Letter with margins of an inch, in twentieths of a point.
void writePage(QXmlStreamWriter &writer)
{
    writer.writeStartElement(wordNamespace, "sectPr");
    writer.writeEmptyElement(wordNamespace, "pgSz");
    writer.writeAttribute(wordNamespace, "w", "12240");
    writer.writeAttribute(wordNamespace, "h", "15840");
    writer.writeEmptyElement(wordNamespace, "pgMar");
    for (const char *side : {"top", "right", "bottom", "left"})
        writer.writeAttribute(wordNamespace, side, "1440");
    for (const char *part : {"header", "footer"})
        writer.writeAttribute(wordNamespace, part, "720");
    writer.writeAttribute(wordNamespace, "gutter", "0");
    writer.writeEndElement();
}

QByteArray documentXml(const QString &text)
{
    QByteArray document;
    QXmlStreamWriter writer(&document);
    writer.writeStartDocument("1.0", true);
    writer.writeNamespace(wordNamespace, "w");
    writer.writeStartElement(wordNamespace, "document");
    writer.writeStartElement(wordNamespace, "body");
    for (const QString &paragraph : documentParagraphs(text))
        writeParagraph(writer, paragraph);
    writePage(writer);
    writer.writeEndDocument();
    return document;
}

} // namespace

QByteArray renderDocx(const QString &text)
{
    const QByteArray document = documentXml(text);
    return zipPackage({
        {"[Content_Types].xml", contentTypes},
        {"_rels/.rels", packageRelationships},
        {"word/document.xml", document},
        {"word/_rels/document.xml.rels", documentRelationships},
        {"word/styles.xml", styles},
    });
}

} // namespace sorvanta
