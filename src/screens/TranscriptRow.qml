import QtQuick
import Sorvanta.Style

// A line of a transcript, selectable.
Item {
    id: row

    required property string text

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
}
