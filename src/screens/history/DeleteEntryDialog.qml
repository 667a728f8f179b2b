import QtQuick
import QtQuick.Controls
import Sorvanta.Style
import Sorvanta.Screens

// Asks before an entry is deleted.
Dialog {
    id: dialog

    required property HistoryView view
    readonly property bool isWanted: view.showDeleteConfirmation

    objectName: "deleteDialog"
    title: "Delete this history entry?"
    bottomPadding: 8
    width: Math.min(360, parent ? parent.width - 32 : 360)
    onIsWantedChanged: isWanted ? open() : close()
    onOpened: cancelButton.forceActiveFocus(Qt.TabFocusReason)
    onClosed: view.cancelDeletion()

    footer: DialogFooter {
        PushButton {
            id: cancelButton

            objectName: "cancelDeletionButton"
            text: "Cancel"
            onClicked: dialog.view.cancelDeletion()
        }

        PushButton {
            objectName: "confirmDeletionButton"
            text: "Delete"
            role: PushButton.Recording
            onClicked: dialog.view.confirmDeletion()
        }
    }
}
