import QtQuick

// Scrolls what is longer than its view by the arrow keys, Page Up and Down, Home and End. The view forwards its keys here
// (Keys.forwardTo).
Item {
    id: keys

    required property Flickable view
    property int lineHeight: 20

    function scrollBy(distance) {
        const first = view.originY - view.topMargin;
        const last = view.originY + view.contentHeight + view.bottomMargin - view.height;
        view.contentY = Math.max(first, Math.min(view.contentY + distance, last));
    }

    Keys.onPressed: event => {
        const line = keys.lineHeight;
        const page = Math.max(line, view.height - line);
        const all = view.contentHeight + view.height;
        const distances = {
            [Qt.Key_Up]: -line, [Qt.Key_Down]: line, [Qt.Key_PageUp]: -page, [Qt.Key_PageDown]: page,
            [Qt.Key_Home]: -all, [Qt.Key_End]: all
        };
        if (distances[event.key] === undefined)
            return;
        scrollBy(distances[event.key]);
        event.accepted = true;
    }
}
