import QtQuick
import QtQuick.Controls
import Sorvanta.Style
import Sorvanta.Screens

// A page: one centred column that scrolls as a whole.
ScrollingArea {
    id: page

    default property alias rows: column.data

    readonly property int bottomSpace: revealMargin

    // The height that is left for a row at `y` of the column when it reaches down to the end of the page.
    function heightLeft(y) {
        return height - bottomSpace - column.y - y;
    }

    contentWidth: width
    contentHeight: column.y + column.height + bottomSpace

    ScrollBar.vertical: ScrollBar {}

    Column {
        id: column

        x: Math.round((page.width - width) / 2)
        y: Theme.pageGutter
        width: Math.min(Theme.pageWidth, page.width - 2 * Theme.pageGutter)
    }
}
