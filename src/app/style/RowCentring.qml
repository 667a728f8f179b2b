import QtQuick

// Scrolls rows of a list to its centre. One that is far away is approached over the height of the list.
NumberAnimation {
    id: scrolling

    required property ListView list
    property int row: -1

    function centre(row) {
        stop();
        const start = list.contentY;
        list.positionViewAtIndex(row, ListView.Center);
        list.positionViewAtIndex(row, ListView.Center); // rows made just now may be higher than was thought
        const end = list.contentY;
        const distance = Math.max(-list.height, Math.min(start - end, list.height));
        if (Theme.scrollTime === 0 || distance === 0)
            return;
        scrolling.row = row;
        from = end + distance;
        to = end;
        restart();
    }

    target: list
    property: "contentY"
    duration: Theme.scrollTime
    easing.type: Easing.OutCubic
    // Rows on the way may be higher than was thought.
    onFinished: list.positionViewAtIndex(row, ListView.Center)
}
