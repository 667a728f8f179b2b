import QtQuick
import QtQuick.Controls
import Sorvanta.Style
import Sorvanta.Viewer

// Play and pause, and the position in the audio.
Card {
    id: bar

    required property TranscriptWindowView view

    implicitHeight: 48

    PushButton {
        objectName: "playButton"
        x: 8
        anchors.verticalCenter: parent.verticalCenter
        width: 84
        text: bar.view.playLabel
        enabled: bar.view.canPlay
        onClicked: bar.view.togglePlay()
    }

    FootnoteText {
        objectName: "currentTimeText"
        x: 100
        anchors.verticalCenter: parent.verticalCenter
        width: 64
        horizontalAlignment: Text.AlignRight
        text: bar.view.currentTimeText
    }

    Slider {
        id: slider

        property bool isFollowing: false

        // The end comes with the position: one without the other would hold the value within the old end.
        function follow() {
            isFollowing = true;
            to = bar.view.sliderEnd;
            value = bar.view.currentTime;
            isFollowing = false;
        }

        objectName: "playbackSlider"
        x: 172
        anchors.verticalCenter: parent.verticalCenter
        width: 180
        from: 0
        keyPart: 0.05
        enabled: bar.view.canSeek
        Accessible.name: "Playback position"
        Component.onCompleted: follow()
        // Assistive technology moves the value without saying that it moved.
        onValueChanged: {
            if (!isFollowing)
                bar.view.slideTo(value);
        }

        Connections {
            target: bar.view

            function onPlaybackMoved() {
                slider.follow();
            }
        }
    }

    FootnoteText {
        objectName: "durationText"
        x: 360
        anchors.verticalCenter: parent.verticalCenter
        width: 64
        text: bar.view.durationText
    }
}
