import QtQuick
import QtQuick.Controls
import Sorvanta.Style

// The message of the last failure and, where a screen offers it, the button that copies it, on the message's first
// baseline. A long message
// scrolls within its row.
Item {
    id: row

    property string message
    property int topPadding: 0
    property bool offersCopy: true

    readonly property int textInset: (Theme.controlHeight - words.lineSize) / 2
    readonly property int mostHeight: 9 * words.lineSize
    readonly property int scrollLane: 12

    signal copyRequested

    implicitWidth: 480
    implicitHeight: topPadding + Math.max(Theme.controlHeight, textInset + view.height)

    Flickable {
        id: view

        objectName: "errorView"
        y: row.topPadding + row.textInset
        width: interactive ? words.width + row.scrollLane : Math.min(words.implicitWidth, words.width)
        height: Math.min(words.height, row.mostHeight)
        contentHeight: words.height
        clip: interactive
        interactive: contentHeight > height
        boundsBehavior: Flickable.StopAtBounds
        activeFocusOnTab: interactive || activeFocus
        Keys.forwardTo: [scrollKeys]
        Accessible.role: Accessible.Pane
        Accessible.name: "Error"

        ScrollBar.vertical: ScrollBar {}

        BodyText {
            id: words

            objectName: "errorText"
            width: row.width - (row.offersCopy ? copyButton.width + 8 : 0) - row.scrollLane
            text: row.message
            color: Theme.danger
            wrapMode: Text.Wrap
            Accessible.role: Accessible.AlertMessage
        }
    }

    ScrollKeys {
        id: scrollKeys

        view: view
        lineHeight: words.lineSize
    }

    FocusRing {
        visible: view.activeFocus
        anchors.fill: view
    }

    PushButton {
        id: copyButton

        objectName: "copyErrorButton"
        visible: row.offersCopy
        x: view.width + 8
        y: row.topPadding
        text: "Copy Error"
        onClicked: row.copyRequested()
    }
}
