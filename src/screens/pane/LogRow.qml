import QtQuick
import Sorvanta.Style

// A line of a log, selectable.
Item {
    id: row

    required property string text
    property bool isSelected: false

    signal pressed

    height: words.height
    onIsSelectedChanged: mark()
    Component.onCompleted: mark()

    function mark() {
        if (isSelected)
            words.selectAll();
        else
            words.deselect();
    }

    TextEdit {
        id: words

        x: 11
        width: row.width - 30
        text: row.text
        textFormat: TextEdit.PlainText
        wrapMode: TextEdit.Wrap
        readOnly: true
        selectByMouse: true
        persistentSelection: row.isSelected
        color: Theme.text
        selectionColor: Theme.accent
        selectedTextColor: Theme.accentOn
        font.family: Theme.monospacedFamily
        font.pixelSize: 12
        Accessible.role: Accessible.StaticText
        Accessible.name: row.text
        onActiveFocusChanged: if (activeFocus) row.pressed()
        onTextChanged: row.mark()
    }
}
