import QtQuick
import Sorvanta.Style
import Sorvanta.Screens
import Sorvanta.Viewer

// A line of a transcript, selectable, with the hits of the search painted behind its letters.
Item {
    id: row

    required property TranscriptPaneContent pane
    required property int index
    required property string text

    objectName: "line-" + index
    height: words.height

    TextEdit {
        id: words

        x: 15
        width: row.width - 30
        text: row.text
        textFormat: TextEdit.PlainText
        wrapMode: TextEdit.Wrap
        readOnly: true
        selectByMouse: true
        color: Theme.text
        selectionColor: Theme.accent
        selectedTextColor: Theme.accentOn
        font.pixelSize: 14
        Accessible.role: Accessible.StaticText
        Accessible.name: row.text
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
