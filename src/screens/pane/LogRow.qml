import QtQuick
import Sorvanta.Style

// A line of a log.
Item {
    id: row

    required property LineList lines
    required property int index
    required property string text

    height: words.height

    LineText {
        id: words

        x: 11
        width: row.width - 30
        lines: row.lines
        row: row.index
        text: row.text
        font.family: Theme.monospacedFamily
        font.pixelSize: 12
    }
}
