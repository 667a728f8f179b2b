import QtQuick
import QtQuick.Templates as T

T.Popup {
    implicitWidth: contentWidth + leftPadding + rightPadding
    implicitHeight: contentHeight + topPadding + bottomPadding
    padding: 6
    margins: 8

    background: MenuSurface {}

    T.Overlay.modal: Rectangle {
        color: Theme.scrim
    }

    enter: Transition { NumberAnimation { property: "opacity"; from: 0; to: 1; duration: Theme.menuTime; easing.type: Easing.OutCubic } }
    exit: Transition { NumberAnimation { property: "opacity"; to: 0; duration: Theme.menuTime; easing.type: Easing.OutCubic } }
}
