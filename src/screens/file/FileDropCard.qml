import QtQuick
import Sorvanta.Style
import Sorvanta.Screens

// Where the file is chosen, by a panel or by a drop.
DropCard {
    id: card

    required property TranscriptFromFileView view

    symbol: "arrow.up.doc"
    fileOver: dropArea.containsDrag

    PushButton {
        id: chooseButton

        objectName: "chooseFileButton"
        text: "Choose File…"
        onClicked: card.view.chooseFile()
    }

    Icon {
        id: fileIcon

        visible: card.view.hasFile
        anchors.left: chooseButton.right
        anchors.leftMargin: 12
        anchors.verticalCenter: chooseButton.verticalCenter
        symbol: "doc.text"
        size: 16
        color: Theme.accentText
    }

    LabelText {
        objectName: "fileName"
        anchors.left: card.view.hasFile ? fileIcon.right : chooseButton.right
        anchors.leftMargin: card.view.hasFile ? 7 : 12
        anchors.right: parent.right
        anchors.verticalCenter: chooseButton.verticalCenter
        text: card.view.fileLabel
        font.weight: card.view.hasFile ? Font.Medium : Font.Normal
        color: card.view.hasFile ? Theme.text : Theme.text2
        elide: Text.ElideMiddle
        maximumLineCount: 1
    }

    FootnoteText {
        anchors.top: chooseButton.bottom
        anchors.topMargin: 8
        width: parent.width
        text: "Drag & drop an audio/video file here or use the picker."
        color: Theme.text3
        elide: Text.ElideRight
    }

    DropArea {
        id: dropArea

        objectName: "dropArea"
        x: -80
        y: -16
        width: card.width
        height: card.height
        onEntered: drag => drag.accepted = card.view.acceptsDrop(drag.urls, drag.formats)
        onDropped: drop => {
            drop.accepted = card.view.acceptsDrop(drop.urls, drop.formats);
            const format = card.view.mediaFormat(drop.formats);
            if (!card.view.dropFiles(drop.urls) && format !== "")
                card.view.dropData(drop.getDataAsArrayBuffer(format));
        }
    }
}
