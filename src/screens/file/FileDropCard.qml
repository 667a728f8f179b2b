import QtQuick
import Sorvanta.Style
import Sorvanta.Screens

// The section in which the file is chosen, by a panel or by a drop anywhere in it.
DropArea {
    id: area

    required property TranscriptFromFileView view

    objectName: "dropArea"
    implicitHeight: card.y + card.implicitHeight
    onEntered: drag => drag.accepted = view.acceptsDrop(drag.urls, drag.formats)
    onDropped: drop => {
        // Whatever was proposed: a file that is moved would be removed where it came from.
        drop.accept(Qt.CopyAction);
        const format = view.mediaFormat(drop.formats);
        if (!view.dropFiles(drop.urls) && format !== "")
            view.dropData(drop.getDataAsArrayBuffer(format));
    }

    SectionLabel {
        id: label

        objectName: "fileLabel"
        bottomPadding: 8
        text: "Audio File"
    }

    DropCard {
        id: card

        objectName: "dropCard"
        y: label.height
        width: parent.width
        height: implicitHeight
        symbol: "arrow.up.doc"
        fileOver: area.containsDrag

        PushButton {
            id: chooseButton

            objectName: "chooseFileButton"
            text: "Choose File…"
            onClicked: area.view.chooseFile()
        }

        Icon {
            id: fileIcon

            visible: area.view.hasFile
            anchors.left: chooseButton.right
            anchors.leftMargin: 12
            anchors.verticalCenter: chooseButton.verticalCenter
            symbol: "doc.text"
            size: 16
            color: Theme.accentText
        }

        LabelText {
            objectName: "fileName"
            anchors.left: area.view.hasFile ? fileIcon.right : chooseButton.right
            anchors.leftMargin: area.view.hasFile ? 7 : 12
            anchors.verticalCenter: chooseButton.verticalCenter
            width: parent.width - x
            text: area.view.fileLabel
            font.weight: area.view.hasFile ? Font.Medium : Font.Normal
            color: area.view.hasFile ? Theme.text : Theme.text2
            elide: Text.ElideMiddle
            maximumLineCount: 1
        }

        FootnoteText {
            y: 40
            width: parent.width
            text: "Drag & drop an audio/video file here or use the picker."
            color: Theme.text3
            elide: Text.ElideRight
        }
    }
}
