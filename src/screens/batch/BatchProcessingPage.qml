import QtQuick
import Sorvanta.Style
import Sorvanta.Screens

// The page of the batch screen, in which rows appear as a batch goes on.
ScrollingPage {
    id: page

    required property BatchProcessingView view
    readonly property BatchRun run: view.run

    function takeFocus() {
        if (startButton.enabled)
            startButton.forceActiveFocus(Qt.OtherFocusReason);
        else
            dropCard.takeFocus();
    }

    objectName: "batchPage"

    ScreenHeader {
        width: parent.width
        bottomPadding: 16
        title: "Batch Transcription"
        subtitle: "Select multiple audio/video files, choose a downloaded model, and transcribe them sequentially with whisper."
    }

    BatchDropCard {
        id: dropCard

        width: parent.width
        view: page.view
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
                visible: page.view.model.hasModels
                width: parent.width
                choice: page.view.model
            }

            FootnoteText {
                objectName: "noModels"
                visible: !page.view.model.hasModels
                width: parent.width
                height: Math.max(56, implicitHeight)
                topPadding: 9
                bottomPadding: 9
                text: page.view.model.hint
                color: Theme.text3
                wrapMode: Text.Wrap
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
        id: startButton

        objectName: "startButton"
        role: PushButton.Prominent
        text: page.view.startLabel
        busy: page.run.isTranscribing
        enabled: page.view.canStart
        onClicked: page.view.start()
    }

    BodyText {
        objectName: "statusText"
        visible: page.run.isStatusShown
        width: parent.width
        topPadding: 12
        text: page.run.status
        color: Theme.warning
        wrapMode: Text.Wrap
    }

    ErrorRow {
        visible: page.run.hasError
        width: parent.width
        topPadding: page.run.isStatusShown ? 8 : 12
        message: page.run.errorText
        isCopyOffered: false
    }

    Item {
        visible: page.run.isTranscribing
        width: 1
        height: 12
    }

    FootnoteText {
        objectName: "fileLine"
        visible: page.run.isTranscribing && text !== ""
        width: parent.width
        text: page.run.fileLine
        elide: Text.ElideMiddle
        maximumLineCount: 1
    }

    ProgressRow {
        visible: page.run.isTranscribing
        width: parent.width
        run: page.run
        isStopEnabled: page.view.canStop
        waitingText: page.run.status
        onFocusLeft: page.takeFocus()
    }

    Item {
        visible: page.view.areResultsShown
        width: 1
        height: 18
    }

    BatchResults {
        visible: page.view.areResultsShown
        width: parent.width
        view: page.view
        heightLeft: page.heightLeft(y)
        onFocusLeft: page.takeFocus()
    }
}
