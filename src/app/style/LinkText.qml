import QtQuick

// A text that is a link. Not built on a control of the templates, which would never call itself a link to assistive
// technology. It takes the focus from the keyboard only.
Item {
    id: link

    property string text

    signal clicked

    // A key that is held presses once.
    function pressByKey(event) {
        if (!event.isAutoRepeat)
            clicked();
    }

    implicitWidth: Math.ceil(label.implicitWidth)
    implicitHeight: 18
    activeFocusOnTab: true

    Accessible.role: Accessible.Link
    Accessible.name: text
    Accessible.focusable: true
    Accessible.focused: activeFocus
    Accessible.onPressAction: if (enabled) clicked()
    Keys.onSpacePressed: event => pressByKey(event)
    Keys.onReturnPressed: event => pressByKey(event)
    Keys.onEnterPressed: event => pressByKey(event)

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
