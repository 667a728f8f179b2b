#pragma once

#include <QColor>
#include <QList>
#include <QObject>
#include <QPointer>
#include <QQuickTextDocument>
#include <QtQml/qqml.h>

#include <memory>

class QSyntaxHighlighter;

namespace sorvanta {

/// Paints the hits of a line behind its letters, in the document of a TextEdit of one line of plain text.
class LineMarks : public QObject {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QQuickTextDocument *document MEMBER m_document NOTIFY changed)
    /// As TranscriptWindowView::hitsInRow() gives them.
    Q_PROPERTY(QList<int> hits MEMBER m_hits NOTIFY changed)
    Q_PROPERTY(QColor hitColor MEMBER m_hitColor NOTIFY changed)
    Q_PROPERTY(QColor hitTextColor MEMBER m_hitTextColor NOTIFY changed)
    Q_PROPERTY(QColor currentColor MEMBER m_currentColor NOTIFY changed)
    Q_PROPERTY(QColor currentTextColor MEMBER m_currentTextColor NOTIFY changed)

public:
    explicit LineMarks(QObject *parent = nullptr);
    ~LineMarks() override;

Q_SIGNALS:
    void changed();

private:
    class Painter;
    void paint();

    QQuickTextDocument *m_document = nullptr;
    QList<int> m_hits;
    QColor m_hitColor;
    QColor m_hitTextColor;
    QColor m_currentColor;
    QColor m_currentTextColor;
    QPointer<QSyntaxHighlighter> m_painter; // belongs to the document; made for the first hit
};

} // namespace sorvanta
