import QtQuick
import QtQuick.Controls
import Sorvanta.Style
import Sorvanta.Screens

// How far a run is, and the button that stops it.
Item {
    id: row

    required property RunState run
    property bool isStopEnabled: true
    property string waitingText // in the place of the progress as long as there is none

    // The run ended while its button had the focus.
    signal focusLeft

    function takeFocus() {
        stopButton.forceActiveFocus(Qt.OtherFocusReason);
    }

    implicitWidth: 480
    implicitHeight: Theme.controlHeight

    ProgressBar {
        objectName: "progressBar"
        anchors.left: parent.left
        anchors.right: percentage.left
        anchors.rightMargin: 16
        anchors.verticalCenter: parent.verticalCenter
        indeterminate: !row.run.hasProgress
        value: row.run.progress
        Accessible.name: "Progress"
    }

    FootnoteText {
        id: percentage

        objectName: "progressText"
        visible: row.run.hasProgress
        anchors.right: remaining.left
        anchors.rightMargin: 8
        anchors.verticalCenter: parent.verticalCenter
        width: 92
        text: row.run.progressText
        color: Theme.text2
    }

    FootnoteText {
        id: remaining

        objectName: "remainingText"
        visible: row.run.hasProgress
        anchors.right: stopButton.left
        anchors.rightMargin: 12
        anchors.verticalCenter: parent.verticalCenter
        width: 100
        text: row.run.remainingText
        color: Theme.text2
    }

    Timer {
        id: leaving

        interval: 0
        onTriggered: row.focusLeft()
    }

    FootnoteText {
        objectName: "waitingText"
        visible: text !== "" && !row.run.hasProgress
        anchors.left: percentage.left
        anchors.right: remaining.right
        anchors.verticalCenter: parent.verticalCenter
        text: row.waitingText
        color: Theme.text2
        elide: Text.ElideMiddle
        maximumLineCount: 1
    }

    PushButton {
        id: stopButton

        objectName: "stopButton"
        anchors.right: parent.right
        width: 72
        text: "Stop"
        role: PushButton.Destructive
        enabled: row.isStopEnabled
        onClicked: row.run.stopRun()

        // With the run the button goes, and a focus that stayed on it would be nowhere.
        onVisibleChanged: {
            if (!visible && focus)
                leaving.start();
        }
    }
}
