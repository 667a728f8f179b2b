import QtQuick

// A place for one screen. Unless it is selected it is neither seen nor clicked nor read out, but it lives on.
Item {
    property bool isSelected: false

    anchors.fill: parent
    visible: isSelected
}
