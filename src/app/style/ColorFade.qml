import QtQuick

ColorAnimation {
    duration: Theme.hoverTime
    easing.type: Easing.OutCubic
}
