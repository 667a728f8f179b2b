import QtQuick
import Sorvanta.Style
import Sorvanta.Screens

// One entry in the list. All rows are equally high, so that the list knows where each of ten thousand stands.
Rectangle {
    id: row

    required property int index
    required property string title
    required property string date
    required property string preview
    required property var tags

    property int selectedRow: -1
    property bool isListFocused: false
    property bool ringed: false

    readonly property bool isSelected: index === selectedRow
    readonly property bool isInactive: Window.window !== null && !Window.active

    signal pressed
    signal chosen(int index)

    height: 99
    radius: Theme.controlRadius
    color: isSelected ? (isInactive ? Theme.pressed : Theme.accentSoft) : mouse.containsMouse ? Theme.hover : "transparent"

    Accessible.role: Accessible.ListItem
    Accessible.name: title
    Accessible.selectable: true
    Accessible.selected: isSelected
    Accessible.focusable: true
    Accessible.focused: isSelected && isListFocused
    Accessible.onPressAction: chosen(index)

    Hairline {
        visible: row.index > 0 && !row.isSelected && row.index - 1 !== row.selectedRow
        x: 12
        y: -2
        width: parent.width - 24
    }

    Column {
        x: 12
        y: 8
        width: parent.width - 24

        Headline {
            objectName: "title"
            width: parent.width
            text: row.title
            elide: Text.ElideRight
            maximumLineCount: 1
            Accessible.ignored: true
        }

        FootnoteText {
            objectName: "date"
            width: parent.width
            text: row.date
            elide: Text.ElideRight
            maximumLineCount: 1
        }

        BodyText {
            objectName: "preview"
            width: parent.width
            topPadding: 1
            text: row.preview
            color: Theme.text2
            font.pixelSize: 12
            elide: Text.ElideRight
            maximumLineCount: 1
        }

        Item {
            width: 1
            height: 6
        }

        EntryTags {
            width: parent.width
            tags: row.tags
        }
    }

    FocusRing {
        visible: row.isSelected && row.isListFocused && row.ringed
    }

    MouseArea {
        id: mouse

        anchors.fill: parent
        hoverEnabled: true
        onPressed: {
            row.pressed();
            row.chosen(row.index);
        }
    }
}
