import QtQuick
import QtQuick.Templates as T

// A dialog over a scrim, in the middle of the window. DialogFooter holds its buttons.
T.Dialog {
    id: control

    property real rise: 0

    parent: T.Overlay.overlay
    x: parent ? Math.round((parent.width - width) / 2) : 0
    y: parent ? Math.round((parent.height - height) / 2 + rise) : 0
    width: 360
    implicitHeight: Math.ceil(topPadding + bottomPadding + implicitHeaderHeight + spacing + implicitContentHeight
        + implicitFooterHeight)
    padding: 24
    topPadding: 0
    modal: true
    focus: true

    header: Headline {
        visible: text !== ""
        padding: 24
        bottomPadding: 16
        text: control.title
        wrapMode: Text.Wrap
    }

    background: MenuSurface {
        shadowed: false
        radius: Theme.dialogRadius
    }

    T.Overlay.modal: Rectangle {
        color: Theme.scrim
    }

    enter: Transition {
        NumberAnimation { property: "opacity"; from: 0; to: 1; duration: Theme.dialogTime; easing.type: Easing.OutCubic }
        NumberAnimation { target: control; property: "rise"; from: 8; to: 0; duration: Theme.dialogTime; easing.type: Easing.OutCubic }
    }
    exit: Transition {
        NumberAnimation { property: "opacity"; to: 0; duration: Theme.dialogTime; easing.type: Easing.OutCubic }
    }
}
