#pragma once

#include <QList>
#include <QQuickItem>
#include <QRectF>
#include <QString>

#include <gtest/gtest.h>

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

/// A failure for each two texts that lie over one another, and for each that reaches over one of these sides.
inline void expectTextsApart(const QList<ShownText> &texts, double left, double right)
{
    const auto named = [](const ShownText &shown) { return shown.text.left(200).toStdString(); };
    for (qsizetype i = 0; i < texts.size(); ++i) {
        EXPECT_GE(texts[i].place.left(), left) << named(texts[i]);
        EXPECT_LE(texts[i].place.right(), right) << named(texts[i]);
        for (qsizetype j = i + 1; j < texts.size(); ++j)
            EXPECT_TRUE((texts[i].place & texts[j].place).isEmpty()) << named(texts[i]) << " | " << named(texts[j]);
    }
}

/// The same for all texts in sight of a page, within its sides.
inline void expectThatNothingOverlaps(const QQuickItem *page)
{
    const auto texts = shownTexts(page, QRectF(-1e6, 0, 2e6, page->height()));
    EXPECT_GT(texts.size(), 3);
    expectTextsApart(texts, 0, page->width());
}

} // namespace sorvanta
