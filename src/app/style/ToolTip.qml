import QtQuick
import QtQuick.Templates as T

T.ToolTip {
    id: control

    x: parent ? Math.round((parent.width - implicitWidth) / 2) : 0
    y: parent ? parent.height + 4 : 0
    implicitWidth: Math.ceil(contentWidth + leftPadding + rightPadding)
    implicitHeight: Math.ceil(contentHeight + topPadding + bottomPadding)
    margins: 6
    horizontalPadding: 8
    verticalPadding: 6
    delay: 600
    closePolicy: T.Popup.CloseOnEscape | T.Popup.CloseOnPressOutsideParent | T.Popup.CloseOnReleaseOutsideParent

    contentItem: Text {
        text: control.text
        font.pixelSize: 11
        color: Theme.toolTipText
        wrapMode: Text.Wrap
        textFormat: Text.PlainText
    }

    background: Rectangle {
        radius: Theme.itemRadius
        color: Theme.toolTip
    }

    enter: Transition { NumberAnimation { property: "opacity"; from: 0; to: 1; duration: Theme.menuTime; easing.type: Easing.OutCubic } }
    exit: Transition { NumberAnimation { property: "opacity"; to: 0; duration: Theme.menuTime; easing.type: Easing.OutCubic } }
}
