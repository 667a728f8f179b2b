import QtQuick

// The box of a button, a field or a picker.
Rectangle {
    id: frame

    property bool raised: true
    property bool ringed: false

    radius: Theme.controlRadius
    color: Theme.control
    border.color: Theme.controlBorder
    Behavior on color { ColorFade {} }

    Rectangle {
        visible: frame.raised && !Theme.dark
        z: -1
        y: 1
        width: frame.width
        height: frame.height
        radius: frame.radius
        color: Theme.controlDepth
    }

    FocusRing {
        visible: frame.ringed
        shapeRadius: frame.radius
    }
}
