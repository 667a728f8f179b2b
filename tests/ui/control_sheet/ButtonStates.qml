pragma ComponentBehavior: Bound

import QtQuick
import Sorvanta.Style

// One button in its five states: rest, hover, pressed, focus, disabled.
Row {
    id: group

    property string text
    property string symbol
    property int role: PushButton.Normal
    property int buttonWidth: 112

    spacing: 12

    Repeater {
        model: ["rest", "hover", "pressed", "focus", "disabled"]

        PushButton {
            required property string modelData

            objectName: group.objectName + "-" + modelData
            width: group.buttonWidth
            text: group.text
            icon.name: group.symbol
            role: group.role
            hot: modelData === "hover"
            down: modelData === "pressed"
            ringed: modelData === "focus"
            enabled: modelData !== "disabled"
        }
    }
}
