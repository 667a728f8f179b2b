import QtQuick
import Sorvanta.Style

// What stands in a button: a symbol, or what turns while something goes on, its text, and the arrow of a menu.
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

    readonly property real extraWidth: (symbol || busy ? symbolSize + spacing : 0) + (opensMenu ? 14 + spacing : 0)

    implicitWidth: label.implicitWidth + extraWidth
    implicitHeight: 18

    Row {
        anchors.centerIn: parent
        spacing: content.spacing

        Icon {
            visible: symbol !== ""
            anchors.verticalCenter: parent.verticalCenter
            symbol: content.symbol
            size: content.symbolSize
            color: content.symbolColor
        }

        Spinner {
            visible: content.busy
            anchors.verticalCenter: parent.verticalCenter
            width: content.symbolSize
            height: content.symbolSize
            color: content.color
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
