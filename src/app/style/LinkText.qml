import QtQuick
import QtQuick.Templates as T

// A text that is a link. Not built on a button, which would call itself one to assistive technology.
T.Control {
    id: control

    property string text

    signal clicked

    implicitWidth: Math.ceil(implicitContentWidth)
    implicitHeight: 18
    hoverEnabled: true
    focusPolicy: Qt.StrongFocus
    font.pixelSize: 13
    font.weight: Font.Medium

    Accessible.role: Accessible.Link
    Accessible.name: text
    Accessible.focusable: true
    Accessible.onPressAction: if (enabled) clicked()
    Keys.onSpacePressed: clicked()
    Keys.onReturnPressed: clicked()
    Keys.onEnterPressed: clicked()

    contentItem: Text {
        text: control.text
        font.pixelSize: control.font.pixelSize
        font.weight: control.font.weight
        font.underline: control.enabled && control.hovered
        color: control.enabled ? Theme.accentText : Theme.textDisabled
        verticalAlignment: Text.AlignVCenter
        elide: Text.ElideRight
        textFormat: Text.PlainText
    }

    FocusRing {
        visible: control.visualFocus
        shapeRadius: 4
    }

    TapHandler {
        onTapped: control.clicked()
    }

    HoverHandler {
        cursorShape: Qt.PointingHandCursor
    }
}
