import QtQuick

// The ring round the shape that is its parent, one pixel away from it.
Rectangle {
    property real shapeRadius: Theme.controlRadius

    anchors.fill: parent
    anchors.margins: -3
    z: 1
    radius: shapeRadius + 3
    color: "transparent"
    border.width: 2
    border.color: Theme.focus
}
