import QtQuick

// Something that scrolls as a whole. What has the focus is kept in sight.
Flickable {
    readonly property int revealMargin: 16 // around what is brought into sight
    readonly property Item focusedItem: Window.activeFocusItem

    function isInside(item) {
        let ancestor = item;
        while (ancestor && ancestor !== contentItem)
            ancestor = ancestor.parent;
        return ancestor !== null;
    }

    // Where a view of that size, which shows what begins at `position`, has to begin for the stretch to be in sight.
    function revealing(begin, end, position, size, contentSize) {
        const lastNeeded = Math.min(contentSize, end + revealMargin);
        const first = Math.max(position, lastNeeded - size);
        return Math.min(first, Math.max(0, begin - revealMargin));
    }

    function reveal(item) {
        if (!item || !isInside(item))
            return;
        const place = item.mapToItem(contentItem, 0, 0);
        contentX = revealing(place.x, place.x + item.width, contentX, width, contentWidth);
        contentY = revealing(place.y, place.y + item.height, contentY, height, contentHeight);
    }

    boundsBehavior: Flickable.StopAtBounds
    clip: true
    onFocusedItemChanged: reveal(focusedItem)
}
