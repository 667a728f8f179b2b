import QtQuick
import QtQuick.Controls
import Sorvanta.Style
import Sorvanta.Viewer

// A number of the view options: its name, its value and a slider.
Item {
    id: option

    required property string name
    required property optionRange range
    required property real current
    property bool hasEnds: false
    property bool hasStepper: false

    signal chosen(real value)

    implicitHeight: 52

    LabelText {
        y: 5
        text: option.name
    }

    LabelText {
        objectName: "value"
        x: parent.width - width - (option.hasStepper ? 30 : 0)
        y: 5
        text: option.current.toFixed(0)
        font.weight: Font.Normal
        color: Theme.text2
    }

    Stepper {
        objectName: "stepper"
        visible: option.hasStepper
        enabled: visible
        x: parent.width - width
        from: option.range.from
        to: option.range.to
        stepSize: option.range.step
        value: option.current
        Accessible.name: option.name
        Accessible.ignored: !visible
        onValueChanged: if (visible && value !== option.current) option.chosen(value)
    }

    BodyText {
        id: lowest

        visible: option.hasEnds
        anchors.verticalCenter: slider.verticalCenter
        text: option.range.from.toFixed(0)
        font.pixelSize: 12
        color: Theme.text2
        Accessible.ignored: !visible
    }

    Slider {
        id: slider

        objectName: "slider"
        x: option.hasEnds ? lowest.width + 8 : 0
        y: option.hasStepper ? 28 : 26
        width: parent.width - x - (option.hasEnds ? highest.width + 8 : 0)
        from: option.range.from
        to: option.range.to
        stepSize: option.range.step
        value: option.current
        snapMode: Slider.SnapAlways
        Accessible.name: option.name
        onValueChanged: if (value !== option.current) option.chosen(value)
    }

    BodyText {
        id: highest

        visible: option.hasEnds
        x: parent.width - width
        anchors.verticalCenter: slider.verticalCenter
        text: option.range.to.toFixed(0)
        font.pixelSize: 12
        color: Theme.text2
        Accessible.ignored: !visible
    }
}
