import QtQuick

// The text of a line in a LineList, which is selected by mouse and keyboard. The arrow keys go on into the lines above
// and below, Tab goes back to the list.
TextEdit {
    id: words

    required property LineList lines
    required property int row
    readonly property bool isAllSelected: lines.isAllSelected
    property bool isCaretShown: false
    property int focusReason: Qt.MouseFocusReason // as of a control; another one if takeFocus() brings it

    function takeFocus(isAtEnd) {
        cursorPosition = isAtEnd ? length : 0;
        focusReason = Qt.TabFocusReason;
        forceActiveFocus(focusReason);
        isCaretShown = true;
    }

    // The list is a scope: it has the keys itself only while no line of it wants the focus.
    function leave() {
        focus = false;
        lines.forceActiveFocus(Qt.TabFocusReason);
    }

    function mark() {
        if (isAllSelected)
            selectAll();
        else
            deselect();
    }

    textFormat: TextEdit.PlainText
    wrapMode: TextEdit.Wrap
    readOnly: true
    selectByMouse: true
    selectByKeyboard: true
    persistentSelection: isAllSelected
    color: Theme.text
    selectionColor: Theme.accent
    selectedTextColor: Theme.accentOn
    Accessible.role: Accessible.StaticText
    Accessible.name: text
    Component.onCompleted: if (isAllSelected) mark()
    onIsAllSelectedChanged: mark()
    onTextChanged: if (isAllSelected) mark()
    onActiveFocusChanged: {
        isCaretShown = false;
        if (activeFocus)
            lines.isAllSelected = false;
        else
            focusReason = Qt.MouseFocusReason;
    }

    // A caret in a text that cannot be edited helps only who moves it by keys.
    cursorDelegate: isCaretShown ? caret : noCaret

    Component {
        id: caret

        Rectangle {
            width: 1
            color: Theme.text
        }
    }

    Component {
        id: noCaret

        Item {}
    }

    Connections {
        target: words.lines

        function onLineEntered(row, isAtEnd) {
            if (row === words.row)
                words.takeFocus(isAtEnd);
        }
    }

    Keys.priority: Keys.BeforeItem
    Keys.onTabPressed: leave()
    Keys.onBacktabPressed: leave()
    Keys.onPressed: event => {
        const isPlain = !(event.modifiers & ~Qt.KeypadModifier);
        isCaretShown = true;
        if (event.matches(StandardKey.SelectAll)) {
            leave();
            lines.isAllSelected = true;
        } else if (isPlain && event.key === Qt.Key_Up && cursorRectangle.y <= positionToRectangle(0).y) {
            lines.enterLine(row - 1, true);
        } else if (isPlain && event.key === Qt.Key_Down && cursorRectangle.y >= positionToRectangle(length).y) {
            lines.enterLine(row + 1, false);
        } else {
            return;
        }
        event.accepted = true;
    }
}
