pragma ComponentBehavior: Bound

import QtQuick
import Sorvanta.Style

// The tags of an entry in one line; what finds no room in it is cut.
Item {
    id: line

    property var tags: []

    implicitHeight: 22
    clip: true

    Row {
        spacing: 6

        Repeater {
            model: line.tags

            delegate: Tag {
                required property var modelData

                width: Math.min(implicitWidth, Math.max(0, line.width - x))
                visible: width > 32
                symbol: modelData.systemImage
                text: modelData.text
            }
        }
    }
}
