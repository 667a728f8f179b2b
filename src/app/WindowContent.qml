import QtQuick
import Sorvanta.App

// The agreement, or the sidebar and the screens.
Loader {
    id: loader

    required property ContentView content

    function show() {
        setSource(content.hasAcceptedPolicies ? "SplitFrame.qml" : "AgreementFrame.qml", { content: content });
    }

    Component.onCompleted: show()

    Connections {
        target: loader.content
        function onHasAcceptedPoliciesChanged() {
            loader.show();
        }
    }
}
