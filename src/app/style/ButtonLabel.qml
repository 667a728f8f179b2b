import QtQuick
import Sorvanta.Style

// What stands in a button: a symbol, its text, and the arrow of a menu.
Item {
    id: content

    property string symbol
    property int symbolSize: 16
    property color symbolColor
    property alias text: label.text
    property alias font: label.font
    property alias color: label.color
    property int spacing: 8
    property bool opensMenu: false
    property bool busy: false

    readonly property real extraWidth: (busy ? 14 + spacing : 0) + (symbol ? symbolSize + spacing : 0) + (opensMenu ? 14 + spacing : 0)

    implicitWidth: label.implicitWidth + extraWidth
    implicitHeight: 18

    Row {
        anchors.centerIn: parent
        spacing: content.spacing

        BusyMark {
            visible: content.busy
            anchors.verticalCenter: parent.verticalCenter
            color: label.color
        }

        Icon {
            visible: symbol !== ""
            anchors.verticalCenter: parent.verticalCenter
            symbol: content.symbol
            size: content.symbolSize
            color: content.symbolColor
        }

        Text {
            id: label

            anchors.verticalCenter: parent.verticalCenter
            width: Math.min(implicitWidth, content.width - content.extraWidth)
            elide: Text.ElideRight
            textFormat: Text.PlainText
        }

        Icon {
            visible: content.opensMenu
            anchors.verticalCenter: parent.verticalCenter
            symbol: content.opensMenu ? "chevron.down" : ""
            size: 14
            color: content.symbolColor
        }
    }
}
