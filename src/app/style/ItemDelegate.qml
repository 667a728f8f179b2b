import QtQuick
import QtQuick.Templates as T

// A row of a list; `highlighted` marks the selected one.
T.ItemDelegate {
    id: control

    implicitWidth: Math.ceil(implicitContentWidth + leftPadding + rightPadding)
    implicitHeight: Math.max(36, Math.ceil(implicitContentHeight + topPadding + bottomPadding))
    leftPadding: 12
    rightPadding: 12
    topPadding: 8
    bottomPadding: 8
    font.pixelSize: 13

    Accessible.role: Accessible.ListItem
    Accessible.name: text
    Accessible.selectable: true
    Accessible.selected: highlighted
    Accessible.onPressAction: if (enabled) clicked()
    Keys.onReturnPressed: event => KeyPress.once(event, clicked)
    Keys.onEnterPressed: event => KeyPress.once(event, clicked)

    FocusMemory { control: control }

    contentItem: Text {
        text: control.text
        font: control.font
        color: control.enabled ? Theme.text : Theme.textDisabled
        verticalAlignment: Text.AlignVCenter
        elide: Text.ElideRight
        textFormat: Text.PlainText
    }

    background: Rectangle {
        readonly property bool inactive: control.Window.window !== null && !control.Window.active

        radius: Theme.controlRadius
        color: {
            if (control.highlighted)
                return inactive ? Theme.pressed : Theme.accentSoft;
            return control.down ? Theme.pressed : control.hovered ? Theme.hover : "transparent";
        }

        FocusRing { visible: control.visualFocus }
    }
}
