pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Controls
import Sorvanta.Style
import Sorvanta.Screens

// The lines of a transcript. Text that is appended does not move what is being read.
Card {
    id: card

    required property TranscriptPaneContent pane

    implicitWidth: 480
    implicitHeight: 160

    LineList {
        id: list

        objectName: "transcriptLines"
        anchors.fill: parent
        anchors.margins: 1
        topMargin: 15
        bottomMargin: 15
        spacing: 4
        lineHeight: 42
        model: card.pane.rows
        cacheBuffer: 400
        Accessible.name: "Transcript"
        onCopyAllWanted: card.pane.copyOutput()

        ScrollBar.vertical: ScrollBar {
            leftPadding: 1
            rightPadding: 5
            topPadding: 5
            bottomPadding: 5
        }

        delegate: TranscriptRow {
            width: ListView.view.width
            lines: list
            pane: card.pane
        }
    }

    Connections {
        target: card.pane.search

        function onScrollToCurrentMatch(line) {
            list.centre(line);
        }
    }

    BodyText {
        objectName: "noTranscript"
        visible: !card.pane.hasText
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
