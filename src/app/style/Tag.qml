import QtQuick
import Sorvanta.Style

// A small grey label with an icon: a model, a language.
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
        text: tag.text
        Accessible.ignored: true
    }
}
