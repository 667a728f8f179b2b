import QtQuick
import QtQuick.Templates as T
import Sorvanta.Style

// One choice in the popup of a ComboBox.
T.ItemDelegate {
    id: control

    property bool chosen: false

    readonly property color labelColor: highlighted ? Theme.accentText : Theme.text

    implicitWidth: Math.ceil(implicitContentWidth + leftPadding + rightPadding)
    implicitHeight: 30
    leftPadding: 10
    rightPadding: 34
    font.pixelSize: 13
    hoverEnabled: true

    Accessible.role: Accessible.ListItem
    Accessible.name: text
    Accessible.selectable: true
    Accessible.selected: chosen
    Accessible.focusable: true
    Accessible.focused: highlighted

    contentItem: Text {
        text: control.text
        font: control.font
        color: control.labelColor
        verticalAlignment: Text.AlignVCenter
        elide: Text.ElideRight
        textFormat: Text.PlainText
    }

    indicator: Icon {
        x: control.width - width - 10
        y: (control.height - height) / 2
        symbol: control.chosen ? "check" : ""
        size: 14
        color: control.labelColor
    }

    background: Rectangle {
        radius: Theme.itemRadius
        color: Theme.accentSoft
        visible: control.highlighted
    }
}
