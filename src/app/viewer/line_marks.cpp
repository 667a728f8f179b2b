#include "app/viewer/line_marks.h"

#include <QSyntaxHighlighter>
#include <QTextCharFormat>

namespace sorvanta {

class LineMarks::Painter : public QSyntaxHighlighter {
public:
    Painter(QTextDocument *document, const QPointer<LineMarks> &marks)
        : QSyntaxHighlighter(document)
        , m_marks(marks)
    {
    }

protected:
    void highlightBlock(const QString &) override
    {
        if (!m_marks)
            return;
        const QList<int> &hits = m_marks->m_hits;
        for (qsizetype i = 0; i + 2 < hits.size(); i += 3) {
            const bool isCurrent = hits[i + 2] == 1;
            QTextCharFormat format;
            format.setBackground(isCurrent ? m_marks->m_currentColor : m_marks->m_hitColor);
            format.setForeground(isCurrent ? m_marks->m_currentTextColor : m_marks->m_hitTextColor);
            setFormat(hits[i], hits[i + 1], format);
        }
    }

private:
    QPointer<LineMarks> m_marks;
};

LineMarks::LineMarks(QObject *parent)
    : QObject(parent)
{
    connect(this, &LineMarks::changed, this, &LineMarks::paint);
}

LineMarks::~LineMarks() = default;

void LineMarks::paint()
{
    if (!m_document || (m_hits.isEmpty() && !m_painter))
        return;
    if (!m_painter)
        m_painter = new Painter(m_document->textDocument(), this);
    m_painter->rehighlight();
}

} // namespace sorvanta
