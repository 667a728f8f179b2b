pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Controls
import Sorvanta.Style
import Sorvanta.Viewer

// The lines of the transcript.
Card {
    id: card

    required property TranscriptWindowView view

    LineList {
        id: list

        objectName: "viewerLines"
        anchors.fill: parent
        anchors.margins: 1
        topMargin: 8
        bottomMargin: 24
        spacing: card.view.lineSpacing
        lineHeight: 2 * card.view.fontSize
        model: card.view.rows
        cacheBuffer: 200
        Accessible.name: "Transcript"
        onCopyAllWanted: card.view.copy()

        ScrollBar.vertical: ScrollBar {
            leftPadding: 2
            rightPadding: 4
            topPadding: 5
            bottomPadding: 5
        }

        delegate: ViewerRow {
            x: 6
            width: ListView.view.width - 20
            lines: list
            view: card.view
        }
    }

    Connections {
        target: card.view

        function onScrollToRow(row) {
            list.centre(row);
        }
    }

    BodyText {
        objectName: "noTranscript"
        visible: card.view.rows.count === 0
        x: 7 + card.view.horizontalPadding
        y: 18
        text: "No transcript yet."
        color: Theme.text2
        Accessible.ignored: !visible
    }

    FocusRing {
        visible: list.activeFocus
        shapeRadius: Theme.cardRadius
    }
}
