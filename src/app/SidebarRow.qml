import QtQuick
import Sorvanta.Style

Rectangle {
    id: row

    required property int index
    required property var modelData

    property bool isListFocused: false
    property bool ringed: false

    readonly property bool isCurrent: ListView.isCurrentItem
    readonly property bool isInactive: Window.window !== null && !Window.active
    readonly property color labelColor: isCurrent ? Theme.accentText : Theme.text

    signal pressed
    signal chosen(int index)

    implicitHeight: 36
    radius: Theme.controlRadius
    color: isCurrent ? (isInactive ? Theme.pressed : Theme.sidebarSelected) : mouse.containsMouse ? Theme.hover : "transparent"

    Accessible.role: Accessible.ListItem
    Accessible.name: modelData.label
    Accessible.selectable: true
    Accessible.selected: isCurrent
    Accessible.focusable: true
    Accessible.focused: isCurrent && isListFocused
    Accessible.onPressAction: chosen(index)

    Icon {
        objectName: "sectionIcon"
        x: 11
        anchors.verticalCenter: parent.verticalCenter
        symbol: row.modelData.symbol
        size: 18
        color: row.isCurrent ? Theme.accentText : Theme.text2
    }

    LabelText {
        objectName: "sectionLabel"
        x: 38
        anchors.verticalCenter: parent.verticalCenter
        width: parent.width - x - 4
        text: row.modelData.label
        color: row.labelColor
        elide: Text.ElideRight
        Accessible.ignored: true
    }

    FocusRing {
        visible: row.isCurrent && row.isListFocused && row.ringed
    }

    MouseArea {
        id: mouse

        anchors.fill: parent
        hoverEnabled: true
        onPressed: row.pressed()
        onClicked: event => row.chosen(row.isCurrent && (event.modifiers & Qt.ControlModifier) ? -1 : row.index)
    }
}
