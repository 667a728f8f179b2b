#include "export/document_text.h"

namespace sorvanta {

namespace {

bool endsParagraph(char16_t unit)
{
    return unit == u'\n' || unit == u'\r' || unit == 0x85 || unit == QChar::ParagraphSeparator;
}

bool breaksLine(char16_t unit)
{
    return unit == 0x0B || unit == 0x0C || unit == QChar::LineSeparator;
}

bool isControl(char16_t unit)
{
    return unit < 0x20 || (unit >= 0x7F && unit < 0xA0);
}

} // namespace

QStringList documentParagraphs(const QString &text)
{
    QStringList paragraphs;
    QString paragraph;
    for (qsizetype i = 0; i < text.size(); ++i) {
        const char16_t unit = text[i].unicode();
        const char16_t next = i + 1 < text.size() ? text[i + 1].unicode() : u'\0';
        if (endsParagraph(unit)) {
            if (unit == u'\r' && next == u'\n')
                ++i;
            paragraphs.append(std::exchange(paragraph, QString()));
        } else if (breaksLine(unit)) {
            paragraph += QChar(QChar::LineSeparator);
        } else if (QChar::isHighSurrogate(unit) && QChar::isLowSurrogate(next)) {
            const char32_t character = QChar::surrogateToUcs4(unit, next);
            if (QChar::isNonCharacter(character))
                paragraph += QChar(QChar::ReplacementCharacter);
            else
                paragraph += QStringView(text).sliced(i, 2);
            ++i;
        } else if (QChar::isSurrogate(unit) || QChar::isNonCharacter(unit)) {
            paragraph += QChar(QChar::ReplacementCharacter);
        } else if (unit == u'\t' || !isControl(unit)) {
            paragraph += QChar(unit);
        }
    }
    paragraphs.append(paragraph);
    return paragraphs;
}

} // namespace sorvanta
