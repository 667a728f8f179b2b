pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Controls
import Sorvanta.Style
import Sorvanta.Screens

// What became of the files: their list, and the selected one with its transcript.
Column {
    id: area

    required property BatchProcessingView view
    property real heightLeft: 0 // for all of this, down to the end of the page

    readonly property int leastPaneHeight: 280

    // What had the focus goes.
    signal focusLeft

    Item {
        width: parent.width
        height: Theme.controlHeight

        Headline {
            anchors.verticalCenter: parent.verticalCenter
            x: 4
            width: buttons.x - 12
            text: "Outputs"
            elide: Text.ElideRight
        }

        Row {
            id: buttons

            anchors.right: parent.right
            spacing: 8

            ExportMenu {
                objectName: "exportAllMenu"
                content: area.view.exportAllMenu
            }

            PushButton {
                objectName: "clearAllButton"
                text: "Clear All"
                enabled: area.view.canChange
                onClicked: {
                    if (activeFocus)
                        area.focusLeft();
                    area.view.clearAll();
                }
            }
        }
    }

    Item {
        width: 1
        height: 8
    }

    Card {
        id: listCard

        readonly property int inset: 5
        readonly property int leastHeight: 200
        readonly property int mostHeight: 390 // ten rows; more are scrolled to

        width: parent.width
        height: Math.max(leastHeight, Math.min(list.contentHeight + 2 * inset + 2, mostHeight))

        ListView {
            id: list

            property bool isRingShown: true
            readonly property int rowsInSight: Math.max(1, Math.floor(height / 38))

            function step(rows) {
                isRingShown = true;
                area.view.results.selectedRow = Math.max(0, Math.min(currentIndex + rows, count - 1));
            }

            objectName: "resultList"
            anchors.fill: parent
            anchors.margins: 1
            topMargin: listCard.inset - 1
            bottomMargin: listCard.inset - 1
            clip: true
            spacing: 2
            model: area.view.results
            currentIndex: area.view.results.selectedRow
            highlightMoveDuration: 0
            boundsBehavior: Flickable.StopAtBounds
            keyNavigationEnabled: false
            activeFocusOnTab: true
            // Not while the window is left, and gives the focus back later.
            onActiveFocusChanged: if (!activeFocus && Window.active) isRingShown = true
            Accessible.role: Accessible.List
            Accessible.name: "Outputs"

            Keys.onPressed: event => {
                const rows = {
                    [Qt.Key_Up]: -1, [Qt.Key_Down]: 1, [Qt.Key_PageUp]: -rowsInSight, [Qt.Key_PageDown]: rowsInSight,
                    [Qt.Key_Home]: -count, [Qt.Key_End]: count
                };
                if (rows[event.key] === undefined)
                    return;
                step(rows[event.key]);
                event.accepted = true;
            }

            ScrollBar.vertical: ScrollBar {
                leftPadding: 1
                rightPadding: 5
                topPadding: 5
                bottomPadding: 5
            }

            delegate: BatchResultRow {
                x: listCard.inset - 1
                width: list.width - 2 * x
                highlighted: ListView.isCurrentItem
                onClicked: {
                    list.isRingShown = false;
                    list.forceActiveFocus(Qt.MouseFocusReason);
                    area.view.results.selectedRow = index;
                }
            }
        }

        FocusRing {
            visible: list.activeFocus && list.isRingShown
            shapeRadius: Theme.cardRadius
        }
    }

    Item {
        width: 1
        height: 20
    }

    BodyText {
        objectName: "noSelection"
        visible: !area.view.hasSelected
        text: "No output selected."
        color: Theme.text2
    }

    Item {
        visible: area.view.hasSelected
        width: parent.width
        height: 20

        Headline {
            id: selectedName

            objectName: "selectedName"
            x: 4
            width: Math.min(implicitWidth, parent.width - x - 12 - selectedStatus.implicitWidth)
            text: area.view.selectedName
            elide: Text.ElideMiddle
            maximumLineCount: 1
        }

        FileToneText {
            id: selectedStatus

            objectName: "selectedStatus"
            anchors.verticalCenter: selectedName.verticalCenter
            anchors.left: selectedName.right
            anchors.leftMargin: 12
            text: area.view.selectedStatusWord
            tone: area.view.selectedStatusTone
        }
    }

    Item {
        visible: selectedError.visible
        width: 1
        height: 4
    }

    ErrorText {
        id: selectedError

        visible: text !== ""
        viewName: "selectedErrorView"
        textName: "selectedError"
        x: 4
        mostWidth: parent.width - 4
        fontSize: 12
        lineSize: 16
        text: area.view.selectedError
    }

    Item {
        visible: area.view.hasSelected
        width: 1
        height: 10
    }

    TranscriptPane {
        visible: area.view.hasSelected
        width: parent.width
        height: Math.max(leastHeight, area.leastPaneHeight, area.heightLeft - y)
        pane: area.view.pane
        exportMenu: area.view.exportMenu
        onFocusLeft: area.focusLeft()
    }
}
