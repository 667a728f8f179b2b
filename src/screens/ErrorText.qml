import QtQuick
import QtQuick.Controls
import Sorvanta.Style

// The words of a failure. A long text scrolls within nine lines.
Item {
    id: block

    property alias text: words.text
    property alias viewName: view.objectName
    property alias textName: words.objectName
    property alias fontSize: words.font.pixelSize
    property alias lineSize: words.lineSize
    property real mostWidth: 480

    readonly property int scrollLane: 12
    readonly property int mostLines: 9

    width: view.width
    height: view.height

    Flickable {
        id: view

        width: interactive ? words.width + block.scrollLane : Math.min(words.implicitWidth, words.width)
        height: Math.min(words.height, block.mostLines * words.lineSize)
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

            width: block.mostWidth - block.scrollLane
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
}
