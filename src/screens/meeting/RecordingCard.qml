import QtQuick
import QtQuick.Controls
import Sorvanta.Style
import Sorvanta.Screens

// The recording of a meeting: what goes into it, the buttons, how it stands, and its playback.
Card {
    id: card

    required property MeetingRecorderView view
    readonly property TranscriptionRun run: view.run

    implicitHeight: column.y + column.height + 16

    Column {
        id: column

        x: 16
        y: 12
        width: parent.width - 32

        Switch {
            objectName: "includeMicSwitch"
            width: parent.width
            text: "Include microphone (your voice)"
            font.weight: Font.Medium
            checked: card.view.includeMic
            onToggled: card.view.includeMic = checked
        }

        FootnoteText {
            width: parent.width - 52
            topPadding: 3
            bottomPadding: 12
            text: "When on, mixes your microphone into the recording. Requires mic permission."
            color: Theme.text3
            wrapMode: Text.Wrap
        }

        Hairline {
            width: parent.width
        }

        Item {
            width: 1
            height: 16
        }

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
                visible: card.view.isPauseShown
                text: card.view.pauseLabel
                icon.name: card.view.pauseSymbol
                enabled: card.view.canPause
                onClicked: card.view.togglePause()
                // With the recording the button goes, and a focus that stayed on it would be nowhere.
                onVisibleChanged: {
                    if (!visible && activeFocus)
                        leaving.start();
                }
            }

            PushButton {
                objectName: "playButton"
                text: card.view.playLabel
                icon.name: card.view.playSymbol
                enabled: card.view.hasOutput
                onClicked: card.view.playLatest()
            }

            PushButton {
                objectName: "saveButton"
                text: "Save Audio"
                icon.name: "square.and.arrow.down"
                enabled: card.view.hasOutput
                onClicked: card.view.saveAudio()
            }
        }

        Timer {
            id: leaving

            interval: 0
            onTriggered: recordButton.forceActiveFocus(Qt.OtherFocusReason)
        }

        Item {
            width: 1
            height: 16
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
                    objectName: "headline"
                    width: parent.width
                    text: card.view.headline
                    wrapMode: Text.Wrap
                }

                BodyText {
                    objectName: "recordStatus"
                    visible: text !== ""
                    width: parent.width
                    topPadding: 4
                    text: card.view.recordStatus
                    color: Theme.text2
                    wrapMode: Text.Wrap
                }

                Item {
                    visible: card.view.isPlaybackShown
                    width: parent.width
                    height: 52

                    Slider {
                        id: slider

                        property bool isFollowing: false

                        // The end comes with the position: one without the other would hold the value within the old
                        // end.
                        function follow() {
                            isFollowing = true;
                            to = card.view.sliderEnd;
                            value = card.view.sliderPosition;
                            isFollowing = false;
                        }

                        objectName: "playbackSlider"
                        y: 8
                        width: parent.width
                        from: 0
                        stepSize: 0.1
                        snapMode: Slider.SnapAlways
                        Accessible.name: "Playback position"
                        Component.onCompleted: follow()
                        // Assistive technology moves the value without saying that it moved.
                        onValueChanged: {
                            if (!isFollowing)
                                card.view.moveSlider(value);
                        }

                        Connections {
                            target: card.view

                            function onPlaybackChanged() {
                                slider.follow();
                            }
                        }
                    }

                    FootnoteText {
                        objectName: "positionText"
                        anchors.left: parent.left
                        anchors.bottom: parent.bottom
                        text: card.view.positionText
                        color: Theme.text2
                    }

                    FootnoteText {
                        objectName: "durationText"
                        anchors.right: parent.right
                        anchors.bottom: parent.bottom
                        text: card.view.durationText
                        color: Theme.text2
                    }
                }
            }
        }

        ErrorRow {
            visible: card.run.hasError
            width: parent.width
            topPadding: 8
            isCopyOffered: false
            message: card.run.errorText
        }
    }
}
