import QtQuick
import QtQuick.Templates as T

// The button of the look in all its roles. icon.name is a symbol name.
T.Button {
    id: control

    enum Role { Normal, Prominent, Destructive, Recording }

    property int role: PushButton.Normal
    property bool large: false
    property bool opensMenu: false
    property bool busy: false
    property bool hot: hovered
    property bool ringed: visualFocus

    readonly property bool filled: role === PushButton.Prominent || role === PushButton.Recording
    readonly property color labelColor: {
        if (!enabled)
            return Theme.textDisabled;
        switch (role) {
        case PushButton.Prominent:
        case PushButton.Recording:
            return Theme.accentOn;
        case PushButton.Destructive:
            return Theme.danger;
        }
        return Theme.text;
    }
    readonly property color fillColor: {
        if (!enabled)
            return filled ? Theme.track : Theme.well;
        switch (role) {
        case PushButton.Prominent:
            return down ? Theme.accentPressed : hot ? Theme.accentHover : Theme.accent;
        case PushButton.Recording:
            return down ? Theme.dangerFillPressed : hot ? Theme.dangerFillHover : Theme.dangerFill;
        case PushButton.Destructive:
            return down ? Theme.pressed : hot ? Theme.dangerSoft : Theme.control;
        }
        return down ? Theme.pressed : hot ? Theme.hover : Theme.control;
    }

    implicitWidth: Math.ceil(Math.max(implicitBackgroundWidth, implicitContentWidth + leftPadding + rightPadding))
    implicitHeight: large ? Theme.largeControlHeight : Theme.controlHeight
    leftPadding: icon.name ? 12 : 14
    rightPadding: opensMenu ? 10 : 14
    spacing: 8
    focusPolicy: Qt.StrongFocus
    icon.width: 16
    icon.color: role === PushButton.Normal && enabled ? Theme.text2 : labelColor
    font.pixelSize: 13
    font.weight: Font.Medium

    Accessible.role: Accessible.Button
    Accessible.name: text
    Accessible.onPressAction: if (enabled) clicked()
    Keys.onReturnPressed: event => KeyPress.once(event, clicked)
    Keys.onEnterPressed: event => KeyPress.once(event, clicked)

    FocusMemory { control: control }

    contentItem: ButtonLabel {
        symbol: control.icon.name
        symbolSize: control.icon.width
        symbolColor: control.icon.color
        text: control.text
        font: control.font
        color: control.labelColor
        spacing: control.spacing
        opensMenu: control.opensMenu
        busy: control.busy
    }

    background: ControlFrame {
        implicitWidth: control.role === PushButton.Prominent && !control.large ? 160 : 0
        color: control.fillColor
        border.width: control.filled ? 0 : 1
        border.color: !control.enabled ? Theme.separator
            : control.role === PushButton.Destructive ? Theme.dangerBorder : Theme.controlBorder
        raised: control.enabled
        ringed: control.ringed
    }
}
