import QtQuick

// Something that scrolls as a whole. What the keyboard gives the focus to is brought into sight; what is pressed by the
// mouse is there, and must not move away from under it.
Flickable {
    readonly property int revealMargin: 16 // around what is brought into sight
    readonly property Item focusedItem: Window.activeFocusItem
    property Item lastFocusedItem // while the window was active

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

    // Where the item stands, without what is cut off of it by a list that it stands in.
    function uncutPlace(item) {
        const place = item.mapToItem(contentItem, 0, 0, item.width, item.height);
        let [left, top, right, bottom] = [place.left, place.top, place.right, place.bottom];
        for (let frame = item.parent; frame !== contentItem; frame = frame.parent) {
            if (!frame.clip)
                continue;
            const cut = frame.mapToItem(contentItem, 0, 0, frame.width, frame.height);
            left = Math.max(cut.left, Math.min(left, cut.right));
            right = Math.max(left, Math.min(right, cut.right));
            top = Math.max(cut.top, Math.min(top, cut.bottom));
            bottom = Math.max(top, Math.min(bottom, cut.bottom));
        }
        return { left, top, right, bottom };
    }

    // Only that of a control is known, and of an item that tells it like one.
    function isFocusedByMouse(item) {
        return item.focusReason === Qt.MouseFocusReason;
    }

    function reveal(item) {
        if (!item || !isInside(item) || isFocusedByMouse(item))
            return;
        const place = uncutPlace(item);
        contentX = revealing(place.left, place.right, contentX, width, contentWidth);
        contentY = revealing(place.top, place.bottom, contentY, height, contentHeight);
    }

    boundsBehavior: Flickable.StopAtBounds
    clip: true
    // A window takes the focus from its item when it is left, and gives it back when its user comes back. Nothing moves
    // then.
    onFocusedItemChanged: {
        if (!Window.window?.active || focusedItem === lastFocusedItem)
            return;
        lastFocusedItem = focusedItem;
        reveal(focusedItem);
    }
}
