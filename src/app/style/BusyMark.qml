import QtQuick

// A small ring of dots that turns while something goes on.
Item {
    id: mark

    property color color: Theme.text2
    readonly property int dots: 8

    implicitWidth: 14
    implicitHeight: 14

    Repeater {
        model: mark.dots

        Rectangle {
            required property int index

            readonly property real angle: 2 * Math.PI * index / mark.dots

            x: (mark.width - width) / 2 + Math.sin(angle) * 5.5
            y: (mark.height - height) / 2 - Math.cos(angle) * 5.5
            width: 2.5
            height: 2.5
            radius: 1.25
            color: mark.color
            opacity: 0.2 + 0.8 * index / (mark.dots - 1)
        }
    }

    RotationAnimator on rotation {
        running: mark.visible
        from: 0
        to: 360
        duration: 1000
        loops: Animation.Infinite
    }
}
