import QtQuick

// The smallest text: tags, versions, time stamps.
StyledText {
    font.pixelSize: 11
    font.weight: Font.Medium
    lineSize: 14
    color: Theme.text2
}
