import QtQuick
import Sorvanta.Style
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
                width: parent ? parent.width : 0
                onDownloadRequested: page.view.download(index)
                onRevealRequested: page.view.reveal(index)
                onDeletionRequested: page.view.deleteLocalCopy(index)
            }
        }
    }
}
