pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Controls
import Sorvanta.Style
import Sorvanta.Screens

// The text of the entry. It is one piece that can be selected as a whole, unless it is so long that it is laid out piece
// by piece as it comes into sight.
Card {
    id: card

    required property HistoryDetail detail

    ListView {
        id: pieces

        objectName: "entryText"
        anchors.fill: parent
        anchors.margins: 1
        topMargin: 12
        bottomMargin: 14
        clip: true
        model: card.detail.textPieces.length // so that another text changes the pieces and does not make them anew
        currentIndex: -1
        boundsBehavior: Flickable.StopAtBounds
        keyNavigationEnabled: false
        activeFocusOnTab: true
        Accessible.role: Accessible.List
        Accessible.name: "Transcript"
        Keys.forwardTo: [scrollKeys]

        ScrollBar.vertical: ScrollBar {
            leftPadding: 1
            rightPadding: 5
            topPadding: 5
            bottomPadding: 5
        }

        Connections {
            target: card.detail

            function onTextChanged() {
                scrollKeys.scrollToFirst();
            }
        }

        delegate: Item {
            id: piece

            required property int index
            readonly property string content: card.detail.textPieces[index] ?? ""

            width: ListView.view.width
            height: words.height

            TextEdit {
                id: words

                readonly property int focusReason: Qt.MouseFocusReason // as of a control; it is only pressed

                x: 15
                width: piece.width - 38 // clear of the scroll bar
                text: piece.content
                textFormat: TextEdit.PlainText
                wrapMode: TextEdit.Wrap
                readOnly: true
                selectByMouse: true
                persistentSelection: true
                color: Theme.text
                selectionColor: Theme.accent
                selectedTextColor: Theme.accentOn
                font.pixelSize: 14
                Accessible.role: Accessible.StaticText
                Accessible.name: piece.content
            }

            FixedLineHeight {
                document: words.textDocument
                pixels: 21
            }
        }
    }

    ScrollKeys {
        id: scrollKeys

        view: pieces
        lineHeight: 42
    }

    BodyText {
        objectName: "noText"
        visible: text !== ""
        x: 16
        y: 16
        width: parent.width - 32
        text: card.detail.emptyText
        color: Theme.text2
        wrapMode: Text.Wrap
    }

    FocusRing {
        visible: pieces.activeFocus
        shapeRadius: Theme.cardRadius
    }
}
