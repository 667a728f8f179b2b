import QtQuick
import QtQuick.Templates as T

// The two small arrows beside a number; the number itself is shown elsewhere.
T.SpinBox {
    id: control

    implicitWidth: 22
    implicitHeight: 28
    editable: false
    focusPolicy: Qt.StrongFocus

    Accessible.role: Accessible.SpinBox
    Accessible.onIncreaseAction: {
        if (enabled) {
            increase();
            valueModified();
        }
    }
    Accessible.onDecreaseAction: {
        if (enabled) {
            decrease();
            valueModified();
        }
    }

    FocusMemory { control: control }

    up.indicator: StepperHalf {
        width: control.width
        symbol: "chevron.up"
        active: control.enabled && control.value < control.to
        pressed: control.up.pressed
        hovered: control.up.hovered
    }
    down.indicator: StepperHalf {
        y: control.height / 2
        width: control.width
        symbol: "chevron.down"
        active: control.enabled && control.value > control.from
        pressed: control.down.pressed
        hovered: control.down.hovered
    }

    background: ControlFrame {
        radius: Theme.itemRadius
        color: control.enabled ? Theme.control : Theme.well
        border.width: 1
        border.color: control.enabled ? Theme.controlBorder : Theme.separator
        raised: control.enabled
        ringed: control.visualFocus

        Hairline {
            x: 1
            y: 13
            width: parent.width - 2
            color: control.enabled ? Theme.controlBorder : Theme.separator
        }
    }
}
