import QtQuick
import QtQuick.Templates as T
import Sorvanta.Style

T.MenuItem {
    id: control

    readonly property color labelColor: !enabled ? Theme.textDisabled : highlighted ? Theme.accentText : Theme.text

    implicitWidth: Math.ceil(implicitContentWidth + leftPadding + rightPadding)
    implicitHeight: 30
    leftPadding: 10
    rightPadding: 10
    font.pixelSize: 13
    icon.width: 16
    icon.color: enabled && !highlighted ? Theme.text2 : labelColor

    Accessible.role: Accessible.MenuItem
    Accessible.name: text
    Accessible.onPressAction: {
        if (!enabled)
            return;
        if (subMenu)
            subMenu.popup(control, control.width, -6);
        else
            triggered();
    }

    contentItem: Text {
        leftPadding: control.icon.name ? 26 : 0
        rightPadding: control.subMenu ? 24 : 0
        text: control.text
        font: control.font
        color: control.labelColor
        verticalAlignment: Text.AlignVCenter
        elide: Text.ElideRight
        textFormat: Text.PlainText

        Icon {
            anchors.verticalCenter: parent.verticalCenter
            symbol: control.icon.name
            size: control.icon.width
            color: control.icon.color
        }
    }

    arrow: Icon {
        x: control.width - width - 8
        y: (control.height - height) / 2
        symbol: control.subMenu ? "submenu" : ""
        size: 14
        color: control.icon.color
    }

    background: Rectangle {
        radius: Theme.itemRadius
        color: control.down ? Theme.pressed : Theme.accentSoft
        visible: control.highlighted || control.down
    }
}
