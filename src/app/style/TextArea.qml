import QtQuick
import QtQuick.Templates as T

// A text of several lines, without a box of its own.
T.TextArea {
    id: control

    implicitWidth: Math.ceil(contentWidth + leftPadding + rightPadding)
    implicitHeight: Math.ceil(contentHeight + topPadding + bottomPadding)
    font.pixelSize: 14
    color: enabled ? Theme.text : Theme.textDisabled
    placeholderTextColor: Theme.text3
    selectionColor: Theme.accent
    selectedTextColor: Theme.accentOn
    selectByMouse: true
}
