#pragma once

#include <QColor>
#include <QImage>
#include <QQuickItem>

namespace sorvanta {

/// A symbol in one colour, drawn anew for each size and pixel density and never scaled. `symbol` is a name that
/// symbolFile knows; an empty name shows nothing. `size` is the side of its square in device-independent pixels.
class Icon : public QQuickItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QString symbol READ symbol WRITE setSymbol NOTIFY symbolChanged)
    Q_PROPERTY(int size READ size WRITE setSize NOTIFY sizeChanged)
    Q_PROPERTY(QColor color READ color WRITE setColor NOTIFY colorChanged)

public:
    explicit Icon(QQuickItem *parent = nullptr);

    QString symbol() const { return m_symbol; }
    void setSymbol(const QString &symbol);

    int size() const { return m_size; }
    void setSize(int size);

    QColor color() const { return m_color; }
    void setColor(const QColor &color);

    Q_SIGNAL void symbolChanged();
    Q_SIGNAL void sizeChanged();
    Q_SIGNAL void colorChanged();

protected:
    void itemChange(ItemChange change, const ItemChangeData &data) override;
    void updatePolish() override;
    QSGNode *updatePaintNode(QSGNode *oldNode, UpdatePaintNodeData *data) override;

private:
    QString m_symbol;
    int m_size = 16;
    QColor m_color = Qt::black;
    qreal m_drawnSize = 0;
    QImage m_image;
    bool m_imageChanged = false;
};

} // namespace sorvanta
