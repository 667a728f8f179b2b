import QtQuick

// A text that is a link. Not built on a control of the templates, which would never call itself a link to assistive
// technology. It takes the focus from the keyboard only.
Item {
    id: link

    property string text

    signal clicked

    implicitWidth: Math.ceil(label.implicitWidth)
    implicitHeight: 18
    activeFocusOnTab: true

    Accessible.role: Accessible.Link
    Accessible.name: text
    Accessible.focusable: true
    Accessible.focused: activeFocus
    Accessible.onPressAction: if (enabled) clicked()
    Keys.onSpacePressed: event => KeyPress.once(event, clicked)
    Keys.onReturnPressed: event => KeyPress.once(event, clicked)
    Keys.onEnterPressed: event => KeyPress.once(event, clicked)

    StyledText {
        id: label

        width: parent.width
        text: link.text
        font.weight: Font.Medium
        font.underline: link.enabled && hover.hovered
        color: link.enabled ? Theme.accentText : Theme.textDisabled
        elide: Text.ElideRight
        Accessible.ignored: true
    }

    FocusRing {
        visible: link.activeFocus
        shapeRadius: 4
    }

    TapHandler {
        onTapped: link.clicked()
    }

    HoverHandler {
        id: hover

        cursorShape: Qt.PointingHandCursor
    }
}
