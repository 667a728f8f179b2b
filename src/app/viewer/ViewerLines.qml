pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Controls
import Sorvanta.Style
import Sorvanta.Viewer

// The lines of the transcript, one row each, made for what is in sight only.
Card {
    id: card

    required property TranscriptWindowView view

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

    ListView {
        id: list

        objectName: "viewerLines"
        anchors.fill: parent
        anchors.margins: 1
        topMargin: 8
        bottomMargin: 24
        clip: true
        spacing: card.view.lineSpacing
        model: card.view.rows
        currentIndex: -1 // a line is selected as text, not as a row
        boundsBehavior: Flickable.StopAtBounds
        cacheBuffer: 200
        keyNavigationEnabled: false
        activeFocusOnTab: true
        Accessible.role: Accessible.List
        Accessible.name: "Transcript"
        Keys.forwardTo: [scrollKeys]
        Keys.onReturnPressed: selectInSight()
        onMovementStarted: scrolling.stop()

        // Gives the focus to the first line in sight, whose text is then selected with the arrow keys.
        function selectInSight() {
            for (let row = Math.max(0, indexAt(20, contentY + 1)); row < count; ++row) {
                const line = itemAtIndex(row);
                if (!line)
                    return;
                if (line.y >= contentY) {
                    line.takeFocus();
                    return;
                }
            }
        }

        ScrollBar.vertical: ScrollBar {
            leftPadding: 2
            rightPadding: 4
            topPadding: 5
            bottomPadding: 5
        }

        delegate: ViewerRow {
            x: 6
            width: ListView.view.width - 20
            view: card.view
            onFocusLeft: list.forceActiveFocus(Qt.TabFocusReason)
        }
    }

    ScrollKeys {
        id: scrollKeys

        view: list
        lineHeight: 2 * card.view.fontSize
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
        target: card.view

        function onScrollToRow(row) {
            card.centre(row);
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
