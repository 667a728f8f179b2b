pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Controls
import Sorvanta.Style
import Sorvanta.Screens

// What the tool printed. A log may be very long, so rows are made for what is in sight only; Ctrl+A and Ctrl+C take
// all of it.
Dialog {
    id: sheet

    required property TranscriptPaneContent pane
    readonly property bool isWanted: pane.showLogsSheet

    objectName: "logsSheet"
    title: pane.logsTitle
    bottomPadding: 16
    width: Math.min(640, parent ? parent.width - 32 : 640)
    height: Math.min(440, parent ? parent.height - 32 : 440)
    onIsWantedChanged: isWanted ? open() : close()
    onOpened: lines.forceActiveFocus(Qt.TabFocusReason)
    onClosed: {
        lines.isAllSelected = false;
        pane.showLogsSheet = false;
    }

    header: Item {
        implicitHeight: 24 + 24 + 16

        Title3 {
            objectName: "logsTitle"
            x: 24
            y: 24
            width: parent.width - 48
            text: sheet.title
            elide: Text.ElideRight
            Accessible.role: Accessible.Heading
        }
    }

    Rectangle {
        id: well

        anchors.fill: parent
        radius: Theme.controlRadius
        color: Theme.well

        ListView {
            id: lines

            property bool isAllSelected: false

            objectName: "logLines"
            anchors.fill: parent
            anchors.margins: 1
            topMargin: 11
            bottomMargin: 11
            clip: true
            model: sheet.pane.log
            currentIndex: -1 // a line is selected as text, not as a row
            boundsBehavior: Flickable.StopAtBounds
            cacheBuffer: 200
            keyNavigationEnabled: false
            activeFocusOnTab: true
            Accessible.role: Accessible.List
            Accessible.name: sheet.title
            Keys.forwardTo: [logKeys, scrollKeys]

            ScrollBar.vertical: ScrollBar {
                leftPadding: 1
                rightPadding: 5
                topPadding: 5
                bottomPadding: 5
            }

            delegate: LogRow {
                width: ListView.view.width
                isSelected: lines.isAllSelected
                onPressed: lines.isAllSelected = false
            }
        }

        Item {
            id: logKeys

            Keys.onPressed: event => {
                if (event.matches(StandardKey.SelectAll)) {
                    lines.isAllSelected = true;
                    event.accepted = true;
                } else if (event.matches(StandardKey.Copy) && lines.isAllSelected) {
                    sheet.pane.copyLog();
                    event.accepted = true;
                }
            }
        }

        ScrollKeys {
            id: scrollKeys

            view: lines
            lineHeight: 32
        }

        BodyText {
            objectName: "noLogs"
            visible: text !== ""
            x: 12
            y: 12
            text: sheet.pane.emptyLogText
            color: Theme.text2
            Accessible.ignored: !visible
        }

        FocusRing {
            visible: lines.activeFocus
        }
    }

    footer: DialogFooter {
        PushButton {
            objectName: "closeLogsButton"
            text: "Close"
            onClicked: sheet.close()
        }
    }
}
