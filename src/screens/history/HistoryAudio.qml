import QtQuick
import QtQuick.Controls
import Sorvanta.Style
import Sorvanta.Screens

// Playback of the entry's recording.
Card {
    id: card

    required property HistoryView view

    implicitHeight: flow.height + 16

    Flow {
        id: flow

        x: 8
        y: 8
        width: card.width - 16
        spacing: 12

        PushButton {
            objectName: "playButton"
            width: Math.max(132, implicitWidth)
            text: card.view.playLabel
            icon.name: card.view.playSymbol
            onClicked: card.view.togglePlayback()
        }

        Item {
            width: 360
            height: Theme.controlHeight

            FootnoteText {
                objectName: "positionText"
                anchors.verticalCenter: parent.verticalCenter
                width: 36
                horizontalAlignment: Text.AlignRight
                text: card.view.positionText
            }

            Slider {
                id: slider

                property bool isFollowing: false

                // The end comes with the position: one without the other would hold the value within the old end.
                function follow() {
                    isFollowing = true;
                    to = card.view.playback.sliderEnd;
                    value = card.view.playback.playbackTime;
                    isFollowing = false;
                }

                objectName: "positionSlider"
                x: 48
                anchors.verticalCenter: parent.verticalCenter
                width: 264
                from: 0
                keyPart: 0.05
                Accessible.name: "Playback position"
                Component.onCompleted: follow()
                onPressedChanged: card.view.playback.isScrubbing = pressed
                // Assistive technology moves the value without saying that it moved.
                onValueChanged: {
                    if (!isFollowing)
                        card.view.playback.seekPlayback(value);
                }

                Connections {
                    target: card.view.playback

                    function onPlaybackTimeChanged() {
                        slider.follow();
                    }

                    function onPlaybackDurationChanged() {
                        slider.follow();
                    }
                }
            }

            FootnoteText {
                objectName: "durationText"
                x: 324
                anchors.verticalCenter: parent.verticalCenter
                width: 36
                text: card.view.durationText
            }
        }
    }
}
