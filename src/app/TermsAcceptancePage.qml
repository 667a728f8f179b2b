import QtQuick
import Sorvanta.Style

// Stands in front of the application until its terms have been accepted.
Rectangle {
    id: page

    required property url privacyUrl
    required property url termsUrl

    signal accepted
    signal quitRequested
    signal linkOpened(url address)

    color: Theme.windowColor

    Column {
        id: column

        objectName: "column"
        anchors.horizontalCenter: parent.horizontalCenter
        y: Math.max(24, Math.round((page.height - height) / 2) - 8)
        width: Math.min(640, page.width - 48)

        AppMark {
            anchors.horizontalCenter: parent.horizontalCenter
        }

        LargeTitle {
            width: parent.width
            topPadding: 24
            horizontalAlignment: Text.AlignHCenter
            text: "Welcome to Sorvanta"
            wrapMode: Text.Wrap
        }

        BodyText {
            width: parent.width
            topPadding: 8
            bottomPadding: 31
            horizontalAlignment: Text.AlignHCenter
            font.pixelSize: 14
            color: Theme.text2
            text: "To continue, please review and accept the Terms of Service and Privacy Policy."
            wrapMode: Text.Wrap
        }

        Card {
            width: parent.width
            height: note.height + links.height + 1

            Item {
                id: note

                width: parent.width
                height: Math.max(64, promise.implicitHeight + 46)

                Icon {
                    objectName: "promiseIcon"
                    x: 20
                    anchors.verticalCenter: parent.verticalCenter
                    symbol: "shield.checkerboard"
                    size: 24
                    color: Theme.accentText
                }

                BodyText {
                    id: promise

                    objectName: "promise"
                    x: 60
                    anchors.verticalCenter: parent.verticalCenter
                    width: parent.width - 80
                    text: "Your data stays on your device. We still need your agreement before enabling the app."
                    wrapMode: Text.Wrap
                }
            }

            Hairline {
                x: 20
                y: note.height
                width: parent.width - 40
            }

            Flow {
                id: links

                x: 60
                y: note.height + 1
                width: parent.width - 80
                height: Math.max(56, implicitHeight)
                topPadding: 19
                bottomPadding: 19
                spacing: 32

                LinkText {
                    objectName: "privacyLink"
                    text: "Read the Privacy Policy"
                    onClicked: page.linkOpened(page.privacyUrl)
                }

                LinkText {
                    objectName: "termsLink"
                    text: "Read the Terms of Service"
                    onClicked: page.linkOpened(page.termsUrl)
                }
            }
        }

        Row {
            anchors.horizontalCenter: parent.horizontalCenter
            topPadding: 32
            spacing: 12

            PushButton {
                objectName: "quitButton"
                width: 112
                large: true
                text: "Quit"
                onClicked: page.quitRequested()
            }

            PushButton {
                objectName: "agreeButton"
                width: 240
                large: true
                role: PushButton.Prominent
                text: "I Agree and Continue"
                onClicked: page.accepted()
            }
        }
    }
}
