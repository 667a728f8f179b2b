import QtQuick
import Sorvanta.Style

// The look of a place to drop files on: a dashed outline, a solid one while `fileOver`. Its content starts at 80.
Item {
    id: card

    property string symbol
    property bool fileOver: false
    default property alias content: slot.data

    implicitWidth: 480
    implicitHeight: Math.max(80, slot.childrenRect.height + 24)

    Rectangle {
        anchors.fill: parent
        radius: Theme.cardRadius
        color: card.fileOver ? Theme.accentSoft : Theme.card
        border.width: card.fileOver ? 2 : 0
        border.color: Theme.focus
        Behavior on color { ColorFade { duration: Theme.colorTime } }
    }

    DashedOutline {
        visible: !card.fileOver
        anchors.fill: parent
        radius: Theme.cardRadius
        color: Theme.dropDash
    }

    IconTile {
        x: 16
        y: 16
        symbol: card.symbol
        inverted: card.fileOver
    }

    Item {
        id: slot

        x: 80
        y: 12
        width: card.width - 96
        height: card.height - 24
    }
}
