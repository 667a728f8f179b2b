import QtQuick

// How loud it is, from 0 to 1.
Item {
    id: bar

    property real level: 0
    property bool active: true

    implicitWidth: 84
    implicitHeight: 6
    Accessible.role: Accessible.ProgressBar
    Accessible.name: "Level"

    Rectangle {
        anchors.fill: parent
        radius: 3
        color: Theme.levelTrack
    }

    Rectangle {
        width: Math.max(3, Math.min(1, bar.level) * bar.width)
        height: 6
        radius: Math.min(3, width / 2)
        color: bar.active ? Theme.level : Theme.levelIdle
        Behavior on width {
            NumberAnimation {
                duration: Theme.levelTime
                easing.type: Easing.OutCubic
            }
        }
    }
}
