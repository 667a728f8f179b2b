import QtQuick
import QtQuick.Templates as T

// A button that opens `menu` under itself.
PushButton {
    id: control

    property T.Menu menu

    opensMenu: true
    onClicked: {
        if (menu)
            menu.visible ? menu.close() : menu.popup(control, 0, control.height + 4);
    }
}
