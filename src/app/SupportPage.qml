import QtQuick
import Sorvanta.Style

// The "Help" section.
Item {
    id: page

    required property string supportText
    required property string modelIssueText
    required property url termsUrl
    required property url privacyUrl

    signal linkOpened(url address)

    Column {
        id: column

        readonly property real textWidth: Math.min(640, width)

        x: Math.max(Theme.pageGutter, Math.round((page.width - width) / 2))
        y: Theme.pageGutter
        width: Math.min(Theme.pageWidth, page.width - 2 * Theme.pageGutter)

        LargeTitle {
            width: parent.width
            bottomPadding: 16
            text: "Help"
        }

        BodyText {
            width: column.textWidth
            bottomPadding: 12
            color: Theme.text2
            text: page.supportText
            wrapMode: Text.Wrap
        }

        BodyText {
            width: column.textWidth
            bottomPadding: 16
            color: Theme.text2
            text: page.modelIssueText
            wrapMode: Text.Wrap
        }

        SectionLabel {
            bottomPadding: 8
            text: "Key links"
        }

        Card {
            width: parent.width
            height: 97

            LinkText {
                objectName: "termsLink"
                x: 16
                y: 15
                text: "Terms of Service"
                onClicked: page.linkOpened(page.termsUrl)
            }

            Hairline {
                x: 16
                y: 48
                width: parent.width - 32
            }

            LinkText {
                objectName: "privacyLink"
                x: 16
                y: 64
                text: "Privacy Policy"
                onClicked: page.linkOpened(page.privacyUrl)
            }
        }
    }
}
