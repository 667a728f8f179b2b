import QtQuick
import QtQuick.Templates as T
import Sorvanta.Style

T.CheckBox {
    id: control

    function press() {
        if (!enabled)
            return;
        toggle();
        toggled();
        clicked();
    }

    implicitWidth: Math.ceil(implicitContentWidth)
    implicitHeight: Math.max(18, implicitContentHeight)
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
        y: (control.height - height) / 2
        implicitWidth: 18
        implicitHeight: 18
        radius: Theme.checkRadius
        color: !control.enabled ? (control.checked ? Theme.track : Theme.well)
            : control.checked ? (control.down ? Theme.accentPressed : control.hovered ? Theme.accentHover : Theme.accent)
            : control.down ? Theme.pressed : control.hovered ? Theme.hover : Theme.control
        border.width: control.checked ? 0 : 1
        border.color: control.enabled ? Theme.controlMark : Theme.separator
        Behavior on color { ColorFade { duration: Theme.switchTime } }

        Icon {
            anchors.centerIn: parent
            symbol: control.checked ? "check" : ""
            size: 14
            color: control.enabled ? Theme.accentOn : Theme.textDisabled
        }

        FocusRing {
            visible: control.visualFocus
            shapeRadius: Theme.checkRadius
        }
    }

    contentItem: Text {
        leftPadding: control.text ? 18 + control.spacing : 18
        text: control.text
        font: control.font
        color: control.enabled ? Theme.text : Theme.textDisabled
        verticalAlignment: Text.AlignVCenter
        elide: Text.ElideRight
        textFormat: Text.PlainText
    }
}
