import QtQuick
import QtQuick.Controls
import Sorvanta.Style
import Sorvanta.Viewer

// The panel at the side.
Rectangle {
    id: panel

    required property TranscriptWindowView view

    color: Theme.sidebar

    Rectangle {
        width: 1
        height: parent.height
        color: Theme.separator
    }

    Column {
        x: 16
        y: 21
        width: parent.width - 32

        Headline {
            bottomPadding: 16
            text: "View Options"
        }

        Switch {
            objectName: "stripSwitch"
            width: parent.width
            text: "Strip “- ”"
            checked: panel.view.isStripDashes
            onToggled: panel.view.isStripDashes = checked
        }

        Item {
            width: 1
            height: 14
        }

        Switch {
            objectName: "timestampsSwitch"
            width: parent.width
            text: "Show Timestamps"
            checked: panel.view.showTimestamps
            onToggled: panel.view.showTimestamps = checked
        }

        Item {
            width: 1
            height: 14
        }

        Switch {
            objectName: "autoScrollSwitch"
            width: parent.width
            text: "Auto-scroll to Playback"
            checked: panel.view.autoScrollToPlayback
            onToggled: panel.view.autoScrollToPlayback = checked
        }

        Item {
            width: parent.width
            height: 34

            Hairline {
                y: 18
                width: parent.width
            }
        }

        LabelText {
            bottomPadding: 5
            text: "Font"
        }

        ComboBox {
            objectName: "fontPicker"
            width: parent.width
            model: panel.view.fontLabels
            currentIndex: panel.view.fontIndex
            Accessible.name: "Font"
            onActivated: index => panel.view.fontIndex = index
        }

        Item {
            width: 1
            height: 20
        }

        OptionSlider {
            objectName: "textSize"
            width: parent.width
            name: "Text Size"
            range: panel.view.fontSizes
            hasEnds: true
            hasStepper: true
            current: panel.view.fontSize
            onChosen: value => panel.view.fontSize = value
        }

        Item {
            width: 1
            height: 10
        }

        OptionSlider {
            objectName: "lineSpacing"
            width: parent.width
            name: "Line Spacing"
            range: panel.view.lineSpacings
            current: panel.view.lineSpacing
            onChosen: value => panel.view.lineSpacing = value
        }

        Item {
            width: 1
            height: 8
        }

        OptionSlider {
            objectName: "sidePadding"
            width: parent.width
            name: "Side Padding"
            range: panel.view.horizontalPaddings
            current: panel.view.horizontalPadding
            onChosen: value => panel.view.horizontalPadding = value
        }

        Item {
            visible: total.visible
            width: parent.width
            height: 31

            Hairline {
                y: 18
                width: parent.width
            }
        }

        FootnoteText {
            id: total

            objectName: "totalText"
            visible: text !== ""
            width: parent.width
            text: panel.view.totalText
            wrapMode: Text.Wrap
        }
    }
}
