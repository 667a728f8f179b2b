import QtQuick
import QtQuick.Controls
import Sorvanta.Style
import Sorvanta.Viewer

// The window that shows a transcript large and readable.
ApplicationWindow {
    id: window

    required property TranscriptViewer viewer
    required property TranscriptWindowView view

    readonly property int margin: 24

    function bringToFront() {
        if (visibility === Window.Minimized)
            showNormal();
        raise();
        requestActivate();
    }

    Connections {
        target: window.viewer

        function onRaiseRequested() {
            window.bringToFront();
        }
    }

    objectName: "transcriptViewerWindow"
    title: "Transcript Viewer"
    width: 980
    height: 720
    minimumWidth: 820
    minimumHeight: 580
    transientParent: null // it may lie behind the main window
    // Once: bound to the width, the place would follow whenever the user pulls at an edge.
    Component.onCompleted: {
        x = Screen.virtualX + Math.round((Screen.width - width) / 2);
        y = Screen.virtualY + Math.round((Screen.height - height) / 2);
        visible = true;
    }
    onClosing: viewer.windowWillClose(view)

    Shortcut {
        sequence: "Ctrl+Shift+C"
        onActivated: window.view.copy()
    }

    Shortcut {
        sequence: "Escape"
        onActivated: window.view.close()
    }

    Item {
        id: column

        x: window.margin
        width: panel.x - 2 * window.margin
        height: parent.height

        Title2 {
            id: title

            objectName: "viewerTitle"
            y: 20
            text: "Transcript"
        }

        BodyText {
            objectName: "viewerCounts"
            anchors.left: title.right
            anchors.leftMargin: 12
            anchors.right: parent.right
            anchors.baseline: title.baseline
            text: window.view.counts
            color: Theme.text2
            elide: Text.ElideRight
        }

        ViewerSearchRow {
            id: searchRow

            y: 60
            width: parent.width
            view: window.view
        }

        PlaybackBar {
            id: playback

            y: 104
            width: parent.width
            view: window.view
        }

        ViewerLines {
            y: 164
            width: parent.width
            height: parent.height - 64 - y
            view: window.view
        }

        Row {
            y: parent.height - 48
            spacing: 8

            PushButton {
                objectName: "copyButton"
                text: "Copy"
                icon.name: "doc.on.doc"
                onClicked: window.view.copy()
            }

            PushButton {
                objectName: "closeButton"
                text: "Close"
                icon.name: "xmark"
                onClicked: window.view.close()
            }
        }
    }

    ViewOptions {
        id: panel

        anchors.right: parent.right
        width: 260
        height: parent.height
        view: window.view
    }
}
