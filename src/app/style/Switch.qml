import QtQuick
import QtQuick.Templates as T

// The switch stands at the right edge, its text at the left.
T.Switch {
    id: control

    function press() {
        if (!enabled)
            return;
        toggle();
        toggled();
        clicked();
    }

    implicitWidth: Math.ceil(implicitContentWidth)
    implicitHeight: Math.max(20, implicitContentHeight)
    spacing: 8
    focusPolicy: Qt.StrongFocus
    font.pixelSize: 13

    Accessible.role: Accessible.CheckBox
    Accessible.name: text
    Accessible.onPressAction: press()
    Accessible.onToggleAction: press()
    Keys.onReturnPressed: event => KeyPress.once(event, press)
    Keys.onEnterPressed: event => KeyPress.once(event, press)

    FocusMemory { control: control }

    indicator: Rectangle {
        x: control.width - width
        y: (control.height - height) / 2
        implicitWidth: 36
        implicitHeight: 20
        radius: height / 2
        color: !control.enabled ? Theme.track : control.checked ? (control.hovered ? Theme.accentHover : Theme.accent) : Theme.track
        border.width: control.checked || !control.enabled ? 0 : 1
        border.color: Theme.controlMark
        Behavior on color { ColorFade { duration: Theme.switchTime } }

        Rectangle {
            x: control.checked ? parent.width - width - 2 : 2
            y: 2
            width: 16
            height: 16
            radius: 8
            color: !control.enabled ? Theme.well : Theme.dark ? (control.checked ? "#FFFFFF" : "#CBD2D5") : "#FFFFFF"
            border.width: control.checked || !control.enabled || Theme.dark ? 0 : 1
            border.color: Theme.controlMark
            Behavior on x {
                NumberAnimation {
                    duration: Theme.switchTime
                    easing.type: Easing.OutCubic
                }
            }
        }

        FocusRing {
            visible: control.visualFocus
            shapeRadius: 10
        }
    }

    contentItem: Text {
        rightPadding: control.text ? 36 + control.spacing : 36
        text: control.text
        font: control.font
        color: control.enabled ? Theme.text : Theme.textDisabled
        verticalAlignment: Text.AlignVCenter
        elide: Text.ElideRight
        textFormat: Text.PlainText
    }
}
