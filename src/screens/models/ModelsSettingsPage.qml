pragma ComponentBehavior: Bound

import QtQuick
import Sorvanta.Screens

// The page of the Models screen.
ScrollingPage {
    id: page

    required property ModelsSettingsView view

    objectName: "modelsPage"

    ScreenHeader {
        width: parent.width
        bottomPadding: 16
        title: "Models"
        subtitle: "Download and manage bundled Whisper models. Files are stored in Application Support so they persist between app runs."
    }

    Column {
        width: parent.width
        spacing: 12
        Accessible.role: Accessible.List
        Accessible.name: "Models"

        Repeater {
            objectName: "modelCards"
            model: page.view.rows

            delegate: ModelCard {
                id: card

                width: parent ? parent.width : 0
                onDownloadRequested: page.view.download(card.index)
                onRevealRequested: page.view.reveal(card.index)
                onDeletionRequested: page.view.deleteLocalCopy(card.index)
            }
        }
    }
}
