#include "support/printing.h"
#include "support/waiting.h"
#include "ui/support/ui_test.h"

#include <QAccessible>
#include <QCoreApplication>
#include <QFontInfo>
#include <QKeyEvent>
#include <QSignalSpy>
#include <QTest>

namespace sorvanta {

namespace {

/// Wraps a control, named "it", in an item that gives it room.
QByteArray around(const QByteArray &control)
{
    return "import QtQuick\nimport QtQuick.Controls\nimport Sorvanta.Style\n"
           "Item { width: 500; height: 500; activeFocusOnTab: false\n"
           + control + "\n}";
}

class Controls : public UiTest {
protected:
    QQuickItem *showControl(const QByteArray &control)
    {
        show(around(control));
        return item("it");
    }
};

struct Size {
    const char *qml;
    double width;
    double height;
};

class ControlSize : public UiTest, public testing::WithParamInterface<Size> { };

TEST_P(ControlSize, isThatOfTheTokens)
{
    show(around(GetParam().qml));
    EXPECT_EQ(item("it")->height(), GetParam().height);
    if (GetParam().width > 0) {
        EXPECT_EQ(item("it")->width(), GetParam().width);
    }
}

INSTANTIATE_TEST_SUITE_P(
    , ControlSize,
    testing::Values(
        Size{"Button { objectName: 'it'; text: 'Close' }", 0, 32},
        Size{"PushButton { objectName: 'it'; text: 'Go'; role: PushButton.Prominent }", 160, 32},
        Size{"PushButton { objectName: 'it'; text: 'Quit'; large: true }", 0, 40},
        Size{"PreviousNextButtons { objectName: 'it' }", 65, 32}, Size{"TextField { objectName: 'it' }", 280, 32},
        Size{"SearchField { objectName: 'it' }", 280, 32}, Size{"ComboBox { objectName: 'it'; model: ['a'] }", 280, 32},
        Size{"CheckBox { objectName: 'it' }", 18, 18}, Size{"Switch { objectName: 'it' }", 36, 20},
        Size{"Slider { objectName: 'it' }", 180, 24}, Size{"ProgressBar { objectName: 'it' }", 180, 6},
        Size{"LevelBar { objectName: 'it' }", 84, 6}, Size{"Stepper { objectName: 'it' }", 22, 28},
        Size{"ItemDelegate { objectName: 'it'; text: 'Row' }", 0, 36},
        Size{"MenuItem { objectName: 'it'; text: 'TXT' }", 0, 30}, Size{"MenuSeparator { objectName: 'it' }", 0, 9},
        Size{"Tag { objectName: 'it'; symbol: 'cpu'; text: 'Base' }", 0, 22},
        Size{"Badge { objectName: 'it'; text: 'Recommended' }", 0, 26},
        Size{"IconTile { objectName: 'it'; symbol: 'mic' }", 48, 48}, Size{"AppMark { objectName: 'it' }", 64, 64},
        Size{"DropCard { objectName: 'it'; width: 300; symbol: 'mic' }", 300, 80},
        Size{"FormRow { objectName: 'it'; width: 500; label: 'Model'; hint: 'Hint' }", 500, 56},
        Size{"FormRow { objectName: 'it'; width: 400; label: 'Model'; hint: 'Hint'; Item { height: 32 } }", 400, 95},
        Size{
            "FormRow { objectName: 'it'; width: 400; label: 'Model'; hint: 'Hint'; Item { visible: false; height: 32 } "
            "}",
            400, 56},
        Size{"Hairline { objectName: 'it'; width: 10 }", 10, 1},
        Size{"LargeTitle { objectName: 'it'; text: 'T' }", 0, 34},
        Size{"Title2 { objectName: 'it'; text: 'T' }", 0, 28}, Size{"Title3 { objectName: 'it'; text: 'T' }", 0, 24},
        Size{"Headline { objectName: 'it'; text: 'T' }", 0, 20},
        Size{"BodyText { objectName: 'it'; text: 'T' }", 0, 18},
        Size{"FootnoteText { objectName: 'it'; text: 'T' }", 0, 16},
        Size{"CaptionText { objectName: 'it'; text: 'T' }", 0, 14}));

struct Pressed {
    const char *qml;
    QAccessible::Role role;
    const char *name;
};

void PrintTo(const Pressed &control, std::ostream *out)
{
    *out << control.qml;
}

class PressedControl : public UiTest, public testing::WithParamInterface<Pressed> {
protected:
    PressedControl()
    {
        show(around(GetParam().qml));
        clicked = std::make_unique<QSignalSpy>(item("it"), SIGNAL(clicked()));
    }
    bool hasRing(const QImage &image) const
    {
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x) {
                if (image.pixelColor(x, y) == color("focus"))
                    return true;
            }
        }
        return false;
    }
    bool isChecked() { return item("it")->property("checked").toBool(); }

    std::unique_ptr<QSignalSpy> clicked;
};

TEST_P(PressedControl, tellsItsRoleAndItsName)
{
    EXPECT_EQ(accessible(item("it"))->role(), GetParam().role);
    EXPECT_EQ(accessible(item("it"))->text(QAccessible::Name), GetParam().name);
}

TEST_P(PressedControl, actsOnceForEachWayOfPressingIt)
{
    click(item("it"));
    EXPECT_EQ(clicked->count(), 1);
    tabTo(item("it"));
    press(Qt::Key_Space);
    EXPECT_EQ(clicked->count(), 2);
    press(Qt::Key_Return);
    EXPECT_EQ(clicked->count(), 3);
    press(Qt::Key_Enter);
    EXPECT_EQ(clicked->count(), 4);
    pressAccessibly(item("it"));
    EXPECT_EQ(clicked->count(), 5);
    EXPECT_EQ(isChecked(), item("it")->property("checkable").toBool());
}

TEST_P(PressedControl, actsOnceForAKeyThatIsHeld)
{
    tabTo(item("it"));
    for (const Qt::Key key : {Qt::Key_Space, Qt::Key_Return, Qt::Key_Enter}) {
        clicked->clear();
        QTest::keyPress(window.get(), key);
        for (int i = 0; i < 3; ++i) {
            QKeyEvent held(QEvent::KeyPress, key, Qt::NoModifier, QString(), true);
            QCoreApplication::sendEvent(window.get(), &held);
        }
        QTest::keyRelease(window.get(), key);
        EXPECT_EQ(clicked->count(), 1) << key;
    }
}

TEST_P(PressedControl, doesNotActWhileItIsDisabled)
{
    item("it")->setEnabled(false);
    click(item("it"));
    pressAccessibly(item("it"));
    item("it")->forceActiveFocus(Qt::TabFocusReason);
    press(Qt::Key_Space);
    press(Qt::Key_Return);
    EXPECT_EQ(clicked->count(), 0);
    EXPECT_FALSE(isChecked());
}

TEST_P(PressedControl, showsItsRingToTheKeyboardOnly)
{
    click(item("it"));
    const QImage clickedOn = grab();
    EXPECT_FALSE(hasRing(clickedOn));
    tabTo(item("it"));
    EXPECT_TRUE(hasRing(grab()));
}

TEST_P(PressedControl, showsItsRingAgainWhenTheWindowIsComeBackTo)
{
    click(item("it"));
    leaveAndComeBack();
    EXPECT_FALSE(hasRing(grab())) << "not to the mouse";
    tabTo(item("it"));
    leaveAndComeBack();
    EXPECT_TRUE(item("it")->hasActiveFocus());
    EXPECT_TRUE(hasRing(grab()));
}

INSTANTIATE_TEST_SUITE_P(
    , PressedControl,
    testing::Values(Pressed{"Button { objectName: 'it'; text: 'Close' }", QAccessible::Button, "Close"},
                    Pressed{"PushButton { objectName: 'it'; text: 'Stop'; role: PushButton.Recording }",
                            QAccessible::Button, "Stop"},
                    Pressed{"MenuButton { objectName: 'it'; text: 'Export' }", QAccessible::Button, "Export"},
                    Pressed{"LinkText { objectName: 'it'; text: 'Terms' }", QAccessible::Link, "Terms"},
                    Pressed{"CheckBox { objectName: 'it'; text: 'Strip' }", QAccessible::CheckBox, "Strip"},
                    Pressed{"Switch { objectName: 'it'; text: 'Scroll' }", QAccessible::CheckBox, "Scroll"},
                    Pressed{"ItemDelegate { objectName: 'it'; text: 'Row'; focusPolicy: Qt.StrongFocus }",
                            QAccessible::ListItem, "Row"}));

TEST_F(Controls, wearTheFontOfTheApplication)
{
    QQuickItem *button =
        showControl("Button { objectName: 'it'; text: 'Close'; property string family: Theme.textFamily }");
    const QFont font = button->property("font").value<QFont>();
    EXPECT_EQ(QFontInfo(font).family(), button->property("family").toString());
    EXPECT_EQ(font.pixelSize(), 13);
    EXPECT_EQ(font.weight(), QFont::Medium);
}

TEST_F(Controls, aBoxIsToggledOnceByEachToggleOfAssistiveTechnology)
{
    QQuickItem *box = showControl("CheckBox { objectName: 'it'; text: 'Strip' }");
    QSignalSpy toggled(box, SIGNAL(toggled()));
    pressAccessibly(box, QAccessibleActionInterface::toggleAction());
    EXPECT_TRUE(box->property("checked").toBool());
    EXPECT_TRUE(accessible(box)->state().checked);
    EXPECT_EQ(toggled.count(), 1);
}

TEST_F(Controls, previousAndNextAreTwoButtons)
{
    showControl("PreviousNextButtons { objectName: 'it'; previousEnabled: false }");
    QSignalSpy previous(item("it"), SIGNAL(previous()));
    QSignalSpy next(item("it"), SIGNAL(next()));
    pressAccessibly(item("previousButton"));
    click(item("previousButton"));
    EXPECT_EQ(previous.count(), 0);
    pressAccessibly(item("nextButton"));
    click(item("nextButton"));
    EXPECT_EQ(next.count(), 2);
    EXPECT_EQ(accessible(item("nextButton"))->text(QAccessible::Name), "Next match");
}

TEST_F(Controls, aFieldTellsItsPlaceholderAndTurnsItsOutline)
{
    QQuickItem *field =
        showControl("TextField { objectName: 'it'; x: 20; y: 20; placeholderText: 'Search in transcript' }");
    EXPECT_EQ(accessible(field)->role(), QAccessible::EditableText);
    EXPECT_EQ(accessible(field)->text(QAccessible::Name), "Search in transcript");
    EXPECT_EQ(pixel(field, 100, 0), color("controlBorder"));
    EXPECT_EQ(pixel(field, 100, -3), color("windowColor"));
    click(field);
    EXPECT_EQ(pixel(field, 100, 0), color("focus"));
    EXPECT_EQ(pixel(field, 100, -3), color("windowColor"));
    field->setFocus(false);
    tabTo(field);
    EXPECT_EQ(pixel(field, 100, -3), color("focus"));
    EXPECT_EQ(pixel(field, 100, -1), color("windowColor"));
    press(Qt::Key_A);
    EXPECT_EQ(field->property("text").toString(), "a");
}

TEST_F(Controls, aSliderIsMovedByKeysAndByAssistiveTechnology)
{
    QQuickItem *slider =
        showControl("Slider { objectName: 'it'; from: 0; to: 10; stepSize: 1; Accessible.name: 'Position' }");
    QSignalSpy moved(slider, SIGNAL(moved()));
    EXPECT_EQ(accessible(slider)->role(), QAccessible::Slider);
    EXPECT_EQ(accessible(slider)->text(QAccessible::Name), "Position");
    tabTo(slider);
    press(Qt::Key_Right);
    EXPECT_EQ(slider->property("value").toInt(), 1);
    EXPECT_EQ(moved.count(), 1);
    pressAccessibly(slider, QAccessibleActionInterface::increaseAction());
    EXPECT_EQ(slider->property("value").toInt(), 2);
    pressAccessibly(slider, QAccessibleActionInterface::decreaseAction());
    EXPECT_EQ(slider->property("value").toInt(), 1);
    EXPECT_EQ(moved.count(), 3);
    accessible(slider)->valueInterface()->setCurrentValue(7);
    EXPECT_EQ(slider->property("value").toInt(), 7);
}

TEST_F(Controls, aStepperCountsWithinItsBounds)
{
    QQuickItem *stepper =
        showControl("Stepper { objectName: 'it'; from: 12; to: 14; value: 12; Accessible.name: 'Text Size' }");
    EXPECT_EQ(accessible(stepper)->role(), QAccessible::SpinBox);
    QTest::mouseClick(window.get(), Qt::LeftButton, Qt::NoModifier, {11, 7});
    EXPECT_EQ(stepper->property("value").toInt(), 13);
    QTest::mouseClick(window.get(), Qt::LeftButton, Qt::NoModifier, {11, 21});
    QTest::mouseClick(window.get(), Qt::LeftButton, Qt::NoModifier, {11, 21});
    EXPECT_EQ(stepper->property("value").toInt(), 12);
    tabTo(stepper);
    for (int press = 0; press < 3; ++press)
        QTest::keyClick(window.get(), Qt::Key_Up);
    EXPECT_EQ(stepper->property("value").toInt(), 14);
    pressAccessibly(stepper, QAccessibleActionInterface::decreaseAction());
    EXPECT_EQ(stepper->property("value").toInt(), 13);
}

TEST_F(Controls, progressIsDrawnToItsValue)
{
    QQuickItem *bar = showControl("ProgressBar { objectName: 'it'; width: 200; value: 0.5 }");
    EXPECT_EQ(accessible(bar)->role(), QAccessible::ProgressBar);
    EXPECT_EQ(pixel(bar, 50, 3), color("progressFill"));
    EXPECT_EQ(pixel(bar, 150, 3), color("track"));
    setDark(true);
    EXPECT_EQ(pixel(bar, 50, 3), QColor("#4FB4CC"));
    EXPECT_EQ(pixel(bar, 150, 3), QColor("#363E43"));
}

TEST_F(Controls, theFillOfAProgressBarKeepsItsShareWhileTheBarChangesItsWidth)
{
    QQuickItem *bar = showControl("ProgressBar { objectName: 'it'; width: 200; value: 0.5 }");
    const auto *fill = bar->property("contentItem").value<QQuickItem *>()->childItems().constFirst();
    EXPECT_EQ(fill->width(), 100);
    bar->setWidth(80);
    EXPECT_EQ(fill->width(), 40);
    bar->setProperty("value", 1);
    EXPECT_LT(fill->width(), 80) << "it grows in a fifth of a second";
    EXPECT_TRUE(waitUntil([&] { return fill->width() == 80; }));
}

TEST_F(Controls, theLevelFillIsNeverUnderThreePixels)
{
    QQuickItem *bar = showControl("LevelBar { objectName: 'it'; width: 100; level: 0 }");
    const auto filled = [&] { return bar->childItems().constLast()->width(); };
    EXPECT_EQ(filled(), 3);
    bar->setProperty("level", 0.5);
    EXPECT_EQ(filled(), 50);
    bar->setProperty("level", 1.7);
    EXPECT_EQ(filled(), 100);
}

struct ButtonColors {
    const char *objectName;
    const char *light;
    const char *dark;
};

class ButtonState : public UiTest, public testing::WithParamInterface<ButtonColors> { };

TEST_P(ButtonState, hasTheColourOfTheTokens)
{
    showType("Sorvanta.ControlSheet", "ControlSheet");
    const QQuickItem *button = item(GetParam().objectName);
    EXPECT_EQ(pixel(button, 9, 8), QColor(GetParam().light));
    setDark(true);
    EXPECT_EQ(pixel(button, 9, 8), QColor(GetParam().dark));
}

INSTANTIATE_TEST_SUITE_P(
    , ButtonState,
    testing::Values(
        ButtonColors{"prominent-rest", "#085E78", "#1A7A92"}, ButtonColors{"prominent-hover", "#0A6B88", "#1C7F98"},
        ButtonColors{"prominent-pressed", "#064C62", "#166A80"},
        ButtonColors{"prominent-disabled", "#DCE3E6", "#363E43"}, ButtonColors{"normal-rest", "#FFFFFF", "#2A3034"},
        ButtonColors{"normal-hover", "#EFF3F4", "#272D31"}, ButtonColors{"normal-pressed", "#E4EAEC", "#30373B"},
        ButtonColors{"normal-disabled", "#F3F6F7", "#181C1F"}, ButtonColors{"destructive-hover", "#FBEAE8", "#3A2120"},
        ButtonColors{"destructive-pressed", "#E4EAEC", "#30373B"}, ButtonColors{"recording-rest", "#C2352C", "#C63F35"},
        ButtonColors{"recording-hover", "#AE2D25", "#B7382F"}, ButtonColors{"recording-pressed", "#97251E", "#A33027"},
        ButtonColors{"recording-disabled", "#DCE3E6", "#363E43"}));

} // namespace

} // namespace sorvanta
