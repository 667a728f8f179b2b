import QtQuick

// A text in the look's own line height. The named styles of the look are built on it.
Text {
    property int lineSize: 18

    color: Theme.text
    linkColor: Theme.accentText
    font.pixelSize: 13
    lineHeight: lineSize
    lineHeightMode: Text.FixedHeight
    verticalAlignment: Text.AlignVCenter
    textFormat: Text.PlainText
    Accessible.role: Accessible.StaticText
    Accessible.name: text
}
