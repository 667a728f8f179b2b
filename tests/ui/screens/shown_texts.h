#pragma once

#include <QList>
#include <QQuickItem>
#include <QRectF>
#include <QString>

namespace sorvanta {

struct ShownText {
    QString text;
    QRectF place;
};

/// The texts that are seen below `item`, with the places that they take within `sight` and within all that clips them.
inline QList<ShownText> shownTexts(const QQuickItem *item, const QRectF &sight)
{
    QList<ShownText> found;
    for (const QQuickItem *child : item->childItems()) {
        if (!child->isVisible())
            continue;
        const QRectF all = child->mapRectToScene(QRectF(0, 0, child->width(), child->height()));
        if (child->inherits("QQuickText") || child->inherits("QQuickTextEdit")) {
            const QRectF ink = child->mapRectToScene(
                QRectF(0, 0, qMin(child->width(), child->property("contentWidth").toDouble()), child->height()));
            const QRectF seen = ink & sight;
            if (!seen.isEmpty() && !child->property("text").toString().isEmpty())
                found << ShownText{child->property("text").toString(), seen};
        }
        found += shownTexts(child, child->clip() ? sight & all : sight);
    }
    return found;
}

} // namespace sorvanta
