pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Controls
import Sorvanta.Style

// Every control of the look in its states.
Rectangle {
    id: sheet

    readonly property var formats: [
        { symbol: "doc.plaintext", name: "TXT" },
        { symbol: "captions.bubble", name: "SRT" },
        { symbol: "text.badge.plus", name: "VTT" },
        { symbol: "tablecells", name: "CSV" },
        { symbol: "doc.richtext", name: "DOCX" },
        { symbol: "doc.richtext.fill", name: "PDF" },
        { symbol: "doc.text.magnifyingglass", name: "Markdown (.md)" },
        { symbol: "chevron.left.forwardslash.chevron.right", name: "HTML" },
        { symbol: "curlybraces", name: "JSON" }
    ]

    function open() {
        exportMenu.open();
        allMenu.open();
        toolTip.open();
    }

    width: 1200
    height: 900
    color: Theme.windowColor

    component Heading: SectionLabel {
        x: 28
    }

    Heading { y: 24; text: "Buttons: rest, hover, pressed, focus, disabled" }
    ButtonStates { objectName: "prominent"; x: 32; y: 51; text: "Transcribe"; role: PushButton.Prominent }
    ButtonStates { objectName: "normal"; x: 32; y: 95; text: "Save Audio"; symbol: "square.and.arrow.down"; buttonWidth: 120 }
    ButtonStates { objectName: "destructive"; x: 32; y: 139; text: "Stop"; role: PushButton.Destructive }
    ButtonStates { objectName: "recording"; x: 32; y: 183; text: "Stop"; symbol: "record.circle.fill"; role: PushButton.Recording }

    Heading { y: 243; text: "Fields and pickers" }
    SearchField { objectName: "search"; x: 32; y: 270; width: 200; placeholderText: "Search in transcript" }
    SearchField {
        x: 248
        y: 270
        width: 200
        text: "harbour"
        ringed: true
        Accessible.name: "Search"
    }
    PreviousNextButtons { objectName: "pair"; x: 464; y: 270 }
    ComboBox { objectName: "picker"; x: 32; y: 314; width: 200; model: ["Large V3 Turbo", "Base", "Medium"]; Accessible.name: "Model" }
    ComboBox {
        x: 248
        y: 314
        width: 200
        model: ["English (en)"]
        ringed: true
        Accessible.name: "Language"
    }
    ComboBox { objectName: "disabledPicker"; x: 464; y: 314; width: 200; model: ["Base"]; enabled: false; Accessible.name: "Model" }

    Heading { y: 374; text: "Toggles, sliders, progress, level" }
    CheckBox { objectName: "box"; x: 32; y: 408; text: "Strip “- ”" }
    CheckBox { objectName: "checkedBox"; x: 134; y: 408; text: "Strip “- ”"; checked: true }
    CheckBox {
        x: 236
        y: 408
        text: "Strip “- ”"
        checked: true

        Item {
            width: 18
            height: 18
            FocusRing { shapeRadius: 5 }
        }
    }
    Switch { objectName: "switch"; x: 338; y: 407; Accessible.name: "Show Timestamps" }
    Switch { objectName: "checkedSwitch"; x: 386; y: 407; checked: true; Accessible.name: "Show Timestamps" }
    Switch {
        x: 434
        y: 407
        checked: true
        Accessible.name: "Show Timestamps"
        FocusRing { shapeRadius: 10 }
    }
    Stepper { objectName: "stepper"; x: 494; y: 403; from: 12; to: 96; value: 16; Accessible.name: "Text Size" }
    Slider { objectName: "slider"; x: 32; y: 445; value: 0.4; Accessible.name: "Position" }
    Slider {
        x: 236
        y: 445
        value: 0.4
        Accessible.name: "Position"

        Item {
            x: 66
            y: 4
            width: 16
            height: 16
            FocusRing { shapeRadius: 8 }
        }
    }
    Slider { objectName: "disabledSlider"; x: 440; y: 445; enabled: false; Accessible.name: "Position" }
    ProgressBar { objectName: "progress"; x: 32; y: 481; value: 0.42; Accessible.name: "Progress" }
    Rectangle {
        x: 236
        y: 481
        width: 180
        height: 6
        radius: 3
        color: Theme.track
        Rectangle { x: 61; width: 54; height: 6; radius: 3; color: Theme.progressFill }
    }
    LevelBar { objectName: "level"; x: 440; y: 481; level: 0.61 }
    LevelBar { objectName: "idleLevel"; x: 548; y: 481; active: false }

    Heading { y: 515; text: "Tags and badges" }
    Tag { objectName: "tag"; x: 32; y: 544; symbol: "cpu"; text: "Large V3 Turbo" }
    Tag { x: 154; y: 544; symbol: "globe"; text: "auto" }
    Tag { x: 218; y: 544; symbol: "person.2.wave.2.fill"; text: "Diarization" }
    Badge { objectName: "badge"; x: 331; y: 542; text: "Recommended" }
    Badge { x: 444; y: 542; text: "Best for non-English"; indigo: true }

    Heading { y: 596; text: "Drop target while a file is over it" }
    DropCard {
        objectName: "drop"
        x: 32
        y: 623
        width: 600
        symbol: "arrow.up.doc"
        fileOver: true

        Button { text: "Choose File…" }
        BodyText { x: 123; y: 7; text: "No file selected"; color: Theme.text2 }
        FootnoteText { y: 40; text: "Drag & drop an audio/video file here or use the picker." }
    }

    Heading { y: 731; text: "Error row" }
    BodyText { x: 32; y: 765; text: "Please select a downloaded model."; color: Theme.danger }
    Button { x: 256; y: 758; text: "Copy Error" }

    Row {
        x: 32
        y: 819
        spacing: 24

        LargeTitle { id: large; text: "Large title" }
        Title2 { anchors.baseline: large.baseline; text: "Title 2" }
        Title3 { anchors.baseline: large.baseline; text: "Title 3" }
        Headline { anchors.baseline: large.baseline; text: "Headline" }
        BodyText { anchors.baseline: large.baseline; text: "Body" }
        FootnoteText { anchors.baseline: large.baseline; text: "Footnote"; color: Theme.text }
        CaptionText { anchors.baseline: large.baseline; text: "Caption"; color: Theme.text }
    }

    Menu {
        id: exportMenu

        objectName: "exportMenu"
        x: 712
        y: 32
        width: 232
        closePolicy: Popup.NoAutoClose

        Repeater {
            model: sheet.formats

            MenuItem {
                required property var modelData

                text: modelData.name
                icon.name: modelData.symbol
                highlighted: modelData.name === "SRT"
            }
        }
        MenuSeparator {}
        Menu { title: "Download to Downloads" }
    }

    Menu {
        id: allMenu

        objectName: "allMenu"
        x: 960
        y: 32
        width: 208
        closePolicy: Popup.NoAutoClose

        Repeater {
            model: sheet.formats

            MenuItem {
                required property var modelData

                text: modelData.name
                enabled: !["SRT", "VTT", "CSV"].includes(modelData.name)
                highlighted: modelData.name === "TXT"
            }
        }
        MenuSeparator {}
        Menu { title: "Export All" }
        MenuSeparator {}
        Menu { title: "Download to Downloads" }
    }

    ToolTip {
        id: toolTip

        objectName: "toolTip"
        parent: sheet
        x: 960
        y: 404
        delay: 0
        text: "Remove leading dash markers from lines."
        closePolicy: Popup.NoAutoClose
    }

    Rectangle {
        x: 712
        y: 440
        width: 456
        height: 180
        radius: 12
        color: Theme.scrim

        MenuSurface {
            x: 48
            y: 24
            width: 360
            height: 132
            radius: Theme.dialogRadius
            shadowed: false

            Headline { x: 24; y: 24; text: "Delete this history entry?" }
            DialogFooter {
                width: parent.width
                y: 76

                Button { text: "Cancel" }
                PushButton { text: "Delete"; role: PushButton.Recording }
            }
        }
    }

    MenuSurface {
        x: 712
        y: 636
        width: 456
        height: 240
        radius: Theme.dialogRadius
        shadowed: false

        Title3 { x: 24; y: 20; text: "Logs" }
        Rectangle {
            x: 24
            y: 56
            width: 408
            height: 124
            radius: Theme.controlRadius
            color: Theme.well
            border.width: 1
            border.color: Theme.separator

            StyledText {
                x: 12
                y: 8
                font.family: Theme.monospacedFamily
                font.pixelSize: 12
                text: "whisper_init_from_file: loading model\nmain: processing 'walk.wav' (480000 samples,\n  30.0 sec), 4 threads, lang = auto ...\n\n[00:00:00.000 --> 00:00:04.240]   Good morning,"
            }
        }
        Button { x: 368; y: 192; text: "Close" }
    }
}
