#pragma once

#include <QColor>
#include <QQuickPaintedItem>

namespace sorvanta {

/// A rounded outline of one pixel, five on and four off.
class DashedOutline : public QQuickPaintedItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(qreal radius READ radius WRITE setRadius NOTIFY radiusChanged)
    Q_PROPERTY(QColor color READ color WRITE setColor NOTIFY colorChanged)

public:
    explicit DashedOutline(QQuickItem *parent = nullptr);

    qreal radius() const { return m_radius; }
    void setRadius(qreal radius);

    QColor color() const { return m_color; }
    void setColor(const QColor &color);

    void paint(QPainter *painter) override;

    Q_SIGNAL void radiusChanged();
    Q_SIGNAL void colorChanged();

private:
    qreal m_radius = 0;
    QColor m_color = Qt::black;
};

} // namespace sorvanta
