pragma ComponentBehavior: Bound

import QtQuick

// Turns while something goes on whose end is not known.
Item {
    id: spinner

    property color color: Theme.text2

    readonly property int spokes: 8
    property int turned

    implicitWidth: 16
    implicitHeight: 16
    Accessible.ignored: true

    NumberAnimation on turned {
        running: spinner.visible
        from: 0
        to: spinner.spokes
        duration: 800
        loops: Animation.Infinite
    }

    Repeater {
        model: spinner.spokes

        Rectangle {
            id: spoke

            required property int index

            x: (spinner.width - width) / 2
            y: 0
            width: Math.max(1, spinner.width / 8)
            height: spinner.height * 0.3
            radius: width / 2
            color: spinner.color
            opacity: 1 - 0.8 * ((spinner.turned - spoke.index + spinner.spokes) % spinner.spokes) / spinner.spokes
            transform: Rotation {
                origin.x: spinner.width / 16
                origin.y: spinner.height / 2
                angle: spoke.index * 360 / spinner.spokes
            }
        }
    }
}
