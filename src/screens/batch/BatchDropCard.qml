pragma ComponentBehavior: Bound

import QtQuick
import Sorvanta.Style
import Sorvanta.Screens

// The section in which the files are chosen, by a panel or by a drop anywhere in it, and what has been chosen.
DropArea {
    id: area

    required property BatchProcessingView view

    function takeFocus() {
        chooseButton.forceActiveFocus(Qt.OtherFocusReason);
    }

    objectName: "dropArea"
    implicitHeight: card.y + card.implicitHeight
    onEntered: drag => drag.accepted = view.acceptsDrop(drag.urls, drag.formats)
    onDropped: drop => {
        const format = view.mediaFormat(drop.formats);
        if (!view.acceptsDrop(drop.urls, drop.formats)) {
            drop.accepted = false;
            return;
        }
        // Whatever was proposed: a file that is moved would be removed where it came from.
        drop.accept(Qt.CopyAction);
        if (!view.dropFiles(drop.urls) && format !== "")
            view.dropData(drop.getDataAsArrayBuffer(format));
    }

    SectionLabel {
        id: label

        objectName: "filesLabel"
        bottomPadding: 8
        text: "Audio Files"
    }

    DropCard {
        id: card

        objectName: "dropCard"
        y: label.height
        width: parent.width
        height: implicitHeight
        symbol: "tray.full"
        fileOver: area.containsDrag

        Column {
            id: content

            readonly property bool isNarrow: width < 480

            width: parent.width

            LabelText {
                objectName: "fileCount"
                width: parent.width
                lineSize: 20
                text: area.view.files.countText
                font.weight: area.view.files.isEmpty ? Font.Normal : Font.Medium
                color: area.view.files.isEmpty ? Theme.text2 : Theme.text
                elide: Text.ElideRight
            }

            Item {
                visible: !area.view.files.isEmpty
                width: 1
                height: 4
            }

            Repeater {
                model: area.view.files

                delegate: Item {
                    id: line

                    required property string name

                    width: content.width
                    height: 20

                    Icon {
                        anchors.verticalCenter: parent.verticalCenter
                        symbol: "doc.text"
                        size: 14
                        color: Theme.text2
                    }

                    StyledText {
                        objectName: "selectedFileName"
                        anchors.verticalCenter: parent.verticalCenter
                        x: 22
                        width: line.width - x
                        font.pixelSize: 12
                        text: line.name
                        color: Theme.text2
                        elide: Text.ElideMiddle
                        maximumLineCount: 1
                    }
                }
            }

            StyledText {
                objectName: "moreFiles"
                visible: text !== ""
                x: 22
                width: parent.width - x
                font.pixelSize: 12
                lineSize: 20
                text: area.view.files.moreText
                color: Theme.text2
                elide: Text.ElideRight
            }

            Item {
                width: 1
                height: 10
            }

            Item {
                width: parent.width
                height: hint.visible && content.isNarrow ? buttons.y + buttons.height : buttons.height

                FootnoteText {
                    id: hint

                    anchors.verticalCenter: content.isNarrow ? undefined : buttons.verticalCenter
                    width: content.isNarrow ? parent.width : parent.width - buttons.width - 12
                    text: "Drag & drop audio/video files here or use the picker (multiple supported)."
                    color: Theme.text3
                    wrapMode: Text.Wrap
                }

                Row {
                    id: buttons

                    x: content.isNarrow ? 0 : parent.width - width
                    y: content.isNarrow ? hint.height + 8 : 0
                    spacing: 8

                    PushButton {
                        id: chooseButton

                        objectName: "chooseFilesButton"
                        text: "Choose Files…"
                        enabled: area.view.canChange
                        onClicked: area.view.chooseFiles()
                    }

                    PushButton {
                        objectName: "clearFilesButton"
                        visible: !area.view.files.isEmpty
                        text: "Clear Files"
                        role: PushButton.Destructive
                        enabled: area.view.canChange
                        onClicked: {
                            if (activeFocus)
                                area.takeFocus();
                            area.view.clearFiles();
                        }
                    }
                }
            }
        }
    }
}
