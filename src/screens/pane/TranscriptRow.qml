import QtQuick
import Sorvanta.Style
import Sorvanta.Screens
import Sorvanta.Viewer

// A line of a transcript, with the hits of the search painted behind its letters.
Item {
    id: row

    required property LineList lines
    required property TranscriptPaneContent pane
    required property int index
    required property string text

    objectName: "line-" + index
    height: words.height

    LineText {
        id: words

        x: 15
        width: row.width - 30
        lines: row.lines
        row: row.index
        text: row.text
        font.pixelSize: 14
    }

    LineMarks {
        document: words.textDocument
        hits: row.pane.paintRevision >= 0 && row.text !== "" ? row.pane.hitsInRow(row.index) : []
        hitColor: Theme.hit
        hitTextColor: Theme.hitText
        currentColor: Theme.hitCurrent
        currentTextColor: Theme.hitCurrentText
    }
}
