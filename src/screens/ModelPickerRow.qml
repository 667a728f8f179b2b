import QtQuick
import QtQuick.Controls
import Sorvanta.Style
import Sorvanta.Screens

// The row of a form in which the model of the next run is chosen.
FormRow {
    id: row

    required property ModelChoice choice

    label: "Model"
    hint: row.choice.hint

    ComboBox {
        objectName: "modelPicker"
        visible: row.choice.hasModels
        model: row.choice.names
        currentIndex: row.choice.index
        Accessible.name: "Model"
        onActivated: index => row.choice.index = index
    }
}
