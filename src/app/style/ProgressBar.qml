import QtQuick
import QtQuick.Templates as T

T.ProgressBar {
    id: control

    implicitWidth: 180
    implicitHeight: 6

    property real shownPosition: visualPosition
    Behavior on shownPosition { NumberAnimation { duration: Theme.progressTime } }

    Accessible.role: Accessible.ProgressBar

    background: Rectangle {
        radius: 3
        color: Theme.track
    }

    contentItem: Item {
        clip: control.indeterminate

        Rectangle {
            visible: !control.indeterminate && control.visualPosition > 0
            width: Math.max(6, control.shownPosition * control.width)
            height: 6
            radius: 3
            color: Theme.progressFill
        }

        Rectangle {
            visible: control.indeterminate
            width: control.width * 0.3
            height: 6
            radius: 3
            color: Theme.progressFill

            NumberAnimation on x {
                running: control.indeterminate && control.visible
                from: -control.width * 0.3
                to: control.width
                duration: Theme.indeterminateTime
                loops: Animation.Infinite
            }
        }
    }
}
