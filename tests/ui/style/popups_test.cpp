#include "support/printing.h"
#include "support/waiting.h"
#include "ui/support/ui_test.h"

#include <QAccessible>
#include <QSignalSpy>
#include <QTest>

namespace sorvanta {

namespace {

class Popups : public UiTest {
protected:
    void showSource(const QByteArray &content)
    {
        show("import QtQuick\nimport QtQuick.Controls\nimport Sorvanta.Style\n"
             "Item { id: page; width: 500; height: 500\n"
             + content + "\n}");
    }

    /// The first item below the window, popups included, that calls itself `name`.
    QQuickItem *named(const QString &name) const
    {
        QList<QQuickItem *> waiting{window->contentItem()};
        while (!waiting.isEmpty()) {
            QQuickItem *candidate = waiting.takeFirst();
            if (candidate->isVisible() && candidate->property("text").toString() == name
                && QAccessible::queryAccessibleInterface(candidate))
                return candidate;
            waiting += candidate->childItems();
        }
        return nullptr;
    }
};

class Picker : public Popups {
protected:
    Picker()
    {
        showSource("ComboBox { objectName: 'it'; x: 20; y: 20; Accessible.name: 'Language'\n"
                   "textRole: 'name'; model: [{name: 'English (en)'}, {name: 'German (de)'}, {name: 'Welsh (cy)'}] }");
        activated = std::make_unique<QSignalSpy>(item("it"), SIGNAL(activated(int)));
    }
    int current() const { return item("it")->property("currentIndex").toInt(); }
    bool isOpen() const { return item("it")->property("popup").value<QObject *>()->property("visible").toBool(); }

    std::unique_ptr<QSignalSpy> activated;
};

TEST_F(Picker, tellsItsRoleNameAndValue)
{
    EXPECT_EQ(accessible(item("it"))->role(), QAccessible::ComboBox);
    EXPECT_EQ(accessible(item("it"))->text(QAccessible::Name), "Language");
    EXPECT_EQ(item("it")->property("displayText").toString(), "English (en)");
}

TEST_F(Picker, isOperatedByAssistiveTechnology)
{
    pressAccessibly(item("it"));
    ASSERT_TRUE(isOpen());
    settle();
    QQuickItem *german = named("German (de)");
    ASSERT_NE(german, nullptr);
    EXPECT_EQ(accessible(german)->role(), QAccessible::ListItem);
    EXPECT_EQ(accessible(german)->text(QAccessible::Name), "German (de)");
    EXPECT_TRUE(accessible(named("Welsh (cy)"))->state().selectable);
    pressAccessibly(german);
    EXPECT_EQ(current(), 1);
    EXPECT_EQ(activated->count(), 1);
    QTRY_VERIFY(!isOpen());
}

TEST_F(Picker, followsItsOwnerAlsoAfterAChoiceByAssistiveTechnology)
{
    showSource("property int chosen: 0\n"
               "ComboBox { objectName: 'it'; model: ['one', 'two', 'three']; currentIndex: page.chosen\n"
               "onActivated: index => page.chosen = index }");
    pressAccessibly(item("it"));
    settle();
    pressAccessibly(named("two"));
    EXPECT_EQ(root->property("chosen"), 1);
    root->setProperty("chosen", 2);
    EXPECT_EQ(current(), 2);
}

TEST_F(Picker, isOperatedByKeys)
{
    tabTo(item("it"));
    press(Qt::Key_Down);
    EXPECT_EQ(current(), 1);
    press(Qt::Key_Space);
    ASSERT_TRUE(isOpen());
    press(Qt::Key_Down);
    press(Qt::Key_Return);
    EXPECT_EQ(current(), 2);
    QTRY_VERIFY(!isOpen());
    press(Qt::Key_Return);
    ASSERT_TRUE(isOpen());
    press(Qt::Key_Escape);
    QTRY_VERIFY(!isOpen());
    EXPECT_EQ(current(), 2);
}

TEST_F(Picker, isOperatedByTheMouse)
{
    click(item("it"));
    ASSERT_TRUE(isOpen());
    settle();
    QQuickItem *welsh = named("Welsh (cy)");
    ASSERT_NE(welsh, nullptr);
    EXPECT_EQ(welsh->height(), 30);
    click(welsh);
    EXPECT_EQ(current(), 2);
    EXPECT_EQ(activated->count(), 1);
}

TEST_F(Picker, staysClosedWhileDisabled)
{
    item("it")->setEnabled(false);
    click(item("it"));
    pressAccessibly(item("it"));
    EXPECT_FALSE(isOpen());
}

class ExportMenu : public Popups {
protected:
    ExportMenu()
    {
        showSource("property string chosen\n"
                   "MenuButton { objectName: 'button'; text: 'Export'; menu: Menu { objectName: 'menu'\n"
                   "MenuItem { text: 'TXT'; icon.name: 'doc.plaintext'; onTriggered: page.chosen += 'TXT;' }\n"
                   "MenuItem { text: 'SRT'; enabled: false; onTriggered: page.chosen += 'SRT;' }\n"
                   "MenuSeparator {}\n"
                   "Menu { title: 'Download to Downloads'\n"
                   "MenuItem { text: 'JSON'; onTriggered: page.chosen += 'JSON;' } } } }");
    }
    bool isOpen() const { return item("button")->property("menu").value<QObject *>()->property("visible").toBool(); }
    QString chosen() const { return root->property("chosen").toString(); }
};

TEST_F(ExportMenu, opensUnderItsButtonAndIsChosenFromByTheMouse)
{
    click(item("button"));
    ASSERT_TRUE(isOpen());
    settle();
    EXPECT_GE(named("TXT")->mapToScene({0, 0}).y(), item("button")->height());
    click(named("TXT"));
    EXPECT_EQ(chosen(), "TXT;");
    QTRY_VERIFY(!isOpen());
}

TEST_F(ExportMenu, isChosenFromByAssistiveTechnology)
{
    pressAccessibly(item("button"));
    ASSERT_TRUE(isOpen());
    settle();
    EXPECT_EQ(accessible(named("TXT"))->role(), QAccessible::MenuItem);
    pressAccessibly(named("SRT"));
    EXPECT_EQ(chosen(), "");
    pressAccessibly(named("TXT"));
    EXPECT_EQ(chosen(), "TXT;");
    QTRY_VERIFY(!isOpen());
}

TEST_F(ExportMenu, opensItsSubmenuForAssistiveTechnology)
{
    pressAccessibly(item("button"));
    settle();
    pressAccessibly(named("Download to Downloads"));
    settle();
    ASSERT_NE(named("JSON"), nullptr);
    pressAccessibly(named("JSON"));
    EXPECT_EQ(chosen(), "JSON;");
    QTRY_VERIFY(!isOpen());
}

TEST_F(ExportMenu, isChosenFromByKeys)
{
    tabTo(item("button"));
    press(Qt::Key_Space);
    ASSERT_TRUE(isOpen());
    press(Qt::Key_Down);
    press(Qt::Key_Return);
    EXPECT_EQ(chosen(), "TXT;");
}

TEST_F(Popups, aDialogSitsOverAScrimWithTheFocusInside)
{
    showSource("function open() { dialog.open() }\n"
               "Dialog { id: dialog; title: 'Delete this history entry?'\n"
               "footer: DialogFooter { Button { objectName: 'cancel'; text: 'Cancel' }\n"
               "PushButton { objectName: 'delete'; text: 'Delete'; role: PushButton.Recording } } }");
    QMetaObject::invokeMethod(root, "open");
    const QQuickItem *confirm = item("delete");
    EXPECT_GT(confirm->x(), item("cancel")->x());
    EXPECT_EQ(pixel(confirm, 9, 8), QColor("#C2352C"));
    EXPECT_EQ(confirm->mapToScene({confirm->width(), 0}).x(), 250 + 180 - 24);
    const QColor behind = grab().pixelColor(2, 2);
    EXPECT_NEAR(behind.red(), 0xF5 * 0.64 + 0x18 * 0.36, 2);
    press(Qt::Key_Escape);
    QTRY_VERIFY(!confirm->isVisible());
}

TEST_F(Popups, aToolTipShowsItsTextInItsOwnColours)
{
    showSource("property bool pointed: false\n"
               "Button { text: 'Strip'; y: 40; ToolTip.text: 'Remove leading dash markers from lines.'\n"
               "ToolTip.visible: page.pointed; ToolTip.delay: 0 }");
    const auto isShown = [this] {
        const QImage image = grab();
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x) {
                if (image.pixelColor(x, y) == QColor("#263036"))
                    return true;
            }
        }
        return false;
    };
    EXPECT_FALSE(isShown());
    root->setProperty("pointed", true);
    EXPECT_TRUE(waitUntil(isShown));
}

} // namespace

} // namespace sorvanta
