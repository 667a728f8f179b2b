import QtQuick
import QtQuick.Controls
import Sorvanta.Style
import Sorvanta.Screens

// The row of one file: its name, how far the batch is with it, and a symbol for an end.
ItemDelegate {
    id: row

    required property int index
    required property string name
    required property string statusWord
    required property int statusTone
    required property string symbol
    required property int symbolTone

    readonly property real statusPlace: width - 144 - leftPadding // within the content

    objectName: "result-" + index
    height: 36
    focusPolicy: Qt.NoFocus
    text: name
    Accessible.name: name + ", " + statusWord
    Accessible.focusable: true

    contentItem: Item {
        LabelText {
            objectName: "resultName"
            anchors.verticalCenter: parent.verticalCenter
            width: row.statusPlace - 12
            text: row.name
            font.weight: row.highlighted ? Font.Medium : Font.Normal
            elide: Text.ElideMiddle
            maximumLineCount: 1
        }

        FileToneText {
            objectName: "resultStatus"
            anchors.verticalCenter: parent.verticalCenter
            x: row.statusPlace
            text: row.statusWord
            tone: row.statusTone
        }

        Icon {
            visible: row.symbol !== ""
            anchors.verticalCenter: parent.verticalCenter
            anchors.right: parent.right
            symbol: row.symbol
            size: 16
            color: row.symbolTone === FileTone.Orange ? Theme.warning : Theme.text2
        }
    }
}
