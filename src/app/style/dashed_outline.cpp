#include "app/style/dashed_outline.h"

#include <QPainter>
#include <QPen>

namespace sorvanta {

DashedOutline::DashedOutline(QQuickItem *parent)
    : QQuickPaintedItem(parent)
{
    setAntialiasing(true);
}

void DashedOutline::setRadius(qreal radius)
{
    if (radius == m_radius)
        return;
    m_radius = radius;
    update();
    emit radiusChanged();
}

void DashedOutline::setColor(const QColor &color)
{
    if (color == m_color)
        return;
    m_color = color;
    update();
    emit colorChanged();
}

void DashedOutline::paint(QPainter *painter)
{
    QPen pen(m_color, 1);
    pen.setCapStyle(Qt::FlatCap);
    pen.setDashPattern({5, 4});
    painter->setPen(pen);
    painter->drawRoundedRect(QRectF(0.5, 0.5, width() - 1, height() - 1), m_radius - 0.5, m_radius - 0.5);
}

} // namespace sorvanta
