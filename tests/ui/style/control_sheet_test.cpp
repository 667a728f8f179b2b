#include "ui/support/ui_test.h"

#include <QQmlComponent>
#include <QTest>

namespace sorvanta {

namespace {

class ControlSheet : public UiTest { };

TEST_F(ControlSheet, loadsWithoutAWarningInBothThemes)
{
    ASSERT_NE(showType("Sorvanta.ControlSheet", "ControlSheet"), nullptr);
    QMetaObject::invokeMethod(root, "open");
    const QImage light = grab();
    savePicture("09-components");
    setDark(true);
    const QImage dark = grab();
    savePicture("09-components-dark");
    EXPECT_EQ(light.pixelColor(4, 4), QColor("#F5F7F8"));
    EXPECT_EQ(dark.pixelColor(4, 4), QColor("#15191B"));
}

TEST_F(ControlSheet, loadsWithoutAWarningWhileItMoves)
{
    show("import QtQuick\nimport Sorvanta.ControlSheet\nimport Sorvanta.Style\n"
         "ControlSheet { Component.onCompleted: { Theme.motion = true; Theme.dark = true; } }");
    QMetaObject::invokeMethod(root, "open");
    QTest::qWait(300);
    EXPECT_EQ(grab().pixelColor(4, 4), QColor("#15191B"));
    EXPECT_EQ(pixel(item("prominent-rest"), 9, 8), QColor("#1A7A92"));
}

TEST_F(ControlSheet, showsADropTargetInItsThreeLooks)
{
    show("import QtQuick\nimport Sorvanta.Style\nItem { width: 400; height: 200\n"
         "DropCard { objectName: 'drop'; x: 20; y: 20; width: 300; symbol: 'arrow.up.doc' } }");
    QQuickItem *card = item("drop");
    const auto outline = [&] {
        QList<QColor> colors;
        const QImage image = grab();
        for (int x = 60; x < 69; ++x)
            colors << image.pixelColor(20 + x, 20);
        return colors;
    };
    EXPECT_TRUE(outline().contains(color("dropDash")));
    EXPECT_TRUE(outline().contains(color("card")));
    EXPECT_EQ(pixel(card, 22, 22), color("accentSoft"));
    card->setProperty("fileOver", true);
    EXPECT_EQ(outline().count(color("focus")), 9);
    EXPECT_EQ(pixel(card, 200, 40), color("accentSoft"));
    EXPECT_EQ(pixel(card, 30, 22), color("card"));
}

TEST_F(ControlSheet, scrollsWithAThinThumbInItsLane)
{
    show("import QtQuick\nimport QtQuick.Controls\n"
         "ScrollView { width: 200; height: 100; contentWidth: 150; TextArea { text: 'a\\n'.repeat(40) } }");
    settle();
    const QImage image = grab();
    const QColor page = color("windowColor");
    int thumb = 0;
    for (int x = 188; x < 200; ++x)
        thumb += image.pixelColor(x, 8) != page;
    EXPECT_EQ(thumb, 6);
    EXPECT_EQ(image.pixelColor(188 + 2, 8), page);
    EXPECT_EQ(image.pixelColor(188 + 9, 8), page);
    EXPECT_EQ(image.pixelColor(188 + 5, 90), page);
}

TEST_F(ControlSheet, aSelectedRowFallsBackInAnInactiveWindow)
{
    show("import QtQuick\nimport QtQuick.Controls\nItem { width: 300; height: 100\n"
         "ItemDelegate { objectName: 'row'; width: 200; text: 'Row'; highlighted: true } }");
    EXPECT_EQ(pixel(item("row"), 150, 18), QColor("#D9EAEF"));
    QQuickWindow other;
    other.show();
    other.requestActivate();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&other));
    EXPECT_EQ(pixel(item("row"), 150, 18), QColor("#E4EAEC"));
}

TEST_F(ControlSheet, windowsWearTheColourOfThePage)
{
    QQmlComponent component(&engine);
    component.setData("import QtQuick.Controls\nApplicationWindow { Label { text: 'Here' } Popup {} }", {});
    const std::unique_ptr<QObject> made(component.create());
    ASSERT_NE(made, nullptr) << component.errorString().toStdString();
    EXPECT_EQ(made->property("color").value<QColor>(), QColor("#F5F7F8"));
}

} // namespace

} // namespace sorvanta
