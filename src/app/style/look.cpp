#include "app/style/look.h"

#include <QFont>
#include <QFontDatabase>
#include <QGuiApplication>
#include <QQuickStyle>
#include <QQuickWindow>

namespace sorvanta {

namespace {

QString firstInstalled(const QStringList &families)
{
    for (const QString &family : families) {
        if (QFontDatabase::hasFamily(family))
            return family;
    }
    return families.constLast();
}

} // namespace

void applyLook()
{
    QFont font(QStringList{"SF Pro Text", "Inter", "Noto Sans", "sans-serif"});
    font.setPixelSize(13);
    QGuiApplication::setFont(font);
    QQuickWindow::setTextRenderType(QQuickWindow::NativeTextRendering);
    QQuickStyle::setStyle("Sorvanta.Style");
    QQuickStyle::setFallbackStyle("Basic");
}

Fonts::Fonts()
    : m_text(firstInstalled({"SF Pro Text", "Inter", "Noto Sans", "sans-serif"}))
    , m_display(firstInstalled({"SF Pro Display", "Inter Display", "Inter", m_text}))
    , m_monospaced(firstInstalled({"SF Mono", "JetBrains Mono", "DejaVu Sans Mono", "monospace"}))
    , m_serif(firstInstalled({"New York", "Noto Serif", "DejaVu Serif", "serif"}))
    , m_rounded(firstInstalled({"SF Pro Rounded", "Nunito", m_text}))
{
}

} // namespace sorvanta
