import QtQuick
import QtQuick.Controls
import Sorvanta.Style
import Sorvanta.Screens
import Sorvanta.Viewer

// The page of the history: the list, and the selected entry beside it. Where there is no room for both, the page
// scrolls sideways.
ScrollingArea {
    id: page

    required property HistoryView view

    readonly property int columnGap: 24
    readonly property int leastDetailWidth: 396
    readonly property int leastWidth: 2 * Theme.pageGutter + list.leastWidth + columnGap + leastDetailWidth

    objectName: "historyPage"
    contentWidth: Math.max(width, leastWidth)
    contentHeight: height

    ScrollBar.horizontal: ScrollBar {}

    ScreenHeader {
        id: header

        x: Theme.pageGutter
        y: Theme.pageGutter
        width: reloadButton.x - x - 16
        title: "History"
        subtitle: "All transcriptions saved to Application Support/sorvanta."
    }

    PushButton {
        id: reloadButton

        objectName: "reloadButton"
        x: page.contentWidth - Theme.pageGutter - width
        y: Theme.pageGutter + 12
        text: "Reload"
        icon.name: "arrow.clockwise"
        hoverEnabled: true // for the tool tip, whatever the desktop says of effects
        Accessible.description: reloadHint.text
        onClicked: page.view.reload()

        ToolTip {
            id: reloadHint

            objectName: "reloadHint"
            visible: reloadButton.hovered || reloadButton.visualFocus
            text: "Reload transcription-history.json from disk."
        }
    }

    BodyText {
        id: storeError

        objectName: "storeError"
        visible: text !== ""
        x: Theme.pageGutter
        y: header.y + header.height + 8
        width: page.contentWidth - 2 * Theme.pageGutter
        text: page.view.storeError
        color: Theme.danger
        wrapMode: Text.Wrap
        maximumLineCount: 6
        elide: Text.ElideRight
        Accessible.role: Accessible.AlertMessage
    }

    HistoryList {
        id: list

        x: Theme.pageGutter
        y: (storeError.visible ? storeError.y + storeError.height - 4 : header.y + header.height) + 20
        width: Math.max(leastWidth, Math.min(mostWidth, Math.round(page.contentWidth * 0.332)))
        height: page.height - y - Theme.pageGutter
        view: page.view
    }

    HistoryDetailArea {
        objectName: "historyDetail"
        visible: page.view.detail.isShown
        x: list.x + list.width + page.columnGap - ringRoom
        y: list.y
        width: page.contentWidth - x
        height: page.height - y
        view: page.view
        onFocusLeft: list.takeFocus()
    }

    BodyText {
        objectName: "noSelection"
        visible: !page.view.detail.isShown
        x: list.x + list.width + page.columnGap
        y: list.y
        width: page.contentWidth - x - Theme.pageGutter
        height: list.height
        text: "Select a transcription to view details."
        color: Theme.text2
        horizontalAlignment: Text.AlignHCenter
        wrapMode: Text.Wrap
    }

    TranscriptViewerLoader {
        viewer: page.view.viewer
    }
}
