import QtQuick
import Sorvanta.Style

// The mark of the application.
Rectangle {
    id: mark

    property int size: 64

    implicitWidth: size
    implicitHeight: size
    radius: size < 32 ? 7 : 16
    color: Theme.accent
    Accessible.ignored: true

    Icon {
        anchors.centerIn: parent
        symbol: "mark"
        size: Math.round(mark.size * (mark.size < 32 ? 0.66 : 0.56))
        color: Theme.accentOn
    }
}
