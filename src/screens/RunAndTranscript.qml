import QtQuick
import Sorvanta.Style
import Sorvanta.Screens

// The end of a page: how far its run is, and the transcript.
Column {
    id: rows

    required property TranscriptionRun run
    required property TranscriptPaneContent pane
    required property ExportMenuContent exportMenu
    required property PushButton startButton // has the focus when what had it has gone
    property real heightLeft: 0 // for all of this, down to the end of the page

    Item {
        visible: rows.run.isTranscribing
        width: 1
        height: 12
    }

    ProgressRow {
        id: progressRow

        visible: rows.run.isTranscribing
        width: parent.width
        run: rows.run
        onFocusLeft: rows.startButton.forceActiveFocus(Qt.OtherFocusReason)
    }

    Item {
        visible: rows.pane.isShown
        width: 1
        height: 12
    }

    TranscriptPane {
        width: parent.width
        height: Math.max(leastHeight, rows.heightLeft - y)
        pane: rows.pane
        exportMenu: rows.exportMenu
        onFocusLeft: {
            if (rows.startButton.enabled)
                rows.startButton.forceActiveFocus(Qt.OtherFocusReason);
            else
                progressRow.takeFocus();
        }
    }
}
