#pragma once

#include <QImage>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickWindow>
#include <QVariantMap>

#include <gtest/gtest.h>

#include <memory>

class QAccessibleInterface;

namespace sorvanta {

/// From here on each warning of Qt or QML fails the test that runs.
void failOnQtWarnings();

/// The words of everything that a screen reader finds below `interface`, in order.
QStringList spokenWords(QAccessibleInterface *interface);

/// Shows QML in a window of its own, in the light theme and without motion unless told otherwise.
class UiTest : public testing::Test {
protected:
    UiTest();
    ~UiTest() override;
    /// Takes away what is shown, as long as the objects that it looks at are still there.
    void TearDown() override;

    /// Shows `qml`, the source of an item, with `properties` set from the start. Throws when it cannot be made.
    QQuickItem *show(const QByteArray &qml, const QVariantMap &properties = {});

    /// Shows a type of a module that the program links.
    QQuickItem *showType(const QString &module, const QString &type, const QVariantMap &properties = {});

    /// The item or object with that objectName; throws when there is none.
    QQuickItem *item(const QString &objectName) const;
    bool isThere(const QString &objectName) const { return find(objectName) != nullptr; }
    QString text(const QString &objectName) const { return item(objectName)->property("text").toString(); }
    bool isShown(const QString &objectName) const { return item(objectName)->isVisible(); }
    bool isEnabled(const QString &objectName) const { return item(objectName)->isEnabled(); }
    /// Where it stands in the window.
    QRectF place(const QString &objectName) const { return place(item(objectName)); }
    static QRectF place(const QQuickItem *shown)
    {
        return shown->mapRectToScene(QRectF(0, 0, shown->width(), shown->height()));
    }

    /// Lets what is shown come to rest: items are laid out before a frame is drawn, and what follows them before the
    /// next one.
    void settle() const;
    void setDark(bool isDark);
    QColor color(const char *token) const;
    /// A word of the look, for example the name of a font family.
    QString themeText(const QString &token) const;
    QImage grab() const;
    /// Writes what is shown to `name`.png in the folder that SORVANTA_PICTURES names, if it names one.
    void savePicture(const QString &name) const;
    /// The colour that is drawn at that place of the item.
    QColor pixel(const QQuickItem *item, int x, int y) const;

    void click(QQuickItem *item);
    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier);
    /// Presses Tab until the item has the focus, whether it had it before or not.
    void tabTo(QQuickItem *item);

    /// Goes to another window for a while.
    void leaveAndComeBack();

    /// How assistive technology sees the object; a failure when it does not.
    QAccessibleInterface *accessible(QObject *object) const;
    /// Does what a screen reader does when its user presses the control.
    void pressAccessibly(QObject *object, const QString &action = {});

    QQmlEngine engine;
    std::unique_ptr<QQuickWindow> window;
    QQuickItem *root = nullptr;

private:
    QQuickItem *find(const QString &objectName) const;

    QObject *theme = nullptr;
};

} // namespace sorvanta
