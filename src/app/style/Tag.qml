import QtQuick
import Sorvanta.Style

// A small grey label with an icon: a model, a language. Where it is given less room than it needs, its text is cut.
Rectangle {
    id: tag

    property string symbol
    property string text

    implicitWidth: Math.ceil(words.x + words.implicitWidth + 8)
    implicitHeight: 22
    radius: Theme.tagRadius
    color: Theme.tagFill
    Accessible.role: Accessible.StaticText
    Accessible.name: text

    Icon {
        x: 8
        anchors.verticalCenter: parent.verticalCenter
        symbol: tag.symbol
        size: 12
        color: Theme.text2
    }

    CaptionText {
        id: words

        x: tag.symbol ? 25 : 8
        anchors.verticalCenter: parent.verticalCenter
        width: tag.width - x - 8
        text: tag.text
        elide: Text.ElideRight
        Accessible.ignored: true
    }
}
