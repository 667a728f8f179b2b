import QtQuick
import QtQuick.Templates as T

// Keeps how a control came to its focus. It would be forgotten when the window is left and come back to, and with it the
// ring of who uses the keyboard.
Connections {
    id: memory

    required property T.Control control
    property int reason: Qt.OtherFocusReason

    target: control

    function onFocusReasonChanged() {
        if (control.focusReason === Qt.ActiveWindowFocusReason)
            control.focusReason = reason;
        else
            reason = control.focusReason;
    }
}
