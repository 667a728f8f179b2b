pragma ComponentBehavior: Bound

import QtQuick
import Sorvanta.Style

// The tags of an entry: in one line, where what finds no room is left out, or in as many as are needed.
Item {
    id: area

    property var tags: []
    property bool wraps: false

    implicitHeight: wraps ? flow.height : 22
    clip: true

    Flow {
        id: flow

        width: parent.width
        spacing: 6

        Repeater {
            model: area.tags.length // so that other tags change these and do not make them anew

            delegate: Tag {
                required property int index
                readonly property var tag: area.tags[index] ?? {text: "", systemImage: ""}

                width: Math.min(implicitWidth, area.width)
                symbol: tag.systemImage
                text: tag.text
            }
        }
    }
}
