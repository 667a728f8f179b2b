import QtQuick
import QtQuick.Controls
import Sorvanta.Style
import Sorvanta.Screens

// One model: what it is, how it stands with it, and what can be done.
Card {
    id: card

    required property int index
    required property string name
    required property string recommendedBadge
    required property string nonEnglishBadge
    required property string description
    required property string statusText
    required property string statusSymbol
    required property int statusTone
    required property bool hasProgress
    required property bool isIndeterminate
    required property double progress
    required property string byteLine
    required property string failureText
    required property bool offersDownload
    required property bool offersReveal
    required property bool offersDelete
    required property bool offersRetry
    required property string savedAsText

    readonly property color statusColor: {
        switch (statusTone) {
        case StatusTone.Active:
            return Theme.accentText;
        case StatusTone.Good:
            return Theme.success;
        case StatusTone.Bad:
            return Theme.danger;
        }
        return Theme.text2;
    }
    property bool ringed: false

    signal downloadRequested
    signal revealRequested
    signal deletionRequested

    // The press of a button may take the button away. The focus then stays with the model.
    function press(button, request) {
        const hadFocus = button.activeFocus;
        const hadRing = button.visualFocus;
        request();
        if (!hadFocus || button.visible)
            return;
        const next = [downloadButton, revealButton, deleteButton, retryButton].find(other => other.visible);
        ringed = hadRing;
        (next ?? card).forceActiveFocus(hadRing ? Qt.TabFocusReason : Qt.OtherFocusReason);
    }

    implicitHeight: parts.height + 32
    height: implicitHeight
    activeFocusOnTab: activeFocus // not a stop of its own, but Tab goes on from here
    Accessible.role: Accessible.ListItem
    Accessible.name: name
    Accessible.focusable: true

    FocusRing {
        visible: card.activeFocus && card.ringed
        shapeRadius: card.radius
    }

    Column {
        id: parts

        x: 16
        y: 16
        width: card.width - 32
        spacing: 8

        Flow {
            width: parent.width
            spacing: 12

            Headline {
                objectName: "name"
                width: Math.min(implicitWidth, parent.width)
                height: Math.max(implicitHeight, recommended.visible || nonEnglish.visible ? recommended.height : 0)
                text: card.name
                font.pixelSize: 15
                wrapMode: Text.Wrap
            }

            Badge {
                id: recommended

                objectName: "recommendedBadge"
                visible: text !== ""
                text: card.recommendedBadge
            }

            Badge {
                id: nonEnglish

                objectName: "nonEnglishBadge"
                visible: text !== ""
                text: card.nonEnglishBadge
                indigo: true
            }
        }

        BodyText {
            objectName: "description"
            width: parent.width
            text: card.description
            color: Theme.text2
            wrapMode: Text.Wrap
        }

        Row {
            spacing: 6

            Icon {
                objectName: "statusSymbol"
                visible: symbol !== ""
                anchors.verticalCenter: parent.verticalCenter
                symbol: card.statusSymbol
                size: 16
                color: card.statusColor
            }

            LabelText {
                objectName: "status"
                text: card.statusText
                color: card.statusColor
            }
        }

        Column {
            width: parent.width
            spacing: 6

            ProgressBar {
                objectName: "progressBar"
                visible: card.hasProgress
                width: parent.width
                indeterminate: card.isIndeterminate
                value: card.progress
                Accessible.name: "Download of " + card.name
            }

            FootnoteText {
                objectName: "byteLine"
                visible: text !== ""
                width: parent.width
                text: card.byteLine
                wrapMode: Text.Wrap
            }

            BodyText {
                objectName: "failure"
                visible: text !== ""
                width: parent.width
                text: card.failureText
                color: Theme.danger
                wrapMode: Text.Wrap
                Accessible.role: Accessible.AlertMessage
            }

            PushButton {
                id: downloadButton

                objectName: "downloadButton"
                visible: card.offersDownload
                text: "Download Model"
                Accessible.description: card.name
                onClicked: card.press(this, card.downloadRequested)
            }

            Row {
                visible: card.offersReveal || card.offersDelete
                spacing: 8

                PushButton {
                    id: revealButton

                    objectName: "revealButton"
                    visible: card.offersReveal
                    text: "Reveal in Finder"
                    Accessible.description: card.name
                    onClicked: card.press(this, card.revealRequested)
                }

                PushButton {
                    id: deleteButton

                    objectName: "deleteButton"
                    visible: card.offersDelete
                    text: "Delete Local Copy"
                    role: PushButton.Destructive
                    Accessible.description: card.name
                    onClicked: card.press(this, card.deletionRequested)
                }
            }

            PushButton {
                id: retryButton

                objectName: "retryButton"
                visible: card.offersRetry
                text: "Retry Download"
                Accessible.description: card.name
                onClicked: card.press(this, card.downloadRequested)
            }

            FootnoteText {
                objectName: "savedAs"
                visible: text !== ""
                width: parent.width
                text: card.savedAsText
                wrapMode: Text.Wrap
            }
        }
    }
}
