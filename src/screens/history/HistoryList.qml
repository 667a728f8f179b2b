pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Controls
import Sorvanta.Style
import Sorvanta.Screens

// The entries that the search finds. Rows are made for what is in sight only.
Item {
    id: column

    required property HistoryView view

    readonly property int leastWidth: 280
    readonly property int mostWidth: 340

    function takeFocus() {
        search.forceActiveFocus(Qt.OtherFocusReason);
    }

    SearchField {
        id: search

        objectName: "historySearch"
        width: parent.width
        placeholderText: "Search in history"
        inputMethodHints: Qt.ImhNoPredictiveText
        text: column.view.searchText
        onTextEdited: column.view.searchText = text
        Keys.onDownPressed: list.forceActiveFocus(Qt.TabFocusReason)
    }

    Card {
        y: search.height + 8
        width: parent.width
        height: parent.height - y

        ListView {
            id: list

            property bool usedByKeyboard: true

            readonly property int rowsInSight: Math.max(1, Math.floor(height / 102))

            function step(rows) {
                usedByKeyboard = true;
                column.view.selectRow(column.view.selectedRow + rows);
                showSelection(); // also one that was selected already, and has been scrolled out of sight
            }

            function showSelection() {
                if (column.view.selectedRow >= 0)
                    positionViewAtIndex(column.view.selectedRow, ListView.Contain);
            }

            objectName: "historyList"
            visible: !column.view.rows.isEmpty
            anchors.fill: parent
            anchors.margins: 1
            topMargin: 5
            bottomMargin: 5
            clip: true
            spacing: 3
            model: column.view.rows
            currentIndex: -1 // the screen knows which row is selected
            boundsBehavior: Flickable.StopAtBounds
            cacheBuffer: 200
            keyNavigationEnabled: false
            activeFocusOnTab: true

            Accessible.role: Accessible.List
            Accessible.name: "Transcriptions"
            // Not while the window is left, and gives the focus back later.
            onActiveFocusChanged: if (!activeFocus && Window.active) usedByKeyboard = true
            onHeightChanged: showSelection()
            Keys.onUpPressed: step(-1)
            Keys.onDownPressed: step(1)
            Keys.onPressed: event => {
                const steps = {
                    [Qt.Key_Home]: -count, [Qt.Key_End]: count,
                    [Qt.Key_PageUp]: -rowsInSight, [Qt.Key_PageDown]: rowsInSight
                };
                if (steps[event.key] === undefined)
                    return;
                step(steps[event.key]);
                event.accepted = true;
            }

            ScrollBar.vertical: ScrollBar {
                leftPadding: 1
                rightPadding: 5
                topPadding: 5
                bottomPadding: 5
            }

            delegate: HistoryRow {
                x: 5
                width: list.width - 19
                selectedRow: column.view.selectedRow
                isListFocused: list.activeFocus
                ringed: list.usedByKeyboard
                onPressed: {
                    list.usedByKeyboard = false;
                    list.forceActiveFocus(Qt.MouseFocusReason);
                }
                onChosen: row => column.view.selectRow(row)
            }

            Connections {
                target: column.view

                function onScrollToRow(row) {
                    list.positionViewAtIndex(row, ListView.Contain);
                }
            }
        }

        Column {
            objectName: "emptyHistory"
            visible: column.view.rows.isEmpty
            anchors.verticalCenter: parent.verticalCenter
            x: 24
            width: parent.width - 48
            spacing: 8

            Headline {
                width: parent.width
                text: "No transcriptions saved yet."
                wrapMode: Text.Wrap
                horizontalAlignment: Text.AlignHCenter
            }

            FootnoteText {
                width: parent.width
                text: "Once you transcribe audio, entries will appear here. Saved in transcription-history.json inside Application Support/sorvanta."
                wrapMode: Text.Wrap
                horizontalAlignment: Text.AlignHCenter
            }
        }
    }
}
