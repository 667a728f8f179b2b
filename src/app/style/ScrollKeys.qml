import QtQuick

// Scrolls what is longer than its view by the arrow keys, Page Up and Down, Home and End. The view forwards its keys here
// (Keys.forwardTo).
Item {
    id: keys

    required property Flickable view
    property int lineHeight: 20

    function scrollBy(distance) {
        if (view.contentY + distance <= first())
            scrollToFirst();
        else if (view.contentY + distance >= last())
            scrollTo(last);
        else
            view.contentY += distance;
    }

    function scrollToFirst() {
        scrollTo(first);
    }

    function first() {
        return view.originY - view.topMargin;
    }

    function last() {
        return Math.max(first(), view.originY + view.contentHeight + view.bottomMargin - view.height);
    }

    // A list learns how high its rows are as it makes them, so that its ends move when they come into sight.
    function scrollTo(end) {
        view.contentY = end();
        if (view instanceof ListView)
            view.forceLayout();
        view.contentY = end();
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
