#pragma once

#include <QObject>
#include <QString>
#include <QtQml/qqml.h>

#include "platform/desktop/color_scheme.h"

namespace sorvanta {

/// Makes every control of the application wear this look, with its fonts. To be called once, after the QGuiApplication
/// has been made and before the first QML engine; engines need the import path "qrc:/qt/qml".
void applyLook();

/// The font families of the look that are installed here, each the first of its list of wishes.
class Fonts : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    Q_PROPERTY(QString text MEMBER m_text CONSTANT)
    Q_PROPERTY(QString display MEMBER m_display CONSTANT) ///< for 18 px and more
    Q_PROPERTY(QString monospaced MEMBER m_monospaced CONSTANT)
    Q_PROPERTY(QString serif MEMBER m_serif CONSTANT)
    Q_PROPERTY(QString rounded MEMBER m_rounded CONSTANT)

public:
    Fonts();

private:
    QString m_text;
    QString m_display;
    QString m_monospaced;
    QString m_serif;
    QString m_rounded;
};

/// Gives QML the wishes of the desktop, as the singleton ColorScheme.
struct ColorSchemeForQml {
    Q_GADGET
    QML_FOREIGN(sorvanta::ColorScheme)
    QML_NAMED_ELEMENT(ColorScheme)
    QML_SINGLETON
};

} // namespace sorvanta
