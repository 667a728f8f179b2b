import QtQuick
import QtQuick.Templates as T
import Sorvanta.Style

// One half of PreviousNextButtons, inside of its outline.
T.Button {
    id: control

    property string symbol

    z: visualFocus ? 1 : 0
    implicitWidth: 32
    implicitHeight: 30
    y: 1
    focusPolicy: Qt.StrongFocus

    Accessible.role: Accessible.Button
    Accessible.onPressAction: if (enabled) clicked()
    Keys.onReturnPressed: clicked()
    Keys.onEnterPressed: clicked()

    FocusMemory { control: control }

    contentItem: Item {
        Icon {
            anchors.centerIn: parent
            symbol: control.symbol
            color: control.enabled ? Theme.text2 : Theme.textDisabled
        }
    }

    background: Rectangle {
        x: 1
        width: 30
        radius: Theme.controlRadius - 1
        color: control.down ? Theme.pressed : control.hovered ? Theme.hover : "transparent"

        FocusRing {
            visible: control.visualFocus
            shapeRadius: parent.radius
        }
    }
}
