import QtQuick
import QtQuick.Controls
import Sorvanta.Style
import Sorvanta.Screens

// The selected entry: what it is, what can be done with it, and its text.
ScrollingArea {
    id: area

    required property HistoryView view

    readonly property HistoryDetail detail: view.detail
    readonly property int ringRoom: 4 // on the left, for the focus ring of a control at the edge
    readonly property int columnWidth: width - ringRoom - Theme.pageGutter
    readonly property int leastTextHeight: 160

    // The focus has nowhere to go here.
    signal focusLeft

    contentWidth: width
    contentHeight: textCard.y + textCard.height + Theme.pageGutter
    flickableDirection: Flickable.VerticalFlick

    ScrollBar.vertical: ScrollBar {}

    Column {
        id: facts

        x: area.ringRoom
        width: area.columnWidth

        Title3 {
            objectName: "entryTitle"
            width: parent.width
            text: area.detail.title
            wrapMode: Text.Wrap
            maximumLineCount: 3
            elide: Text.ElideRight
        }

        FootnoteText {
            objectName: "entryDate"
            width: parent.width
            topPadding: 2
            text: area.detail.date
            elide: Text.ElideRight
            maximumLineCount: 1
        }

        Item {
            width: 1
            height: 8
        }

        EntryTags {
            objectName: "entryTags"
            width: parent.width
            wraps: true
            tags: area.detail.tags
        }

        Item {
            width: 1
            height: 16
        }

        Flow {
            width: parent.width
            spacing: 8

            ExportMenu {
                objectName: "exportMenu"
                content: area.view.exportMenu
            }

            PushButton {
                objectName: "fullViewButton"
                text: "Open Full View"
                onClicked: area.view.openTranscriptWindow()
            }

            PushButton {
                objectName: "exportAudioButton"
                visible: area.detail.hasRecording
                text: "Export Audio"
                icon.name: "square.and.arrow.up"
                onClicked: area.view.exportAudio()
            }
        }

        Item {
            width: 1
            height: 12
        }

        HistoryAudio {
            objectName: "audioSection"
            visible: area.detail.hasRecording
            width: parent.width
            view: area.view
        }

        Item {
            visible: area.detail.hasRecording
            width: 1
            height: 12
        }

        PushButton {
            id: deleteButton

            objectName: "deleteButton"
            text: "Delete"
            icon.name: "trash"
            role: PushButton.Destructive
            hoverEnabled: true // for the tool tip, whatever the desktop says of effects
            Accessible.description: deleteHint.text
            onClicked: area.view.askForDeletion()

            ToolTip {
                id: deleteHint

                objectName: "deleteHint"
                visible: deleteButton.hovered || deleteButton.visualFocus
                text: "Remove this entry from history and delete stored transcript files."
            }
        }

        FootnoteText {
            objectName: "exportMessage"
            visible: text !== ""
            width: parent.width
            topPadding: 12
            text: area.view.exportMessage
            color: Theme.success
            wrapMode: Text.Wrap
        }

        FootnoteText {
            objectName: "exportError"
            visible: text !== ""
            width: parent.width
            topPadding: 12
            text: area.view.exportError
            color: Theme.danger
            wrapMode: Text.Wrap
            Accessible.role: Accessible.AlertMessage
        }
    }

    HistoryText {
        id: textCard

        x: area.ringRoom
        y: facts.height + 12
        width: area.columnWidth
        height: Math.max(area.leastTextHeight, area.height - Theme.pageGutter - y)
        detail: area.detail
    }

    DeleteEntryDialog {
        view: area.view
        onClosed: {
            if (area.detail.isShown)
                deleteButton.forceActiveFocus(Qt.PopupFocusReason);
            else
                area.focusLeft();
        }
    }
}
