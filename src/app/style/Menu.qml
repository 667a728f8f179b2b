import QtQuick
import QtQuick.Templates as T

T.Menu {
    id: control

    implicitWidth: Math.max(implicitBackgroundWidth, contentWidth + leftPadding + rightPadding)
    implicitHeight: contentHeight + topPadding + bottomPadding
    padding: 6
    margins: 8
    overlap: 2

    // What a screen reader meets is the item around the content.
    onAboutToShow: contentItem.parent.Accessible.name = title

    delegate: MenuItem {}

    contentItem: ListView {
        implicitHeight: contentHeight
        implicitWidth: {
            let widest = 0;
            for (let i = 0; i < control.count; ++i)
                widest = Math.max(widest, control.itemAt(i).implicitWidth);
            return widest;
        }
        model: control.contentModel
        currentIndex: control.currentIndex
        interactive: contentHeight > height
        clip: interactive
        keyNavigationEnabled: false // the menu itself passes over what is disabled
        T.ScrollBar.vertical: ScrollBar {}
    }

    background: MenuSurface {
        implicitWidth: 208
    }

    enter: Transition { NumberAnimation { property: "opacity"; from: 0; to: 1; duration: Theme.menuTime; easing.type: Easing.OutCubic } }
    exit: Transition { NumberAnimation { property: "opacity"; to: 0; duration: Theme.menuTime; easing.type: Easing.OutCubic } }
}
