import QtQuick
import QtQuick.Controls
import Sorvanta.Style
import Sorvanta.Screens

// The lines of a transcript, one row each. Rows are made for what is in sight only, and text that is appended does
// not move what is being read.
Card {
    id: card

    required property TranscriptionRun run

    implicitWidth: 480
    implicitHeight: 160

    ListView {
        id: list

        objectName: "transcriptLines"
        anchors.fill: parent
        anchors.margins: 1
        topMargin: 15
        bottomMargin: 15
        clip: true
        spacing: 4
        model: card.run.lines
        currentIndex: -1 // a line is selected as text, not as a row
        boundsBehavior: Flickable.StopAtBounds
        cacheBuffer: 400
        keyNavigationEnabled: false
        activeFocusOnTab: true

        Accessible.role: Accessible.List
        Accessible.name: "Transcript"

        Keys.forwardTo: [scrollKeys]

        ScrollBar.vertical: ScrollBar {
            leftPadding: 1
            rightPadding: 5
            topPadding: 5
            bottomPadding: 5
        }

        delegate: TranscriptRow {
            width: ListView.view.width
        }
    }

    ScrollKeys {
        id: scrollKeys

        view: list
        lineHeight: 42
    }

    BodyText {
        objectName: "noTranscript"
        visible: card.run.lines.count === 0
        x: 16
        y: 16
        text: "No transcript yet."
        color: Theme.text2
    }

    FocusRing {
        visible: list.activeFocus
        shapeRadius: Theme.cardRadius
    }
}
