import QtQuick
import Sorvanta.Style
import Sorvanta.Screens

// The page of the meeting screen.
ScrollingPage {
    id: page

    required property MeetingRecorderView view
    readonly property TranscriptionRun run: view.run

    ScreenHeader {
        width: parent.width
        bottomPadding: 16
        title: "Record Meeting (System Audio)"
        subtitle: "Capture “what you hear” using Apple’s ScreenCaptureKit (no virtual devices). Only audio is captured—no screen frames. macOS will still ask for Screen Recording permission because Apple gates system-audio access behind it."
    }

    RecordingCard {
        width: parent.width
        view: page.view
    }

    Item {
        width: 1
        height: 16
    }

    Hairline {
        width: parent.width
    }

    Item {
        width: 1
        height: 16
    }

    ModelAndLanguageCard {
        width: parent.width
        model: page.view.model
        language: page.view.language
    }

    Item {
        width: 1
        height: 16
    }

    PushButton {
        id: transcribeButton

        objectName: "transcribeButton"
        role: PushButton.Prominent
        text: page.view.startLabel
        busy: page.run.isTranscribing
        enabled: page.view.canStart
        onClicked: page.view.transcribe()
    }

    BodyText {
        objectName: "statusText"
        visible: page.run.isStatusShown
        width: parent.width
        topPadding: 12
        text: page.run.status
        color: Theme.text2
        wrapMode: Text.Wrap
    }

    RunAndTranscript {
        width: parent.width
        heightLeft: page.heightLeft(y)
        run: page.run
        pane: page.view.pane
        exportMenu: page.view.exportMenu
        startButton: transcribeButton
    }
}
