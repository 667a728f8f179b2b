#pragma once

#include <QObject>
#include <QQuickTextDocument>
#include <QtQml/qqml.h>

namespace sorvanta {

/// Gives all lines in the document of a TextEdit of plain text the same height, which the element itself cannot.
class FixedLineHeight : public QObject {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QQuickTextDocument *document READ document WRITE setDocument NOTIFY documentChanged)
    Q_PROPERTY(qreal pixels READ pixels WRITE setPixels NOTIFY pixelsChanged)

public:
    using QObject::QObject;

    QQuickTextDocument *document() const { return m_document; }
    void setDocument(QQuickTextDocument *document);

    qreal pixels() const { return m_pixels; }
    void setPixels(qreal pixels);

Q_SIGNALS:
    void documentChanged();
    void pixelsChanged();

private:
    void apply();

    QQuickTextDocument *m_document = nullptr;
    qreal m_pixels = 21;
    bool m_isApplying = false;
};

} // namespace sorvanta
