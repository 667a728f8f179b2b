import QtQuick
import QtQuick.Controls
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

    Card {
        width: parent.width
        height: form.height

        Column {
            id: form

            x: 16
            width: parent.width - 32

            ModelPickerRow {
                width: parent.width
                choice: page.view.model
            }

            Hairline {
                width: parent.width
            }

            LanguagePickerRow {
                width: parent.width
                choice: page.view.language
            }
        }
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

    Item {
        visible: page.run.isTranscribing
        width: 1
        height: 12
    }

    ProgressRow {
        id: progressRow

        visible: page.run.isTranscribing
        width: parent.width
        run: page.run
        onFocusLeft: transcribeButton.forceActiveFocus(Qt.OtherFocusReason)
    }

    Item {
        visible: page.view.pane.isShown
        width: 1
        height: 12
    }

    TranscriptPane {
        width: parent.width
        height: Math.max(leastHeight, page.heightLeft(y))
        pane: page.view.pane
        exportMenu: page.view.exportMenu
        onFocusLeft: {
            if (transcribeButton.enabled)
                transcribeButton.forceActiveFocus(Qt.OtherFocusReason);
            else
                progressRow.takeFocus();
        }
    }
}
