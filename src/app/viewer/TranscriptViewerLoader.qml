import QtQuick
import Sorvanta.Viewer

// Makes the viewer window of a screen while it is open. It shows nothing itself and stands anywhere in the page.
Item {
    id: loader

    required property TranscriptViewer viewer

    Loader {
        id: window

        function follow() {
            if (loader.viewer.transcriptWindow)
                setSource("TranscriptViewerWindow.qml", { viewer: loader.viewer, view: loader.viewer.transcriptWindow });
            else
                source = "";
        }

        Component.onCompleted: follow()
    }

    Connections {
        target: loader.viewer

        function onTranscriptWindowChanged() {
            window.follow();
        }
    }
}
