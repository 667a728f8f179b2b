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
        objectName: "positionText"
        anchors.left: field.right
        anchors.leftMargin: 8
        anchors.verticalCenter: parent.verticalCenter
        visible: row.view.isPositionShown
        width: 52
        text: row.view.positionText
        horizontalAlignment: Text.AlignHCenter
        fontSizeMode: Text.HorizontalFit
        minimumPixelSize: 8
    }

    PreviousNextButtons {
        objectName: "matchButtons"
        x: 308
        onPrevious: row.view.previousMatch()
        onNext: row.view.nextMatch()
    }
}
