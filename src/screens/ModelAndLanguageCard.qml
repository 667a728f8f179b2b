import QtQuick
import Sorvanta.Style
import Sorvanta.Screens

// The form in which the model and the language of the next run are chosen.
Card {
    id: card

    required property ModelChoice model
    required property LanguageChoice language

    implicitHeight: form.height

    Column {
        id: form

        x: 16
        width: parent.width - 32

        ModelPickerRow {
            width: parent.width
            choice: card.model
        }

        Hairline {
            width: parent.width
        }

        LanguagePickerRow {
            width: parent.width
            choice: card.language
        }
    }
}
