import QtQuick
import QtQuick.Controls
import Sorvanta.Style
import Sorvanta.Screens

// The row of a form in which the language of the next run is chosen.
FormRow {
    id: row

    required property LanguageChoice choice

    label: "Language"
    hint: "Default is auto-detect. Pick a code to force transcription language."

    ComboBox {
        objectName: "languagePicker"
        model: row.choice.labels
        currentIndex: row.choice.index
        Accessible.name: "Language"
        onActivated: index => row.choice.index = index
    }
}
