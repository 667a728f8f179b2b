import QtQuick
import QtQuick.Templates as T

T.ScrollView {
    id: control

    implicitWidth: contentWidth + leftPadding + rightPadding
    implicitHeight: contentHeight + topPadding + bottomPadding

    T.ScrollBar.vertical: ScrollBar {
        parent: control
        x: control.width - width
        y: control.topPadding
        height: control.availableHeight
    }
    T.ScrollBar.horizontal: ScrollBar {
        parent: control
        x: control.leftPadding
        y: control.height - height
        width: control.availableWidth
    }
}
