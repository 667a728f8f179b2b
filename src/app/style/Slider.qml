import QtQuick
import QtQuick.Templates as T

// Assistive technology writes `value` itself, without `moved`: who keeps the value listens to valueChanged as well.
T.Slider {
    id: control

    // The part of the whole by which an arrow key moves the value, where stepSize says nothing of it. The value must not
    // be bound then.
    property real keyPart: 0

    function step(direction) {
        if (keyPart > 0)
            value = Math.max(from, Math.min(value + direction * keyPart * (to - from), to));
        else if (direction > 0)
            increase();
        else
            decrease();
    }

    function stepByKey(event, direction) {
        if (keyPart > 0)
            step(direction);
        else
            event.accepted = false;
    }

    implicitWidth: 180
    implicitHeight: 24
    leftPadding: 0
    rightPadding: 0
    focusPolicy: Qt.StrongFocus

    Accessible.role: Accessible.Slider
    Accessible.onIncreaseAction: {
        if (enabled) {
            step(1);
            moved();
        }
    }
    Accessible.onDecreaseAction: {
        if (enabled) {
            step(-1);
            moved();
        }
    }

    Keys.onLeftPressed: event => stepByKey(event, -1)
    Keys.onRightPressed: event => stepByKey(event, 1)

    FocusMemory { control: control }

    background: Rectangle {
        y: 10
        width: control.width
        height: 4
        radius: 2
        color: Theme.track

        Rectangle {
            width: control.visualPosition * (control.width - 16) + 8
            height: 4
            radius: 2
            visible: control.enabled && control.visualPosition > 0
            color: Theme.progressFill
        }
    }

    handle: Rectangle {
        x: control.visualPosition * (control.width - width)
        y: 4
        implicitWidth: 16
        implicitHeight: 16
        radius: 8
        color: {
            if (!control.enabled)
                return Theme.dark ? Theme.track : Theme.well;
            if (Theme.dark)
                return control.pressed ? "#CBD2D5" : "#EDF1F2";
            return control.pressed ? Theme.pressed : control.hovered ? Theme.hover : "#FFFFFF";
        }
        border.width: Theme.dark && control.enabled ? 0 : 1
        border.color: control.enabled ? Theme.controlMark : Theme.controlBorder

        FocusRing {
            visible: control.visualFocus
            shapeRadius: 8
        }
    }
}
