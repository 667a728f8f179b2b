import QtQuick
import QtQuick.Templates as T

T.TextField {
    id: control

    property bool ringed: activeFocus && (focusReason === Qt.TabFocusReason
        || focusReason === Qt.BacktabFocusReason || focusReason === Qt.ShortcutFocusReason)

    implicitWidth: Theme.pickerWidth
    implicitHeight: Theme.controlHeight
    leftPadding: 12
    rightPadding: 12
    font.pixelSize: 13
    verticalAlignment: TextInput.AlignVCenter
    selectByMouse: true
    color: enabled ? Theme.text : Theme.textDisabled
    placeholderTextColor: enabled ? Theme.text3 : Theme.textDisabled
    selectionColor: Theme.accent
    selectedTextColor: Theme.accentOn

    Accessible.role: Accessible.EditableText
    Accessible.name: placeholderText

    Text {
        visible: !control.length && !control.preeditText
        x: control.leftPadding
        width: control.width - control.leftPadding - control.rightPadding
        height: control.height
        text: control.placeholderText
        font: control.font
        color: control.placeholderTextColor
        verticalAlignment: Text.AlignVCenter
        elide: Text.ElideRight
        textFormat: Text.PlainText
    }

    background: ControlFrame {
        color: control.enabled ? Theme.control : Theme.well
        border.width: 1
        border.color: !control.enabled ? Theme.separator : control.activeFocus || control.ringed ? Theme.focus : Theme.controlBorder
        raised: false
        ringed: control.ringed
    }
}
