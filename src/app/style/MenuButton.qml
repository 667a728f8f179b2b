import QtQuick
import QtQuick.Templates as T

// A button that opens `menu` under itself, or above itself where there is more room.
PushButton {
    id: control

    property T.Menu menu

    readonly property int menuGap: 4
    property bool ringedBefore: false

    function menuPlace() {
        let height = menu.topPadding + menu.bottomPadding;
        for (let i = 0; i < menu.count; ++i)
            height += menu.itemAt(i).implicitHeight;
        const above = control.mapToItem(null, 0, 0).y - menuGap;
        const below = Window.height - above - control.height - 2 * menuGap;
        return below < height + menu.margins && above > below ? -height - menuGap : control.height + menuGap;
    }

    opensMenu: true
    // A press on the button itself is left to the button, or it would close the menu only to open it again.
    onMenuChanged: if (menu) menu.closePolicy = T.Popup.CloseOnEscape | T.Popup.CloseOnPressOutsideParent
    onClicked: {
        if (!menu)
            return;
        ringedBefore = visualFocus;
        menu.opened ? menu.close() : menu.popup(control, 0, menuPlace());
    }

    // A menu that closes would leave the focus nowhere.
    Connections {
        target: control.menu

        function onClosed() {
            control.forceActiveFocus(control.ringedBefore ? Qt.TabFocusReason : Qt.PopupFocusReason);
        }
    }
}
