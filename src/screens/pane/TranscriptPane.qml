import QtQuick
import Sorvanta.Screens
import Sorvanta.Viewer

// The block of a screen with its transcript: search, text, actions and the log. Its text takes what height is left.
FocusScope {
    id: block

    required property TranscriptPaneContent pane
    required property ExportMenuContent exportMenu

    readonly property int gap: 8
    readonly property int leastTextHeight: 160
    readonly property real leastHeight: searchRow.height + gap + leastTextHeight + gap + actions.height

    // The block went while it had the focus.
    signal focusLeft

    visible: pane.isShown
    implicitWidth: 480
    implicitHeight: leastHeight
    onVisibleChanged: {
        if (!visible && activeFocus)
            leaving.start();
    }

    // The focus goes on once the block is gone.
    Timer {
        id: leaving

        interval: 0
        onTriggered: block.focusLeft()
    }

    TranscriptSearchRow {
        id: searchRow

        width: parent.width
        pane: block.pane
    }

    TranscriptLines {
        anchors.top: searchRow.bottom
        anchors.bottom: actions.top
        anchors.topMargin: block.gap
        anchors.bottomMargin: block.gap
        width: parent.width
        pane: block.pane
    }

    TranscriptActions {
        id: actions

        anchors.bottom: parent.bottom
        width: parent.width
        pane: block.pane
        exportMenu: block.exportMenu
    }

    LogsSheet {
        pane: block.pane
    }

    TranscriptViewerLoader {
        viewer: block.pane.viewer
    }
}
