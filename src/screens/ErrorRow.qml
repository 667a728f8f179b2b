import QtQuick
import Sorvanta.Style

// The message of the last failure and the button that copies it. A long message scrolls within its row.
Item {
    id: row

    property string message
    property int topPadding: 0

    signal copyRequested

    implicitWidth: 480
    implicitHeight: topPadding + Math.max(Theme.controlHeight, view.height)

    Flickable {
        id: view

        anchors.verticalCenter: parent.verticalCenter
        anchors.verticalCenterOffset: row.topPadding / 2
        width: Math.min(words.implicitWidth, row.width - copyButton.width - 8)
        height: Math.min(words.height, 160)
        contentHeight: words.height
        clip: contentHeight > height
        boundsBehavior: Flickable.StopAtBounds

        BodyText {
            id: words

            objectName: "errorText"
            width: row.width - copyButton.width - 8
            text: row.message
            color: Theme.danger
            wrapMode: Text.Wrap
            Accessible.role: Accessible.AlertMessage
        }
    }

    PushButton {
        id: copyButton

        objectName: "copyErrorButton"
        x: view.width + 8
        anchors.verticalCenter: view.verticalCenter
        text: "Copy Error"
        onClicked: row.copyRequested()
    }
}
