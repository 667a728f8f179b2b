import QtQuick

// The buttons of a dialog in one row, the confirming one last.
Item {
    default property alias buttons: row.data

    implicitWidth: row.implicitWidth + 48
    implicitHeight: row.implicitHeight + 24

    Row {
        id: row

        anchors.right: parent.right
        anchors.rightMargin: 24
        spacing: 8
    }
}
