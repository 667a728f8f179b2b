import QtQuick
import Sorvanta.Style

Rectangle {
    id: tile

    property string symbol
    property bool inverted: false

    implicitWidth: 48
    implicitHeight: 48
    radius: Theme.cardRadius
    color: inverted ? Theme.card : Theme.accentSoft

    Icon {
        anchors.centerIn: parent
        symbol: tile.symbol
        size: 22
        color: Theme.accentText
    }
}
