import QtQuick
import Sorvanta.Style
import Sorvanta.Screens

// The page of the microphone screen, in which rows appear as a run goes on.
ScrollingPage {
    id: page

    required property RecordAudioView view
    readonly property TranscriptionRun run: view.run

    ScreenHeader {
        width: parent.width
        bottomPadding: 16
        title: "Record From Microphone"
        subtitle: "Record audio from your microphone, choose a downloaded model, and generate a transcript using whisper."
    }

    SectionLabel {
        bottomPadding: 8
        text: "Microphone"
    }

    MicrophoneCard {
        width: parent.width
        view: page.view
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
        id: startButton

        objectName: "startButton"
        role: PushButton.Prominent
        text: page.view.startLabel
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

    ErrorRow {
        visible: page.run.hasError
        width: parent.width
        topPadding: page.run.isStatusShown ? 8 : 12
        isCopyOffered: false
        message: page.run.errorText
    }

    RunAndTranscript {
        width: parent.width
        heightLeft: page.heightLeft(y)
        run: page.run
        pane: page.view.pane
        exportMenu: page.view.exportMenu
        startButton: startButton
    }
}
