import QtQuick
import QtQuick.Controls
import Sorvanta.Style

// A page: one centred column that scrolls as a whole. What has the focus is kept in sight.
Flickable {
    id: page

    default property alias rows: column.data

    readonly property int bottomSpace: 16
    readonly property Item focusedItem: Window.activeFocusItem

    // The height that is left for a row at `y` of the column when it reaches down to the end of the page.
    function heightLeft(y) {
        return height - bottomSpace - column.y - y;
    }

    function reveal(item) {
        let ancestor = item;
        while (ancestor && ancestor !== contentItem)
            ancestor = ancestor.parent;
        if (!ancestor)
            return;
        const top = item.mapToItem(contentItem, 0, 0).y - bottomSpace;
        const bottom = Math.min(contentHeight, top + item.height + 2 * bottomSpace);
        if (bottom > contentY + height)
            contentY = bottom - height;
        if (top < contentY)
            contentY = Math.max(0, top);
    }

    contentWidth: width
    contentHeight: column.y + column.height + bottomSpace
    boundsBehavior: Flickable.StopAtBounds
    clip: true
    onFocusedItemChanged: reveal(focusedItem)

    ScrollBar.vertical: ScrollBar {}

    Column {
        id: column

        x: Math.round((page.width - width) / 2)
        y: Theme.pageGutter
        width: Math.min(Theme.pageWidth, page.width - 2 * Theme.pageGutter)
    }
}
