import QtQuick

// A row of a form card: what it is at the left, with a hint under it, and the control at the right, 280 wide. The
// name of the control for assistive technology is its own to say.
Item {
    id: row

    property string label
    property string hint
    default property alias control: slot.data

    implicitWidth: 480
    implicitHeight: Math.max(56, words.implicitHeight + 18)

    Column {
        id: words

        anchors.verticalCenter: parent.verticalCenter
        width: row.width - slot.width - 16
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

        anchors.right: parent.right
        anchors.verticalCenter: parent.verticalCenter
        width: Theme.pickerWidth
        height: childrenRect.height
    }
}
