pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Controls
import Sorvanta.Style
import Sorvanta.Screens

// What the tool printed.
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
    onOpened: logLines.forceActiveFocus(Qt.TabFocusReason)
    onClosed: {
        logLines.isAllSelected = false;
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

        LineList {
            id: logLines

            objectName: "logLines"
            anchors.fill: parent
            anchors.margins: 1
            topMargin: 11
            bottomMargin: 11
            lineHeight: 32
            model: sheet.pane.log
            cacheBuffer: 200
            Accessible.name: sheet.title
            onCopyAllWanted: sheet.pane.copyLog()

            ScrollBar.vertical: ScrollBar {
                leftPadding: 1
                rightPadding: 5
                topPadding: 5
                bottomPadding: 5
            }

            delegate: LogRow {
                width: ListView.view.width
                lines: logLines
            }
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
            visible: logLines.activeFocus
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
