import QtQuick
import Sorvanta.Style
import Sorvanta.Screens

// The take: its buttons, how it stands, and what can be done with it.
Card {
    id: card

    required property RecordAudioView view

    implicitHeight: column.height + 32

    Column {
        id: column

        x: 16
        y: 16
        width: parent.width - 32
        spacing: 16

        Flow {
            width: parent.width
            spacing: 8

            PushButton {
                id: recordButton

                objectName: "recordButton"
                role: card.view.isRecording ? PushButton.Recording : PushButton.Prominent
                text: card.view.recordLabel
                icon.name: card.view.recordSymbol
                enabled: card.view.canRecord
                onClicked: card.view.toggleRecording()
            }

            PushButton {
                objectName: "pauseButton"
                visible: card.view.isRecording
                text: card.view.pauseLabel
                icon.name: card.view.pauseSymbol
                enabled: card.view.canRecord
                onClicked: card.view.togglePause()
                // With the take the button goes, and a focus that stayed on it would be nowhere.
                onVisibleChanged: {
                    if (!visible && activeFocus)
                        leaving.start();
                }
            }
        }

        Timer {
            id: leaving

            interval: 0
            onTriggered: recordButton.forceActiveFocus(Qt.OtherFocusReason)
        }

        Rectangle {
            width: parent.width
            height: panel.height + 26
            radius: Theme.controlRadius
            color: Theme.well

            Column {
                id: panel

                x: 16
                y: 13 // what is drawn of the lines begins 16 below the edge
                width: parent.width - 32

                Headline {
                    objectName: "heading"
                    width: parent.width
                    bottomPadding: 4
                    text: card.view.heading
                }

                FootnoteText {
                    objectName: "recordingStatusText"
                    width: parent.width
                    bottomPadding: 5
                    text: card.view.recordingStatusText
                    wrapMode: Text.Wrap
                }

                FootnoteText {
                    width: parent.width
                    bottomPadding: 7
                    text: "Audio is captured from your default microphone into a temporary WAV file."
                    wrapMode: Text.Wrap
                }

                LevelBar {
                    objectName: "levelBar"
                    width: parent.width
                    level: card.view.inputLevel
                    active: card.view.isLevelActive
                }

                FootnoteText {
                    objectName: "levelText"
                    width: parent.width
                    topPadding: 8
                    text: card.view.levelText
                    wrapMode: Text.Wrap
                }
            }
        }

        Flow {
            width: parent.width
            spacing: 8

            PushButton {
                objectName: "playButton"
                text: card.view.playLabel
                icon.name: card.view.playSymbol
                enabled: card.view.canUseTake
                onClicked: card.view.togglePlayback()
            }

            PushButton {
                objectName: "saveButton"
                text: "Save Audio"
                icon.name: "square.and.arrow.down"
                enabled: card.view.canUseTake
                onClicked: card.view.saveAudio()
            }
        }
    }
}
