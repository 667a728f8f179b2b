pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Controls
import Sorvanta.Style
import Sorvanta.Screens

// The lines of a transcript, one row each. Rows are made for what is in sight only, and text that is appended does
// not move what is being read.
Card {
    id: card

    required property TranscriptPaneContent pane

    // Scrolls the row to the centre. One that is far away is approached over the height of the view.
    function centre(row) {
        scrolling.stop();
        const from = list.contentY;
        list.positionViewAtIndex(row, ListView.Center);
        list.positionViewAtIndex(row, ListView.Center); // rows made just now may be higher than was thought
        const to = list.contentY;
        const distance = Math.max(-list.height, Math.min(from - to, list.height));
        if (Theme.scrollTime === 0 || distance === 0)
            return;
        scrolling.row = row;
        scrolling.from = to + distance;
        scrolling.to = to;
        scrolling.start();
    }

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
        model: card.pane.rows
        currentIndex: -1 // a line is selected as text, not as a row
        boundsBehavior: Flickable.StopAtBounds
        cacheBuffer: 400
        keyNavigationEnabled: false
        activeFocusOnTab: true

        Accessible.role: Accessible.List
        Accessible.name: "Transcript"

        Keys.forwardTo: [scrollKeys]
        onMovementStarted: scrolling.stop()

        ScrollBar.vertical: ScrollBar {
            leftPadding: 1
            rightPadding: 5
            topPadding: 5
            bottomPadding: 5
        }

        delegate: TranscriptRow {
            width: ListView.view.width
            pane: card.pane
        }
    }

    ScrollKeys {
        id: scrollKeys

        view: list
        lineHeight: 42
    }

    NumberAnimation {
        id: scrolling

        property int row: -1

        target: list
        property: "contentY"
        duration: Theme.scrollTime
        easing.type: Easing.OutCubic
        // Rows on the way may be higher than was thought.
        onFinished: list.positionViewAtIndex(row, ListView.Center)
    }

    Connections {
        target: card.pane.search

        function onScrollToCurrentMatch(line) {
            card.centre(line);
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
