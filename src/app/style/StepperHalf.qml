import QtQuick
import Sorvanta.Style

Item {
    id: half

    property string symbol
    property bool active: true
    property bool pressed: false
    property bool hovered: false

    implicitWidth: 22
    implicitHeight: 14

    Rectangle {
        anchors.fill: parent
        anchors.margins: 1
        radius: Theme.itemRadius - 1
        color: half.pressed ? Theme.pressed : Theme.hover
        visible: half.active && (half.pressed || half.hovered)
    }

    Icon {
        anchors.centerIn: parent
        symbol: half.symbol
        size: 12
        color: half.active ? Theme.text2 : Theme.textDisabled
    }
}
