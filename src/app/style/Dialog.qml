import QtQuick
import QtQuick.Templates as T

// A dialog over a scrim, in the middle of the window. DialogFooter holds its buttons.
T.Dialog {
    id: control

    property real rise: 0

    anchors.centerIn: T.Overlay.overlay
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
        transform: Translate { y: control.rise }
    }

    T.Overlay.modal: Rectangle {
        color: Theme.scrim
    }

    enter: Transition {
        NumberAnimation { property: "opacity"; from: 0; to: 1; duration: Theme.dialogTime; easing.type: Easing.OutCubic }
    }
    exit: Transition {
        NumberAnimation { property: "opacity"; to: 0; duration: Theme.dialogTime; easing.type: Easing.OutCubic }
    }
}
