import QtQuick
import Sorvanta.Style
import Sorvanta.Viewer

// A line of the transcript and the times it was said at.
Rectangle {
    id: row

    required property LineList lines
    required property TranscriptWindowView view
    required property int index
    required property string text
    required property string times
    required property bool isActive

    readonly property var families: ({
        "monospaced": Theme.monospacedFamily,
        "sans": Theme.textFamily,
        "rounded": Theme.roundedFamily,
        "serif": Theme.serifFamily
    })

    objectName: "line-" + index
    height: column.height + 12
    radius: 8
    color: isActive ? Theme.rowActive : "transparent"

    Column {
        id: column

        x: row.view.horizontalPadding
        y: 6
        width: row.width - 2 * x
        spacing: 4

        CaptionText {
            objectName: "times"
            visible: text !== "" && row.view.showTimestamps
            text: row.times
            font.weight: Font.Normal
        }

        LineText {
            id: words

            objectName: "words"
            width: parent.width
            lines: row.lines
            row: row.index
            text: row.text
            font.family: row.families[row.view.fontDesign]
            font.pixelSize: row.view.fontSize
        }
    }

    LineMarks {
        document: words.textDocument
        hits: row.view.paintRevision >= 0 && row.text !== "" ? row.view.hitsInRow(row.index) : []
        hitColor: Theme.hit
        hitTextColor: Theme.hitText
        currentColor: Theme.hitCurrent
        currentTextColor: Theme.hitCurrentText
    }
}
