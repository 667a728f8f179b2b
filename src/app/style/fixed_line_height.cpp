#include "app/style/fixed_line_height.h"

#include <QTextBlockFormat>
#include <QTextCursor>
#include <QTextDocument>

namespace sorvanta {

void FixedLineHeight::setDocument(QQuickTextDocument *document)
{
    if (document == m_document)
        return;
    m_document = document;
    if (document)
        // Before the change is laid out, so that it is laid out once.
        connect(document->textDocument(), &QTextDocument::contentsChange, this, &FixedLineHeight::apply);
    emit documentChanged();
    apply();
}

void FixedLineHeight::setPixels(qreal pixels)
{
    if (pixels == m_pixels)
        return;
    m_pixels = pixels;
    emit pixelsChanged();
    apply();
}

void FixedLineHeight::apply()
{
    if (!m_document || m_isApplying)
        return;
    m_isApplying = true; // what is done here is a change too
    QTextCursor cursor(m_document->textDocument());
    cursor.select(QTextCursor::Document);
    QTextBlockFormat format;
    format.setLineHeight(m_pixels, QTextBlockFormat::FixedHeight);
    cursor.mergeBlockFormat(format);
    m_isApplying = false;
}

} // namespace sorvanta
