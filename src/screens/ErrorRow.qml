import QtQuick
import Sorvanta.Style
import Sorvanta.Screens

// The message of the last failure and, where it is offered, the button that copies it, on the message's first baseline.
Item {
    id: row

    property string message
    property int topPadding: 0
    property bool isCopyOffered: true

    readonly property int textInset: isCopyOffered ? (Theme.controlHeight - words.lineSize) / 2 : 0

    signal copyRequested

    implicitWidth: 480
    implicitHeight: topPadding + Math.max(isCopyOffered ? Theme.controlHeight : 0, textInset + words.height)

    ErrorText {
        id: words

        viewName: "errorView"
        textName: "errorText"
        y: row.topPadding + row.textInset
        mostWidth: row.width - (row.isCopyOffered ? copyButton.width + 8 : 0)
        text: row.message
    }

    PushButton {
        id: copyButton

        objectName: "copyErrorButton"
        visible: row.isCopyOffered
        x: words.width + 8
        y: row.topPadding
        text: "Copy Error"
        onClicked: row.copyRequested()
    }
}
