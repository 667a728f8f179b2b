import QtQuick
import Sorvanta.Style
import Sorvanta.Screens

// The search in the transcript and the counts of its text, which go under the search where the row is too narrow.
Item {
    id: row

    required property TranscriptPaneContent pane

    readonly property int gap: 12
    readonly property real searchWidth: counter.width + arrows.width + 2 * gap
    readonly property bool isOneLine: Theme.pickerWidth + searchWidth + gap + counts.implicitWidth <= width

    implicitHeight: isOneLine ? Theme.controlHeight : Theme.controlHeight + 4 + counts.height

    SearchField {
        id: field

        objectName: "transcriptSearchField"
        width: Math.min(Theme.pickerWidth, row.width - row.searchWidth)
        placeholderText: "Search in transcript"
        text: row.pane.search.searchText
        onTextChanged: row.pane.search.searchText = text
        onAccepted: row.pane.search.nextMatch()
    }

    FootnoteText {
        id: counter

        objectName: "matchCounter"
        anchors.left: field.right
        anchors.leftMargin: row.gap
        anchors.verticalCenter: field.verticalCenter
        width: Math.max(48, implicitWidth)
        text: row.pane.search.matchCounter
        color: Theme.text2
        horizontalAlignment: Text.AlignHCenter
    }

    PreviousNextButtons {
        id: arrows

        objectName: "matchButtons"
        anchors.left: counter.right
        anchors.leftMargin: row.gap
        onPrevious: row.pane.search.previousMatch()
        onNext: row.pane.search.nextMatch()
    }

    FootnoteText {
        id: counts

        objectName: "transcriptCounts"
        x: row.isOneLine ? row.width - width - 4 : 4
        y: row.isOneLine ? (Theme.controlHeight - height) / 2 : Theme.controlHeight + 4
        width: Math.min(implicitWidth, row.width - 8)
        text: row.pane.counts
        color: Theme.text2
        elide: Text.ElideRight
    }
}
