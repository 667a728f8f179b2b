#include "app/style/icon.h"

#include "app/style/symbols.h"

#include <QCache>
#include <QFile>
#include <QPainter>
#include <QQuickWindow>
#include <QSGImageNode>
#include <QSvgRenderer>
#include <QtMath>

namespace sorvanta {

namespace {

constexpr int cachedImages = 256;

QImage draw(const QString &symbol, int side, const QColor &color)
{
    QFile file(symbolFile(symbol));
    if (!file.open(QIODevice::ReadOnly)) {
        qWarning("There is no symbol named %s.", qUtf8Printable(symbol));
        return {};
    }
    QSvgRenderer drawing(file.readAll().replace("currentColor", color.name(QColor::HexRgb).toLatin1()));
    QImage image(side, side, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setOpacity(color.alphaF());
    drawing.render(&painter);
    return image;
}

/// Called on the main thread only.
QImage image(const QString &symbol, int side, const QColor &color)
{
    static QCache<QString, QImage> cache(cachedImages);
    const QString key = QStringLiteral("%1 %2 %3").arg(symbol).arg(side).arg(color.name(QColor::HexArgb));
    if (const QImage *known = cache.object(key))
        return *known;
    const QImage made = draw(symbol, side, color);
    cache.insert(key, new QImage(made));
    return made;
}

} // namespace

Icon::Icon(QQuickItem *parent)
    : QQuickItem(parent)
{
    setFlag(ItemHasContents);
    setImplicitSize(m_size, m_size);
}

void Icon::setSymbol(const QString &symbol)
{
    if (symbol == m_symbol)
        return;
    m_symbol = symbol;
    polish();
    emit symbolChanged();
}

void Icon::setSize(int size)
{
    if (size == m_size)
        return;
    m_size = size;
    setImplicitSize(size, size);
    polish();
    emit sizeChanged();
}

void Icon::setColor(const QColor &color)
{
    if (color == m_color)
        return;
    m_color = color;
    polish();
    emit colorChanged();
}

void Icon::itemChange(ItemChange change, const ItemChangeData &data)
{
    if (change == ItemSceneChange || change == ItemDevicePixelRatioHasChanged)
        polish();
    QQuickItem::itemChange(change, data);
}

void Icon::updatePolish()
{
    if (!window())
        return;
    const qreal density = window()->effectiveDevicePixelRatio();
    const int side = qCeil(m_size * density);
    m_drawnSize = side / density;
    m_image = m_symbol.isEmpty() ? QImage() : image(m_symbol, side, m_color);
    m_imageChanged = true;
    update();
}

QSGNode *Icon::updatePaintNode(QSGNode *oldNode, UpdatePaintNodeData *)
{
    auto *node = static_cast<QSGImageNode *>(oldNode);
    if (m_image.isNull()) {
        delete node;
        return nullptr;
    }
    if (!node) {
        node = window()->createImageNode();
        node->setOwnsTexture(true);
        m_imageChanged = true;
    }
    if (m_imageChanged)
        node->setTexture(window()->createTextureFromImage(m_image, QQuickWindow::TextureCanUseAtlas));
    m_imageChanged = false;
    node->setRect(0, 0, m_drawnSize, m_drawnSize);
    return node;
}

} // namespace sorvanta
