import QtQuick
import QtQuick.Templates as T

T.MenuSeparator {
    implicitWidth: implicitContentWidth
    implicitHeight: 9
    topPadding: 4
    bottomPadding: 4
    Accessible.role: Accessible.Separator

    contentItem: Rectangle {
        implicitHeight: 1
        color: Theme.border
    }
}
