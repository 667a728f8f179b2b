import QtQuick

// A row of a form card: what it is at the left, with a hint under it, and the control at the right, 280 wide; in a
// narrow card the control stands below. The name of the control for assistive technology is its own to say.
Item {
    id: row

    property string label
    property string hint
    default property alias control: slot.data

    readonly property bool isNarrow: width < 480
    readonly property bool isControlBelow: isNarrow && slot.visibleChildren.length > 0

    implicitWidth: 480
    implicitHeight: Math.max(56, words.implicitHeight + 18 + (isControlBelow ? slot.height + 8 : 0))

    Column {
        id: words

        y: row.isNarrow ? 9 : Math.round((row.height - height) / 2)
        width: row.isNarrow ? row.width : row.width - slot.width - 16
        spacing: 3

        LabelText {
            width: parent.width
            text: row.label
            elide: Text.ElideRight
        }

        FootnoteText {
            visible: text !== ""
            width: parent.width
            text: row.hint
            color: Theme.text3
            wrapMode: Text.Wrap
        }
    }

    Item {
        id: slot

        x: row.isNarrow ? 0 : row.width - width
        y: row.isNarrow ? words.y + words.height + 8 : Math.round((row.height - height) / 2)
        width: Theme.pickerWidth
        height: childrenRect.height
    }
}
