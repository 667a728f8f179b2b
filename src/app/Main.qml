import QtQuick
import QtQuick.Controls
import Sorvanta.Style
import Sorvanta.App

// The window.
ApplicationWindow {
    id: window

    required property ContentView content

    title: "Sorvanta"
    width: 1200
    height: 700
    minimumWidth: 720
    minimumHeight: 480
    visible: ColorScheme.isSettled

    WindowContent {
        anchors.fill: parent
        content: window.content
    }
}
