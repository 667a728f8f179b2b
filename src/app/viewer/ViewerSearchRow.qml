import QtQuick
import Sorvanta.Style
import Sorvanta.Viewer

// The window's own search.
Item {
    id: row

    required property TranscriptWindowView view

    implicitHeight: Theme.controlHeight

    SearchField {
        id: field

        objectName: "searchField"
        width: 240
        placeholderText: "Search"
        Accessible.name: "Search"
        text: row.view.searchText
        onTextChanged: row.view.searchText = text
        onAccepted: row.view.nextMatch()
    }

    FootnoteText {
        id: position

        objectName: "positionText"
        anchors.left: field.right
        anchors.leftMargin: 8
        anchors.verticalCenter: parent.verticalCenter
        visible: row.view.isPositionShown
        width: Math.max(52, implicitWidth)
        text: row.view.positionText
        horizontalAlignment: Text.AlignHCenter
    }

    PreviousNextButtons {
        objectName: "matchButtons"
        anchors.left: position.right
        anchors.leftMargin: 8
        onPrevious: row.view.previousMatch()
        onNext: row.view.nextMatch()
    }
}
