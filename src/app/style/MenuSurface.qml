pragma ComponentBehavior: Bound

import QtQuick

// The sheet under a menu or a popup, with its soft shadow out of five plain copies.
Rectangle {
    id: surface

    property bool shadowed: true

    radius: Theme.menuRadius
    color: Theme.popup
    border.width: 1
    border.color: Theme.border

    Repeater {
        model: surface.shadowed ? [[1, 0, 0.05], [3, 1, 0.04], [6, 2, 0.03], [9, 4, 0.02], [12, 6, 0.01]] : []

        Rectangle {
            required property var modelData

            z: -1
            x: -modelData[1]
            y: modelData[0] - modelData[1]
            width: surface.width + 2 * modelData[1]
            height: surface.height + 2 * modelData[1]
            radius: surface.radius + modelData[1]
            color: Qt.rgba(0, 0, 0, Theme.dark ? 0.11 : modelData[2])
        }
    }
}
