import QtQuick

// Lines of text, one row each, made for what is in sight only. The keys scroll; Ctrl+A and Ctrl+C take all lines; Return
// goes into the first line in sight, whose text is then selected with Shift and the arrow keys. A delegate holds a
// LineText.
ListView {
    id: list

    property alias lineHeight: scrollKeys.lineHeight
    property bool isAllSelected: false

    // All lines are to go to the pasteboard.
    signal copyAllWanted
    // A line gets the focus, before its text or behind it.
    signal lineEntered(row: int, isAtEnd: bool)

    function centre(row) {
        centring.centre(row);
    }

    function enterLine(row, isAtEnd) {
        if (row < 0 || row >= count)
            return;
        positionViewAtIndex(row, ListView.Contain);
        lineEntered(row, isAtEnd);
    }

    function enterFirstInSight() {
        for (let row = Math.max(0, indexAt(20, contentY + 1)); row < count; ++row) {
            const line = itemAtIndex(row);
            if (!line)
                return;
            if (line.y >= contentY) {
                lineEntered(row, false);
                return;
            }
        }
    }

    clip: true
    currentIndex: -1 // a line is selected as text, not as a row
    boundsBehavior: Flickable.StopAtBounds
    keyNavigationEnabled: false
    activeFocusOnTab: true
    Accessible.role: Accessible.List
    Keys.forwardTo: [scrollKeys]
    Keys.onPressed: event => {
        if (event.matches(StandardKey.SelectAll))
            isAllSelected = true;
        else if (event.matches(StandardKey.Copy) && isAllSelected)
            copyAllWanted();
        else if (event.key === Qt.Key_Return || event.key === Qt.Key_Enter)
            enterFirstInSight();
        else
            return;
        event.accepted = true;
    }
    onMovementStarted: centring.stop()

    ScrollKeys {
        id: scrollKeys

        view: list
    }

    RowCentring {
        id: centring

        list: list
    }
}
