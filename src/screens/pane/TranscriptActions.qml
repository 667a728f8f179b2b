import QtQuick
import QtQuick.Controls
import Sorvanta.Style
import Sorvanta.Screens

// What can be done with the transcript. Where the row is too narrow, it goes on in the next line.
Item {
    id: row

    required property TranscriptPaneContent pane
    required property ExportMenuContent exportMenu

    implicitHeight: flow.height

    Flow {
        id: flow

        width: clearButton.visible ? row.width - clearButton.width - spacing : row.width
        spacing: 8

        PushButton {
            objectName: "fullViewButton"
            text: "Open Full View"
            icon.name: "arrow.up.left.and.arrow.down.right"
            enabled: row.pane.canOpenFullView
            onClicked: row.pane.openFullView()
        }

        Item {
            width: strip.width + 22
            height: Theme.controlHeight

            CheckBox {
                id: strip

                objectName: "stripDashesBox"
                x: 11
                height: parent.height
                text: "Strip “- ”"
                checked: row.pane.stripDashes
                hoverEnabled: true // for the tool tip, whatever the desktop says of effects
                Accessible.description: row.pane.stripDashesHint
                onToggled: row.pane.stripDashes = checked

                ToolTip {
                    objectName: "stripDashesHint"
                    visible: strip.hovered || strip.visualFocus
                    text: row.pane.stripDashesHint
                }
            }
        }

        PushButton {
            objectName: "showLogsButton"
            visible: row.pane.isShowLogsOffered
            text: row.pane.showLogsLabel
            onClicked: row.pane.showLogsSheet = true
        }

        ExportMenu {
            objectName: "exportMenu"
            content: row.exportMenu
        }

        PushButton {
            objectName: "copyOutputButton"
            text: "Copy Output"
            enabled: row.pane.canCopyOutput
            onClicked: row.pane.copyOutput()
        }
    }

    PushButton {
        id: clearButton

        objectName: "clearOutputButton"
        visible: row.pane.isClearOutputOffered
        anchors.right: parent.right
        anchors.bottom: parent.bottom
        text: "Clear Output"
        role: PushButton.Destructive
        onClicked: row.pane.clearOutput()
    }
}
