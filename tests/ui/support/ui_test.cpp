#include "ui/support/ui_test.h"

#include "support/waiting.h"

#include <QAccessible>
#include <QAccessibleActionInterface>
#include <QQmlComponent>
#include <QTest>
#include <QtMath>

#include <iostream>
#include <stdexcept>
#include <utility>

namespace sorvanta {

namespace {

void failOnWarning(QtMsgType type, const QMessageLogContext &, const QString &text)
{
    // On a busy machine Qt may say this of itself: nothing of ours starts or stops a driver.
    if (text == u"QUnifiedTimer::stopAnimationDriver: driver is not running")
        return;
    if (type == QtDebugMsg || type == QtInfoMsg)
        return;
    if (type == QtFatalMsg)
        std::cerr << text.toStdString() << std::endl;
    ADD_FAILURE() << "Warning: " << text.toStdString();
}

QByteArray source(const QString &module, const QString &type)
{
    return QStringLiteral("import QtQuick.Controls\nimport %1\n%2 {}\n").arg(module, type).toUtf8();
}

} // namespace

void failOnQtWarnings()
{
    qInstallMessageHandler(failOnWarning);
}

QStringList spokenWords(QAccessibleInterface *interface)
{
    QStringList words;
    if (interface->state().invisible)
        return words;
    const QString name = interface->text(QAccessible::Name);
    if (!name.isEmpty())
        words += name;
    for (int child = 0; child < interface->childCount(); ++child)
        words += spokenWords(interface->child(child));
    return words;
}

UiTest::UiTest()
{
    engine.addImportPath("qrc:/qt/qml");
    QQmlComponent loader(&engine);
    loader.setData("import QtQml\nimport Sorvanta.Style\nQtObject { property QtObject theme: Theme }", {});
    const std::unique_ptr<QObject> holder(loader.isReady() ? loader.create() : nullptr);
    if (!holder)
        qFatal("%s", qUtf8Printable(loader.errorString()));
    theme = holder->property("theme").value<QObject *>();
    EXPECT_NE(theme, nullptr);
    theme->setProperty("motion", false);
    setDark(false);
}

UiTest::~UiTest() = default;

void UiTest::TearDown()
{
    delete root;
    root = nullptr;
}

QQuickItem *UiTest::show(const QByteArray &qml, const QVariantMap &properties)
{
    QQmlComponent component(&engine);
    component.setData(qml, QUrl("qrc:/qt/qml/Shown.qml"));
    delete std::exchange(root, nullptr);
    if (component.isReady())
        root = qobject_cast<QQuickItem *>(component.createWithInitialProperties(properties));
    if (!root)
        throw std::runtime_error(component.errorString().toStdString());
    window = std::make_unique<QQuickWindow>();
    window->setColor(color("windowColor"));
    window->resize(qMax(400, qCeil(root->width())), qMax(300, qCeil(root->height())));
    root->setParentItem(window->contentItem());
    window->show();
    EXPECT_TRUE(QTest::qWaitForWindowExposed(window.get()));
    window->requestActivate();
    EXPECT_TRUE(QTest::qWaitForWindowActive(window.get()));
    return root;
}

QQuickItem *UiTest::showType(const QString &module, const QString &type, const QVariantMap &properties)
{
    return show(source(module, type), properties);
}

QQuickItem *UiTest::item(const QString &objectName) const
{
    if (QQuickItem *found = find(objectName))
        return found;
    throw std::runtime_error("There is no item named " + objectName.toStdString());
}

QQuickItem *UiTest::find(const QString &objectName) const
{
    QList<QQuickItem *> waiting{window->contentItem()};
    while (!waiting.isEmpty()) {
        QQuickItem *candidate = waiting.takeFirst();
        if (candidate->objectName() == objectName)
            return candidate;
        waiting += candidate->childItems();
    }
    return nullptr;
}

void UiTest::settle() const
{
    QTest::qWait(20);
    for (int frame = 0; window && frame < 3; ++frame) {
        bool isDrawn = false;
        const QObject listener;
        QObject::connect(window.get(), &QQuickWindow::frameSwapped, &listener, [&isDrawn] { isDrawn = true; });
        window->update();
        EXPECT_TRUE(waitUntil([&isDrawn] { return isDrawn; }));
    }
}

void UiTest::setDark(bool isDark)
{
    theme->setProperty("dark", isDark);
    if (window)
        window->setColor(color("windowColor"));
}

QColor UiTest::color(const char *token) const
{
    const QVariant value = theme->property(token);
    EXPECT_TRUE(value.isValid()) << token;
    return value.value<QColor>();
}

QString UiTest::themeText(const QString &token) const
{
    const QVariant value = theme->property(token.toUtf8().constData());
    EXPECT_TRUE(value.isValid()) << token.toStdString();
    return value.toString();
}

QImage UiTest::grab() const
{
    QTest::qWait(20);
    return window->grabWindow();
}

void UiTest::savePicture(const QString &name) const
{
    const QString folder = qEnvironmentVariable("SORVANTA_PICTURES");
    if (folder.isEmpty())
        return;
    EXPECT_TRUE(grab().save(QStringLiteral("%1/%2.png").arg(folder, name)));
}

QColor UiTest::pixel(const QQuickItem *item, int x, int y) const
{
    return grab().pixelColor(item->mapToScene(QPointF(x, y)).toPoint());
}

void UiTest::click(QQuickItem *item)
{
    window->grabWindow(); // what is to move does so now, and not between the press and the release
    const QPoint middle = item->mapToScene(QPointF(item->width() / 2, item->height() / 2)).toPoint();
    QTest::mouseClick(window.get(), Qt::LeftButton, Qt::NoModifier, middle);
}

void UiTest::press(Qt::Key key, Qt::KeyboardModifiers modifiers)
{
    QTest::keyClick(window.get(), key, modifiers);
}

void UiTest::tabTo(QQuickItem *item)
{
    item->setFocus(false);
    for (int step = 0; step < 100 && !item->hasActiveFocus(); ++step)
        press(Qt::Key_Tab);
    EXPECT_TRUE(item->hasActiveFocus());
}

void UiTest::leaveAndComeBack()
{
    QWindow other;
    other.show();
    other.requestActivate();
    EXPECT_TRUE(QTest::qWaitForWindowActive(&other));
    window->requestActivate();
    EXPECT_TRUE(QTest::qWaitForWindowActive(window.get()));
}

QAccessibleInterface *UiTest::accessible(QObject *object) const
{
    QAccessibleInterface *interface = QAccessible::queryAccessibleInterface(object);
    if (!interface)
        throw std::runtime_error("Assistive technology does not see this object.");
    return interface;
}

void UiTest::pressAccessibly(QObject *object, const QString &action)
{
    QAccessibleActionInterface *actions = accessible(object)->actionInterface();
    ASSERT_NE(actions, nullptr);
    actions->doAction(action.isEmpty() ? QAccessibleActionInterface::pressAction() : action);
}

} // namespace sorvanta
