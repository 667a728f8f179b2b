import QtQuick
import Sorvanta.Style
import Sorvanta.Viewer

// A line of the transcript and the times it was said at.
Rectangle {
    id: row

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

    signal focusLeft

    function takeFocus() {
        words.forceActiveFocus(Qt.TabFocusReason);
    }

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

        TextEdit {
            id: words

            objectName: "words"
            width: parent.width
            text: row.text
            textFormat: TextEdit.PlainText
            wrapMode: TextEdit.Wrap
            readOnly: true
            selectByMouse: true
            selectByKeyboard: true
            color: Theme.text
            selectionColor: Theme.accent
            selectedTextColor: Theme.accentOn
            font.family: row.families[row.view.fontDesign]
            font.pixelSize: row.view.fontSize
            Accessible.role: Accessible.StaticText
            Accessible.name: row.text
            KeyNavigation.priority: KeyNavigation.BeforeItem
            Keys.onTabPressed: row.focusLeft()
            Keys.onBacktabPressed: row.focusLeft()
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
