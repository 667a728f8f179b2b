pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Controls
import Sorvanta.Style
import Sorvanta.Screens

// A button with the menu of a screen's exports.
MenuButton {
    id: button

    required property ExportMenuContent content

    function fill(menu, entries) {
        for (const entry of entries) {
            if (entry.isDivider)
                menu.addItem(divider.createObject(menu.contentItem));
            else if (entry.submenu)
                menu.addMenu(submenu.createObject(menu, { content: entry.submenu }));
            else
                menu.addItem(item.createObject(menu.contentItem, { entry: entry }));
        }
    }

    text: content.label
    icon.name: content.symbol
    enabled: content.isEnabled
    onEnabledChanged: menu.close()
    menu: Menu {
        id: top

        title: button.content.label
        Component.onCompleted: button.fill(top, button.content.entries)
    }

    Component {
        id: item

        MenuItem {
            required property ExportMenuEntry entry

            text: entry.label
            icon.name: entry.symbol
            enabled: entry.isEnabled
            onTriggered: entry.choose()
        }
    }

    Component {
        id: divider

        MenuSeparator {}
    }

    Component {
        id: submenu

        Menu {
            id: sub

            required property ExportMenuContent content

            title: content.label
            Component.onCompleted: button.fill(sub, content.entries)
        }
    }
}
