pragma ComponentBehavior: Bound

import QtQuick
import Sorvanta.Style

// The list of sections. `sections` are records of a symbol and a label; `currentIndex` is -1 when none is selected.
// The sidebar never changes `currentIndex` itself: it says `chosen`, with -1 when the selection is to be cleared.
Rectangle {
    id: sidebar

    required property var sections
    required property int currentIndex
    required property string versionText

    signal chosen(int index)

    implicitWidth: 260
    color: Theme.sidebar

    AppMark {
        x: 16
        y: 20
        size: 24
    }

    Headline {
        x: 50
        y: 22
        text: "Sorvanta"
    }

    ListView {
        id: list

        property bool usedByKeyboard: true

        function step(rows) {
            usedByKeyboard = true;
            sidebar.chosen(Math.max(0, Math.min(count - 1, currentIndex + rows)));
        }

        objectName: "sections"
        x: 8
        y: 60
        width: parent.width - 17
        height: version.y - y
        clip: contentHeight > height
        interactive: contentHeight > height
        boundsBehavior: Flickable.StopAtBounds
        spacing: 2
        model: sidebar.sections
        currentIndex: sidebar.currentIndex
        highlightMoveDuration: 0
        keyNavigationEnabled: false
        activeFocusOnTab: true

        Accessible.role: Accessible.List
        Accessible.name: "Sections"
        // Not while the window is left, and gives the focus back later.
        onActiveFocusChanged: if (!activeFocus && Window.active) usedByKeyboard = true
        Keys.onUpPressed: step(-1)
        Keys.onDownPressed: step(1)
        Keys.onPressed: event => {
            if (event.key === Qt.Key_Home)
                step(-count);
            else if (event.key === Qt.Key_End)
                step(count);
            else
                return;
            event.accepted = true;
        }

        delegate: SidebarRow {
            width: list.width
            isListFocused: list.activeFocus
            ringed: list.usedByKeyboard
            onPressed: {
                list.usedByKeyboard = false;
                list.forceActiveFocus(Qt.MouseFocusReason);
            }
            onChosen: row => sidebar.chosen(row)
        }
    }

    CaptionText {
        id: version

        objectName: "version"
        x: 4
        anchors.bottom: parent.bottom
        anchors.bottomMargin: 12
        width: parent.width - 8
        leftPadding: 12
        rightPadding: 12
        topPadding: 4
        bottomPadding: 4
        font.weight: Font.Normal
        text: sidebar.versionText
        elide: Text.ElideRight
    }

    Rectangle {
        anchors.right: parent.right
        width: 1
        height: parent.height
        color: Theme.separator
    }
}
