import QtQuick
import QtQuick.Templates as T

T.ScrollBar {
    id: control

    implicitWidth: 12
    implicitHeight: 12
    padding: 3
    visible: policy !== T.ScrollBar.AlwaysOff && size < 1
    minimumSize: height > width ? Math.min(1, 24 / Math.max(1, height)) : Math.min(1, 24 / Math.max(1, width))
    Accessible.ignored: true

    contentItem: Rectangle {
        implicitWidth: 6
        implicitHeight: 6
        radius: 3
        color: Theme.scrollThumb
    }
}
